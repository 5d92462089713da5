#include "platform/ExactTextField.h"

#include <algorithm>
#include <utility>

#include "platform/Clipboard.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

/// By itself the control may paste characters that the code page lacks, and go on showing them.
void Paste(HWND control) {
  const LONG style = GetWindowLongA(control, GWL_STYLE);
  std::string text = TextFieldBytes(ClipboardText(control)).shown();
  if ((style & ES_READONLY) != 0 || text.empty()) return;
  if ((style & ES_MULTILINE) == 0) text.resize(std::min(text.find('\r'), text.size()));
  SendMessageA(control, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
  SendMessageA(control, EM_SETMODIFY, TRUE, 0);  // no documentation says that the control does
}

}  // namespace

void ExactTextField::Attach(HWND control) {
  control_ = control;
  original_.clear();
  bytes_ = {};
  subclass_.Start(control, [](const Subclass::Message& message) {
    // A field of several lines takes its parent for a dialog, which Escape closes.
    const bool closes = message.id == WM_KEYDOWN && message.wParam == VK_ESCAPE &&
                        (GetWindowLongA(message.window, GWL_STYLE) & ES_MULTILINE) != 0;
    if (message.id == WM_PASTE) Paste(message.window);
    return closes || message.id == WM_PASTE ? LRESULT{0} : message.PassOn();
  });
}

void ExactTextField::SetText(const std::string& text) {
  original_ = text;
  bytes_ = TextFieldBytes(text);
  // Not WM_SETTEXT: for that, Wine 8 draws the scroll bar twice, which takes longer than all else.
  SendMessageA(control_, EM_SETSEL, 0, -1);
  SendMessageA(control_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(bytes_.shown().c_str()));
  SendMessageA(control_, EM_SETSEL, 0, 0);
  SendMessageA(control_, EM_SCROLLCARET, 0, 0);
  SendMessageA(control_, WM_HSCROLL, SB_LEFT, 0);  // Wine 8 loses its place in lines wider than 32,767 pixels
  SendMessageA(control_, EM_EMPTYUNDOBUFFER, 0, 0);
  SendMessageA(control_, EM_SETMODIFY, FALSE, 0);
}

std::optional<std::string> ExactTextField::Text() const {
  if (SendMessageA(control_, EM_GETMODIFY, 0, 0) == 0) return original_;
  std::optional<std::string> text = FieldText(control_);
  if (text) text = bytes_.Restore(std::move(*text));
  return text;
}

}  // namespace snip
