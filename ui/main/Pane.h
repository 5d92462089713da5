#pragma once

#include <functional>

#include "platform/Window.h"

namespace snip {

/// A plain container. What its controls send goes on to the parent window, which knows what they
/// are for.
class Pane : public Window {
 public:
  ~Pane() override { Destroy(); }

  /// `name` is what assistive programs call it. `paint`, if there is one, draws what its controls leave free.
  bool CreateIn(HWND parent, const char* name = "", std::function<void(HDC dc)> paint = {});

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  std::function<void(HDC dc)> paint_;
};

}  // namespace snip
