#pragma once

#include "platform/Window.h"

namespace snip {

/// A plain container. What its controls have to say goes on to the window it lies in, which knows what they
/// are for.
class Pane : public Window {
 public:
  bool CreateIn(HWND parent);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
};

}  // namespace snip
