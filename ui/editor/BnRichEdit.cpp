#include "ui/editor/BnRichEdit.h"

#include <richedit.h>
#include <windowsx.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "ui/editor/WordRange.h"

namespace snip {
namespace {

constexpr int kControlId = 1;
/// Above this many characters a control is made anew instead of replacing its text.
constexpr LRESULT kReplaceLimit = 4000;
constexpr LPARAM kNoTextLimit = 0x7FFFFFFE;

bool IsPasteKey(WPARAM key) {
  return (key == 'V' && GetKeyState(VK_CONTROL) < 0) || (key == VK_INSERT && GetKeyState(VK_SHIFT) < 0);
}

}  // namespace

// The rich-edit library stays loaded until the process ends: a window class does not survive its library, and
// other parts of the process may use it as well.
BnRichEdit::BnRichEdit(Events events)
    : events_(std::move(events)), hasRichEdit_(LoadLibraryA("riched20.dll") != nullptr) {}

BnRichEdit::~BnRichEdit() {
  Destroy();
}

bool BnRichEdit::CreateIn(HWND parent, int id, HFONT font) {
  font_ = font;
  return Create({.className = "BnRichEdit",
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {},
                 .parent = parent,
                 .id = id,
                 .background = COLOR_WINDOW});
}

void BnRichEdit::MakeControl() {
  const bool hadFocus = control_ != nullptr && HasFocus();
  remaking_ = true;
  if (control_ != nullptr) DestroyWindow(control_);
  const Size size = ClientSize(hWnd());
  // A system without the rich-edit library still has the plain edit control.
  control_ = CreateControl(hWnd(), hasRichEdit_ ? RICHEDIT_CLASSA : "EDIT", "",
                           WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL |
                               ES_AUTOHSCROLL | ES_WANTRETURN | ES_NOHIDESEL,
                           WS_EX_CLIENTEDGE, kControlId, font_, {0, 0, size.width, size.height});
  SendMessageA(control_, EM_EXLIMITTEXT, 0, kNoTextLimit);
  SendMessageA(control_, EM_SETEVENTMASK, 0, ENM_KEYEVENTS | ENM_MOUSEEVENTS | ENM_CHANGE);
  SendMessageA(control_, EM_SETREADONLY, locked_ ? TRUE : FALSE, 0);
  field_ = ExactTextField(control_);
  if (hadFocus) SetFocus(control_);
  remaking_ = false;
}

void BnRichEdit::SetText(const std::string& text) {
  const bool replacesMuch = SendMessageA(control_, WM_GETTEXTLENGTH, 0, 0) > kReplaceLimit;
  if (replacesMuch) MakeControl();
  field_.SetText(text);
  SendMessageA(control_, EM_SETSEL, 0, 0);
  SendMessageA(control_, EM_SCROLLCARET, 0, 0);
}

void BnRichEdit::SetFont(HFONT font) {
  font_ = font;
  SendMessageA(control_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}
int BnRichEdit::SelLength() const {
  CHARRANGE range{};
  SendMessageA(control_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&range));
  return static_cast<int>(range.cpMax - range.cpMin);
}
int BnRichEdit::TextLength() const {
  return GetWindowTextLengthA(control_);
}
void BnRichEdit::SetSelection(int start, int length) {
  CHARRANGE range{start, start + length};
  SendMessageA(control_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}
std::string BnRichEdit::SelText() const {
  std::string text(static_cast<std::size_t>(SelLength()) + 1, '\0');
  SendMessageA(control_, EM_GETSELTEXT, 0, reinterpret_cast<LPARAM>(text.data()));
  text.pop_back();
  return text;
}
void BnRichEdit::ReplaceSelection(const std::string& text) {
  SendMessageA(control_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

void BnRichEdit::SetLocked(bool locked) {
  locked_ = locked;
  SendMessageA(control_, EM_SETREADONLY, locked ? TRUE : FALSE, 0);
}

/// Selects by itself, since the control is no help here: on Windows it selects a word with the blanks behind
/// it, and Wine's takes text elsewhere when the word is the last one of its line.
void BnRichEdit::SelectWordAt(POINTL place) {
  const LRESULT character = SendMessageA(control_, EM_CHARFROMPOS, 0, reinterpret_cast<LPARAM>(&place));
  const LRESULT line = SendMessageA(control_, EM_EXLINEFROMCHAR, 0, character);
  const LRESULT lineStart = SendMessageA(control_, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
  const LRESULT length = SendMessageA(control_, EM_LINELENGTH, static_cast<WPARAM>(lineStart), 0);
  std::string text(static_cast<std::size_t>(length) + sizeof(WORD), '\0');
  const auto room = static_cast<WORD>(std::min<std::size_t>(text.size(), 0xFFFF));
  std::memcpy(text.data(), &room, sizeof room);  // how the message is told the buffer's size
  SendMessageA(control_, EM_GETLINE, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));

  const ColumnRange word = WordAt(text, static_cast<std::size_t>(character - lineStart));
  CHARRANGE range{static_cast<LONG>(lineStart + static_cast<LRESULT>(word.begin)),
                  static_cast<LONG>(lineStart + static_cast<LRESULT>(word.end))};
  SendMessageA(control_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

bool BnRichEdit::FilterInput(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CHAR:
      events_.keyPress(static_cast<char>(wParam));
      return false;
    case WM_KEYDOWN:
      if (IsPasteKey(wParam)) {
        // As text, whatever else the clipboard offers: pictures and formats have no place in code.
        if (!locked_) SendMessageA(control_, EM_PASTESPECIAL, CF_UNICODETEXT, 0);
        return true;
      }
      // Tab is a character while the code is edited; in a field that is only read it moves on.
      if (wParam != VK_TAB || !locked_) return false;
      SetFocus(GetNextDlgTabItem(GetAncestor(hWnd(), GA_ROOT), control_,
                                 GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE));
      return true;
    case WM_RBUTTONDOWN:
    case WM_LBUTTONDOWN: {
      POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      ClientToScreen(control_, &place);
      events_.mouseDown(message == WM_LBUTTONDOWN ? 1 : 2, place);
      return message == WM_RBUTTONDOWN;
    }
    case WM_LBUTTONDBLCLK:
      SelectWordAt({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      events_.dblClick();
      return true;
    default:
      return false;
  }
}

LRESULT BnRichEdit::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      MakeControl();
      return control_ != nullptr ? 0 : -1;
    case WM_SIZE:
      MoveTo(control_, {0, 0, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case WM_SETFOCUS:
      Focus();
      return 0;
    case WM_DESTROY:
      control_ = nullptr;
      return 0;
    case WM_COMMAND:
      if (remaking_) return 0;
      if (HIWORD(wParam) == EN_SETFOCUS) events_.gotFocus();
      if (HIWORD(wParam) == EN_KILLFOCUS) events_.lostFocus();
      return 0;
    case WM_NOTIFY: {
      const auto* header = reinterpret_cast<const NMHDR*>(lParam);
      if (header->code != EN_MSGFILTER) return 0;
      const auto* filter = reinterpret_cast<const MSGFILTER*>(lParam);
      return FilterInput(filter->msg, filter->wParam, filter->lParam) ? 1 : 0;
    }
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
