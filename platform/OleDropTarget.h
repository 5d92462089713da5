#pragma once

#include <windows.h>
#include <ole2.h>

#include <cstdint>
#include <functional>

#include "platform/Com.h"
#include "platform/Mouse.h"
#include "platform/OleData.h"
#include "platform/Subclass.h"

namespace snip {

/// Where the pointer with the dragged data is, as OLEDragOver tells it.
enum class OleDragState : std::int16_t { Enter = 0, Leave = 1, Over = 2 };

/// Lets data be dropped on a window.
class OleDropTarget {
 public:
  /// `effect` comes in with all the effects that the source allows and goes out with the one to take; when
  /// several are left, the keys choose among them. Places are client pixels.
  struct Listener {
    std::function<void(OleData& data, DWORD& effect, const MouseState& mouse, OleDragState state)> dragOver;
    std::function<void(OleData& data, DWORD& effect, const MouseState& mouse)> dragDrop;
  };

  OleDropTarget();
  ~OleDropTarget();
  OleDropTarget(const OleDropTarget&) = delete;
  OleDropTarget& operator=(const OleDropTarget&) = delete;

  /// Takes drops on a window of this thread until it is destroyed; false when the system refuses. The
  /// listener may revoke, and may destroy this or the window.
  bool Register(HWND window, Listener listener);
  void Revoke();
  bool registered() const { return window_ != nullptr; }

 private:
  class Object;

  HWND window_ = nullptr;
  Subclass subclass_;
  ComPtr<Object> object_;
};

}  // namespace snip
