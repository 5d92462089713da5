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

ExactTextField::ExactTextField(HWND control)
    : control_(control),
      own_(reinterpret_cast<WNDPROC>(GetWindowLongPtrA(control, GWLP_WNDPROC))),
      pasting_(std::make_unique<Subclass>()) {
  pasting_->Start(control, [](const Subclass::Message& message) -> LRESULT {
    if (message.id != WM_PASTE) return message.PassOn();
    Paste(message.window);
    return 0;
  });
}

/// Past the subclass, which looks at nothing but what is pasted: each message that it passes on takes three
/// requests to Wine's server, a sixth of all that showing the next snippet took.
LRESULT ExactTextField::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  return CallWindowProcA(own_, control_, message, wParam, lParam);
}

void ExactTextField::SetText(const std::string& text) {
  original_ = text;
  bytes_ = TextFieldBytes(text);
  // Not WM_SETTEXT: for that, Wine 8 draws the scroll bar twice, which takes longer than all else.
  Send(EM_SETSEL, 0, -1);
  Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(bytes_.shown().c_str()));
  Send(EM_SETSEL);
  Send(EM_SCROLLCARET);
  Send(WM_HSCROLL, SB_LEFT, 0);  // Wine 8 loses its place in lines wider than 32,767 pixels
  Send(EM_EMPTYUNDOBUFFER);
  Send(EM_SETMODIFY, FALSE, 0);
}

std::optional<std::string> ExactTextField::Text() const {
  if (Send(EM_GETMODIFY) == 0) return original_;
  std::optional<std::string> text = FieldText(control_);
  if (text) text = bytes_.Restore(std::move(*text));
  return text;
}

}  // namespace snip
