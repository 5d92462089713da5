#include "ui/editor/EditMessages.h"

#include <richedit.h>

namespace snip {

bool ChangesText(UINT message) {
  switch (message) {
    case WM_CUT:
    case WM_PASTE:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_SETTEXT:
    case WM_UNICHAR:
    case WM_IME_STARTCOMPOSITION:
    case WM_IME_COMPOSITION:
    case WM_IME_ENDCOMPOSITION:
    case WM_IME_CHAR:
    case WM_IME_KEYDOWN:
    case EM_UNDO:
    case EM_REDO:
    case EM_PASTESPECIAL:
    case EM_REPLACESEL:
    case EM_SETTEXTEX:
    case EM_STREAMIN:
      return true;
    default:
      return false;
  }
}

bool ConcernsWholeText(UINT message) {
  switch (message) {
    case EM_GETSEL:
    case EM_EXGETSEL:
    case EM_GETFIRSTVISIBLELINE:
    case EM_CANUNDO:
    case EM_SETREADONLY:
      return false;
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
    case WM_NCLBUTTONDOWN:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_CONTEXTMENU:
    case WM_GETOBJECT:
    case WM_SETFONT:
    case WM_PRINT:
    case WM_PRINTCLIENT:
      return true;
    default: {
      const auto within = [message](UINT first, UINT last) { return first <= message && message <= last; };
      constexpr UINT lastOfPlainControl = 0x00DF;
      return within(WM_KEYFIRST, WM_KEYLAST) || within(WM_LBUTTONDOWN, WM_MOUSELAST) ||
             within(WM_IME_STARTCOMPOSITION, WM_IME_KEYLAST) || within(WM_CUT, WM_UNDO) ||
             within(EM_GETSEL, lastOfPlainControl) || message >= WM_USER;
    }
  }
}

bool EditsAtCaret(UINT message, WPARAM wParam) {
  switch (message) {
    case WM_CHAR:
    case WM_CUT:
    case WM_CLEAR:
    case EM_REPLACESEL:
      return true;
    case WM_KEYDOWN:
      return wParam != 'Z' && wParam != 'Y';
    default:
      return false;
  }
}

}  // namespace snip
