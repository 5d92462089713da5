#include "platform/OleDragSource.h"

#include <utility>

#include "platform/ComObject.h"
#include "platform/Guarded.h"
#include "platform/OleDataStore.h"

namespace snip {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// Tells how the drag goes on and what it looks like.
class OleDragSource::Feedback final : public ComObject<IDropSource> {
 public:
  explicit Feedback(std::weak_ptr<const OleDragEvents> events) : events_(std::move(events)) {}

  void Disconnect() { events_.reset(); }

  HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keys) override {
    if (escapePressed != FALSE || events_.expired()) return DRAGDROP_S_CANCEL;
    return (keys & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) == 0 ? DRAGDROP_S_DROP : S_OK;
  }
  HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) override {
    return GuardedMethod([&]() -> HRESULT {
      bool defaultCursors = true;
      const auto events = events_.lock();
      if (events && events->OLEGiveFeedback) events->OLEGiveFeedback(effect, defaultCursors);
      return defaultCursors ? DRAGDROP_S_USEDEFAULTCURSORS : S_OK;
    });
  }

 private:
  std::weak_ptr<const OleDragEvents> events_;
};
#pragma GCC diagnostic pop

OleDragSource::OleDragSource(std::weak_ptr<const OleDragEvents> events)
    : store_(new OleData::Store(events)), feedback_(new Feedback(std::move(events))) {}

OleDragSource::~OleDragSource() {
  store_->Disconnect();
  feedback_->Disconnect();
}

OleData OleDragSource::Data() const {
  return OleData(ComPtr<OleData::Store>::Share(store_.get()));
}

IDataObject* OleDragSource::dataObject() const {
  return store_.get();
}

IDropSource* OleDragSource::dropSource() const {
  return feedback_.get();
}

void OleDrag(const std::weak_ptr<const OleDragEvents>& events) {
  const OleDragSource source(events);
  DWORD allowed = DROPEFFECT_NONE;
  if (const auto raised = events.lock(); raised && raised->OLEStartDrag) {
    OleData data = source.Data();
    raised->OLEStartDrag(data, allowed);
  }
  if (events.expired()) return;
  DWORD effect = DROPEFFECT_NONE;
  const HRESULT ended = DoDragDrop(source.dataObject(), source.dropSource(), allowed, &effect);
  if (ended != DRAGDROP_S_DROP) effect = DROPEFFECT_NONE;
  if (const auto raised = events.lock(); raised && raised->OLECompleteDrag) raised->OLECompleteDrag(effect);
}

}  // namespace snip
