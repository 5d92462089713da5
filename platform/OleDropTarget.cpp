#include "platform/OleDropTarget.h"

#include <memory>
#include <utility>

#include "platform/ComObject.h"
#include "platform/Guarded.h"
#include "platform/MouseMessage.h"
#include "platform/Rects.h"

namespace snip {
namespace {

constexpr DWORD kMouseButtons = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON;

MouseState MouseOf(HWND window, DWORD keys, POINTL screen) {
  POINT place{screen.x, screen.y};
  ScreenToClient(window, &place);
  return {HeldButtons(keys), HeldShiftKeys(keys, (keys & MK_ALT) != 0), ToPoint(place)};
}

/// The one effect that becomes of those a listener left.
DWORD ChosenEffect(DWORD left, DWORD allowed, DWORD keys) {
  const bool control = (keys & MK_CONTROL) != 0;
  const bool shift = (keys & MK_SHIFT) != 0;
  const DWORD byKeys = control && shift ? DROPEFFECT_LINK
                       : control        ? DROPEFFECT_COPY
                       : shift          ? DROPEFFECT_MOVE
                                        : DROPEFFECT_NONE;
  const DWORD scroll = left & DROPEFFECT_SCROLL;
  // Without keys a copy: the source loses nothing by it.
  for (const DWORD effect :
       {byKeys, DWORD{DROPEFFECT_COPY}, DWORD{DROPEFFECT_MOVE}, DWORD{DROPEFFECT_LINK}}) {
    if ((effect & left & allowed) != 0) return effect | scroll;
  }
  return DROPEFFECT_NONE | scroll;
}

}  // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// What the platform tells of a drag over the window. It may be kept longer than the target and is deaf then.
class OleDropTarget::Object final : public ComObject<IDropTarget> {
 public:
  Object(HWND window, Listener listener)
      : window_(window), listener_(std::make_shared<const Listener>(std::move(listener))) {}

  void Disconnect() { listener_.reset(); }

  HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    data_ = ComPtr<IDataObject>::Share(data);
    buttons_ = 0;
    return TellDragOver(keys, screen, effect, OleDragState::Enter);
  }
  HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    return TellDragOver(keys, screen, effect, OleDragState::Over);
  }
  HRESULT STDMETHODCALLTYPE DragLeave() override {
    DWORD none = DROPEFFECT_NONE;
    const HRESULT told = TellDragOver(keys_, place_, &none, OleDragState::Leave);
    data_.Reset();
    return told;
  }
  HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    data_ = ComPtr<IDataObject>::Share(data);
    // The button that was held is up by now.
    const HRESULT told =
        Tell(keys | buttons_, screen, effect,
             [](const Listener& listener, OleData& dropped, DWORD& chosen, const MouseState& mouse) {
               if (!listener.dragDrop) return false;
               listener.dragDrop(dropped, chosen, mouse);
               return true;
             });
    data_.Reset();
    return told;
  }

 private:
  HRESULT TellDragOver(DWORD keys, POINTL screen, DWORD* effect, OleDragState state) {
    if ((keys & kMouseButtons) != 0) buttons_ = keys & kMouseButtons;
    keys_ = keys;
    place_ = screen;
    return Tell(keys, screen, effect,
                [state](const Listener& listener, OleData& data, DWORD& chosen, const MouseState& mouse) {
                  if (!listener.dragOver) return false;
                  listener.dragOver(data, chosen, mouse, state);
                  return true;
                });
  }

  /// `raise` tells whether there is somebody who heard it.
  template <class Raise>
  HRESULT Tell(DWORD keys, POINTL screen, DWORD* effect, const Raise& raise) {
    const DWORD allowed = std::exchange(*effect, DROPEFFECT_NONE);
    // The listener may end the target, and the data it holds with it.
    const auto self = ComPtr<Object>::Share(this);
    const auto listener = listener_;
    if (!listener) return S_OK;
    return GuardedMethod([&]() -> HRESULT {
      OleData data(ComPtr<IDataObject>::Share(data_.get()));
      DWORD left = allowed;
      if (raise(*listener, data, left, MouseOf(window_, keys, screen)))
        *effect = ChosenEffect(left, allowed, keys);
      return S_OK;
    });
  }

  HWND window_;
  std::shared_ptr<const Listener> listener_;
  ComPtr<IDataObject> data_;
  DWORD buttons_ = 0;  ///< Last held over the window.
  DWORD keys_ = 0;
  POINTL place_{};
};
#pragma GCC diagnostic pop

OleDropTarget::OleDropTarget() = default;

OleDropTarget::~OleDropTarget() {
  Revoke();
}

bool OleDropTarget::Register(HWND window, Listener listener) {
  Revoke();
  object_.Reset(new Object(window, std::move(listener)));
  // Told when the window goes: the system does not let go of a dead window's target.
  const bool watched = subclass_.Start(window, [this](const Subclass::Message& message) {
    if (message.id == WM_DESTROY) Revoke();
    return message.PassOn();
  });
  if (watched && RegisterDragDrop(window, object_.get()) == S_OK) {
    window_ = window;
    return true;
  }
  subclass_.Stop();
  object_.Reset();
  return false;
}

void OleDropTarget::Revoke() {
  if (window_ == nullptr) return;
  const HWND window = std::exchange(window_, nullptr);
  RevokeDragDrop(window);
  subclass_.Stop();
  object_->Disconnect();
  object_.Reset();
}

}  // namespace snip
