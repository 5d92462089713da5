#include "benches/BareWindow.h"

#include <richedit.h>

#include "platform/SystemLibrary.h"

namespace snip::bench {

BareWindow::BareWindow() {
  LoadSystemLibrary("riched20.dll");
  Create(
      {.className = "BareWindow", .title = "Bench", .style = WS_OVERLAPPEDWINDOW, .place = {0, 0, 760, 560}});
  ShowWindow(hWnd(), SW_SHOW);
  SetForegroundWindow(hWnd());
  UpdateWindow(hWnd());
}

void AnswerAll() {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

HWND MakeBareRichEdit(HWND parent, const Rect& place, HFONT font) {
  const HWND control = CreateControl(parent, RICHEDIT_CLASSA, "",
                                     WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL |
                                         ES_AUTOHSCROLL | ES_WANTRETURN | ES_NOHIDESEL,
                                     WS_EX_CLIENTEDGE, 1, font, place);
  constexpr LPARAM noTextLimit = 0x7FFFFFFE;
  SendMessageA(control, EM_EXLIMITTEXT, 0, noTextLimit);
  return control;
}

void ShowIn(HWND control, const std::string& text) {
  SendMessageA(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  AnswerAll();
}

}  // namespace snip::bench
