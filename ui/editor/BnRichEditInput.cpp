// What keys and the mouse do in the code field.

#include <windowsx.h>

#include "platform/Clipboard.h"
#include "ui/editor/BnRichEdit.h"
#include "ui/editor/EditorKeys.h"

namespace snip {
namespace {

bool Held(int key) {
  return GetKeyState(key) < 0;
}

EditorKey WithHeldKeys(WPARAM key) {
  return {.code = static_cast<unsigned>(key),
          .shift = Held(VK_SHIFT),
          .control = Held(VK_CONTROL),
          .alt = Held(VK_MENU)};
}

}  // namespace

void BnRichEdit::Paste() {
  // As text, whatever else the clipboard offers: pictures and formats have no place in code.
  if (const std::string text = ClipboardText(hWnd()); !text.empty()) ReplaceSelection(text);
}

bool BnRichEdit::FilterKey(WPARAM key) {
  switch (ActionOf(WithHeldKeys(key), locked_)) {
    case KeyAction::Pass:
      return false;
    case KeyAction::Paste:
      Paste();
      break;
    case KeyAction::NewLine:
      ReplaceSelection("\r\n");
      SendMessageA(control_, EM_SCROLLCARET, 0, 0);
      break;
    case KeyAction::MoveOn:
      ::SetFocus(GetNextDlgTabItem(GetAncestor(hWnd(), GA_ROOT), control_, Held(VK_SHIFT) ? TRUE : FALSE));
      break;
    case KeyAction::Stop:
      break;
  }
  return true;
}

/// Raises contextMenu for a place right below the caret, or in the corner when the caret cannot be seen.
void BnRichEdit::AskForMenu() const {
  POINT place{};
  GetCaretPos(&place);
  place.y += characterSize_.height;
  RECT client{};
  GetClientRect(control_, &client);
  if (PtInRect(&client, place) == 0) place = {};
  ClientToScreen(control_, &place);
  Raise(events_.contextMenu, place);
}

bool BnRichEdit::SelectsWithMouse(UINT message, WPARAM wParam, LPARAM lParam) {
  return hasRichEdit_ && mouse_.Filter(control_, message, wParam, lParam);
}

bool BnRichEdit::FilterInput(const Subclass::Message& message) {
  const WPARAM wParam = message.wParam;
  const LPARAM lParam = message.lParam;
  POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message.id) {
    case WM_CHAR: {
      // What is held matters for control characters only. Under Wine, not to ask makes a key in a long text 9
      // % quicker.
      const EditorKey held = wParam < ' ' ? WithHeldKeys(0) : EditorKey{};
      if (wParam >= ' ' || !held.control) Raise(events_.keyPress, static_cast<char>(wParam));
      return !TakesCharacter(static_cast<unsigned char>(wParam), held, locked_);
    }
    case WM_KEYDOWN:
      return FilterKey(wParam);
    case WM_KEYUP:
      // The system makes WM_CONTEXTMENU of the menu key, here or before the key comes.
      if (wParam != VK_APPS) return false;
      DefWindowProcA(control_, message.id, wParam, lParam);
      return true;
    case WM_SYSKEYDOWN:
      if (wParam == VK_F10 && Held(VK_SHIFT)) {
        AskForMenu();
        return true;
      }
      if (ActionOf(WithHeldKeys(wParam), locked_) == KeyAction::Pass) return false;
      // Menus and the window's own keys; the control would make characters of numbers with it.
      DefWindowProcA(control_, message.id, wParam, lParam);
      return true;
    case WM_SYSCHAR:
      DefWindowProcA(control_, message.id, wParam, lParam);
      return true;
    case WM_CONTEXTMENU:
      // With the mouse it was asked for by mouseDown; the keyboard's is sent by programs that help people.
      if (lParam == -1) AskForMenu();
      return true;
    case WM_LBUTTONDOWN:
      ClientToScreen(control_, &place);
      Raise(events_.mouseDown, kLeftButton, place);
      return SelectsWithMouse(message.id, wParam, lParam);
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:  // a second press soon after the menu was closed asks for it once more
      Focus();
      ClientToScreen(control_, &place);
      Raise(events_.mouseDown, kRightButton, place);
      return true;
    case WM_RBUTTONUP:
      return true;
    case WM_LBUTTONDBLCLK:
      if (!SelectsWithMouse(message.id, wParam, lParam)) message.PassOn();
      Raise(events_.dblClick);
      return true;
    default:
      return SelectsWithMouse(message.id, wParam, lParam);
  }
}

}  // namespace snip
