#pragma once

#include <windows.h>
#include <ole2.h>

#include <functional>
#include <memory>

#include "platform/Com.h"
#include "platform/OleData.h"

namespace snip {

/// What a drag tells the one who started it. Effects are DROPEFFECT values.
struct OleDragEvents {
  std::function<void(OleData& data, DWORD& allowedEffects)> OLEStartDrag;
  std::function<void(OleData& data, CLIPFORMAT format)> OLESetData;
  std::function<void(DWORD effect, bool& defaultCursors)> OLEGiveFeedback;
  std::function<void(DWORD effect)> OLECompleteDrag;
};

/// The two objects that the platform drags with. A program that keeps one of them longer than this lives
/// finds the data set by then and nothing more.
class OleDragSource {
 public:
  explicit OleDragSource(std::weak_ptr<const OleDragEvents> events);
  ~OleDragSource();
  OleDragSource(const OleDragSource&) = delete;
  OleDragSource& operator=(const OleDragSource&) = delete;

  OleData Data() const;
  IDataObject* dataObject() const;
  IDropSource* dropSource() const;

 private:
  class Feedback;

  ComPtr<OleData::Store> store_;
  ComPtr<Feedback> feedback_;
};

/// Drags until the mouse button is let go or Escape pressed. OLEStartDrag says what is dragged and what may
/// become of it: without it, or with its effects left at DROPEFFECT_NONE, no target takes a drop. When the
/// events go before its end, the drag is given up and none of them is raised any more.
void OleDrag(const std::weak_ptr<const OleDragEvents>& events);

}  // namespace snip
