#pragma once

#include <functional>

#include "platform/Window.h"

namespace snip {

/// A container that forwards its controls' messages to its parent, which handles them.
class Pane : public Window {
 public:
  ~Pane() override { Destroy(); }

  /// `name` is the accessible name. `paint`, if given, draws the area that the controls leave free.
  bool CreateIn(HWND parent, const char* name = "", std::function<void(HDC dc)> paint = {});

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  std::function<void(HDC dc)> paint_;
};

}  // namespace snip
