#pragma once

#include <windows.h>

#include "platform/Window.h"

namespace snip::bench {

/// A window that does nothing for the controls on it, shown at the top left of the screen.
class BareWindow : public Window {
 public:
  BareWindow();
  ~BareWindow() override { Destroy(); }
};

/// Dispatches what waits for this thread, painting included, until nothing does.
void AnswerAll();

/// A rich-edit control with nothing around it, for 32 KB of text and more.
HWND MakeBareRichEdit(HWND parent, const Rect& place, HFONT font);

/// Shows a text in a control and paints it.
void ShowIn(HWND control, const std::string& text);

}  // namespace snip::bench
