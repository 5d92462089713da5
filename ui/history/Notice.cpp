#include "ui/history/Notice.h"

#include <windowsx.h>

#include <algorithm>

#include "platform/Fonts.h"

namespace snip {

Notice::~Notice() {
  Destroy();
}

void Notice::Show(HWND owner, HWND part, const NoticeText& text) {
  Hide();
  text_ = text;
  part_ = part;
  font_ = MessageFont();
  if (!Create({.className = "Notice",
               .title = text.line.c_str(),
               .style = WS_POPUP | WS_BORDER | WS_CLIPCHILDREN,
               .exStyle = WS_EX_TOOLWINDOW | WS_EX_CONTROLPARENT,
               .place = {},
               .parent = owner,
               .background = COLOR_INFOBK}))
    return;
  const Size character = CharacterSize(font_.get());
  const int gap = character.width;
  const int buttonHeight = character.height * 7 / 4;
  const int height = buttonHeight + gap;
  textWidth_ = TextSize(font_.get(), text.line).width;
  label_ = CreateControl(hWnd(), "STATIC", text.line.c_str(), WS_VISIBLE | SS_NOPREFIX | SS_CENTERIMAGE, 0, 0,
                         font_.get(), {gap, 0, textWidth_, height});
  int left = textWidth_ + 3 * gap;
  int id = kFirstButton;
  for (const NoticeChoice choice : text.choices) {
    const int width = TextSize(font_.get(), CaptionOf(choice)).width + 3 * gap;
    CreateControl(hWnd(), "BUTTON", CaptionOf(choice), WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, id++,
                  font_.get(), {left, gap / 2, width, buttonHeight});
    left += width + gap / 2;
  }
  size_ = {left + gap / 2 + 2, height + 2};
  Follow();
  NotifyWinEvent(EVENT_SYSTEM_ALERT, hWnd(), OBJID_WINDOW, CHILDID_SELF);
}

void Notice::Hide() {
  const HWND owner = hWnd() != nullptr ? GetWindow(hWnd(), GW_OWNER) : nullptr;
  const bool hadFocus = owner != nullptr && GetActiveWindow() == hWnd();
  Destroy();
  if (hadFocus) SetFocus(owner);
}

void Notice::Follow() {
  if (hWnd() == nullptr) return;
  const HWND owner = GetWindow(hWnd(), GW_OWNER);
  POINT right{ClientSize(owner).width, 0};
  ClientToScreen(owner, &right);
  RECT part{};
  GetWindowRect(part_, &part);
  RECT whole{};
  GetWindowRect(owner, &whole);
  const bool seen = IsWindowVisible(owner) != 0 && IsIconic(owner) == 0;
  // All its buttons have to be visible, even in a window that is narrower.
  const int left = std::max(static_cast<int>(right.x) - size_.width, static_cast<int>(whole.left) + 8);
  // Directly above its owner in z-order; other windows of the owner may cover both.
  const HWND above = GetWindow(owner, GW_HWNDPREV);
  const UINT order = above == hWnd() ? SWP_NOZORDER : 0;
  SetWindowPos(hWnd(), above == nullptr ? HWND_TOP : above, left, static_cast<int>(part.top), size_.width,
               size_.height, SWP_NOACTIVATE | order | (seen ? SWP_SHOWWINDOW : 0));
}

void Notice::ComeToFront() const {
  if (hWnd() != nullptr) SetWindowPos(hWnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void Notice::Focus() const {
  if (hWnd() != nullptr) SetFocus(GetDlgItem(hWnd(), kFirstButton));
}

bool Notice::PreTranslate(MSG& message) {
  if (hWnd() == nullptr || (message.hwnd != hWnd() && IsChild(hWnd(), message.hwnd) == 0)) return false;
  if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    Choose(NoticeChoice::Close);
    return true;
  }
  if (message.message == WM_KEYDOWN && message.wParam == VK_F6) {
    SetFocus(GetWindow(hWnd(), GW_OWNER));
    return true;
  }
  return IsDialogMessageA(hWnd(), &message) != 0;
}

void Notice::Choose(NoticeChoice choice) {
  Hide();
  chosen_(choice);
}

LRESULT Notice::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_NCACTIVATE:  // the notice is a part of its owner, which stays the active window to the eye
      SendMessageA(GetWindow(hWnd(), GW_OWNER), message, wParam, lParam);
      return Default(message, wParam, lParam);
    case DM_GETDEFID:  // so that Enter presses the button with the focus, as Space does
      return MAKELRESULT(GetDlgCtrlID(GetFocus()), DC_HASDEFID);
    case WM_CTLCOLORSTATIC: {
      const auto dc = reinterpret_cast<HDC>(wParam);
      SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
      SetBkColor(dc, GetSysColor(COLOR_INFOBK));
      return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
    }
    case WM_COMMAND: {
      const auto place = static_cast<std::size_t>(GET_WM_COMMAND_ID(wParam, lParam) - kFirstButton);
      if (GET_WM_COMMAND_CMD(wParam, lParam) == BN_CLICKED && place < text_.choices.size())
        Choose(text_.choices[place]);
      return 0;
    }
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
