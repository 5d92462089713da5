#include "ui/main/frmTip.h"

#include <windowsx.h>

#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/Rects.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

HFONT FontOrDefault(HFONT font) {
  return font != nullptr ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

}  // namespace

frmTip::~frmTip() {
  Destroy();
}

bool frmTip::Load() {
  // Without an owner: Wine 8 does not let a window that owns topmost ones become topmost itself.
  return Create({.className = "frmTip",
                 .style = WS_POPUP,
                 .exStyle = WS_EX_TOOLWINDOW | WS_EX_TOPMOST,
                 .place = {},
                 .classStyle = CS_SAVEBITS | CS_DBLCLKS,
                 .background = COLOR_INFOBK});
}

void frmTip::ShowTip(const std::string& text, int x, int y) {
  const auto unlessZero = [](int at) { return at != 0 ? std::optional(at) : std::nullopt; };
  Show(text, unlessZero(x), unlessZero(y));
}

void frmTip::Show(const std::string& text, std::optional<int> x, std::optional<int> y) {
  if (text.empty() || (hWnd() == nullptr && !Load())) return;
  POINT cursor{};
  GetCursorPos(&cursor);
  const Point pointer = ToPoint(cursor);
  const Rect place = PlaceTip({.x = x,
                               .y = y,
                               .pointer = pointer,
                               .text = TextSize(FontOrDefault(font_), " " + text + " "),
                               .screen = ScreenAt(pointer)});
  text_ = text;
  MoveTo(hWnd(), place);
  SetWindowTextA(hWnd(), text.c_str());  // what a screen reader reads
  SetWindowPos(hWnd(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  ShowWindow(hWnd(), SW_SHOWNOACTIVATE);
  InvalidateRect(hWnd(), nullptr, TRUE);
  UpdateWindow(hWnd());
}

void frmTip::Hide() {
  if (!Visible()) return;  // called at each poll of the pointer
  ShowWindow(hWnd(), SW_HIDE);
}

bool frmTip::Hides(HWND window, Point screen) {
  const POINT place = ToPOINT(screen);
  if (!LiesAt(hWnd(), place)) return false;
  const FlagScope lookedThrough(lookedThrough_);
  return LiesAt(window, place);
}

void frmTip::Form_Paint() {
  const PaintDC paint(hWnd());
  const HDC dc = paint.get();
  const Size client = ClientSize(hWnd());
  const RECT area{0, 0, client.width, client.height};
  FillRect(dc, &area, GetSysColorBrush(COLOR_INFOBK));

  const SelectedObject font(dc, FontOrDefault(font_));
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
  const int left = TextSize(FontOrDefault(font_), " ").width;
  const int top = (client.height - TextSize(FontOrDefault(font_), text_).height) / 2;
  TextOutA(dc, left, top, text_.c_str(), static_cast<int>(text_.size()));
  FrameRect(dc, &area, GetSysColorBrush(COLOR_INFOTEXT));
}

bool frmTip::ExtendsAt(POINT screen) const {
  if (extended_ == nullptr) return false;
  ScreenToClient(extended_, &screen);
  RECT area{};
  GetClientRect(extended_, &area);
  return PtInRect(&area, screen) != 0;
}

/// The window that a click there is meant for; null if it is another program's, or not its client area.
HWND frmTip::Beneath(POINT screen) {
  // The tip stays, to pass on both clicks of a double click and the release that opens a menu.
  if (ExtendsAt(screen)) return extended_;
  Hide();
  const HWND beneath = WindowFromPoint(screen);
  // The tip never extends another program's window or a scroll bar.
  if (beneath == nullptr || GetWindowThreadProcessId(beneath, nullptr) != GetCurrentThreadId())
    return nullptr;
  const bool inClientArea =
      SendMessageA(beneath, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y)) == HTCLIENT;
  return inClientArea ? beneath : nullptr;
}

void frmTip::PassClickOn(UINT message, WPARAM wParam, POINT place) {
  ClientToScreen(hWnd(), &place);
  const HWND beneath = Beneath(place);
  if (beneath == nullptr) return;
  SetActiveWindow(GetAncestor(beneath, GA_ROOT));
  ScreenToClient(beneath, &place);
  PostMessageA(beneath, message, wParam, MAKELPARAM(place.x, place.y));
}

LRESULT frmTip::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = accessible_.Answer(message, wParam, lParam)) return *answer;
  switch (message) {
    case WM_PAINT:
      Form_Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;  // painting fills everything
    case WM_NCHITTEST:
      return lookedThrough_ ? HTTRANSPARENT : Default(message, wParam, lParam);
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_MOUSEWHEEL:
      // The user means to scroll the list beneath.
      Hide();
      return extended_ != nullptr ? SendMessageA(extended_, message, wParam, lParam) : 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_RBUTTONUP:
    case WM_MBUTTONDOWN:
      PassClickOn(message, wParam, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

// --- Over the list ----------------------------------------------------------------------------------------

void ListTips::Attach(HWND list) {
  list_ = list;
  tip_.SetExtended(list);
}

void ListTips::TakeListFont() {
  tip_.SetFont(FontOf(list_));
  measured_.clear();
  measuredWidth_ = 0;
}

TipSurroundings::Place ListTips::PlaceOfPointer() {
  GetCursorPos(&pointer_);
  place_ = LiesAt(list_, pointer_)                           ? Place::List
           : tip_.Visible() && LiesAt(tip_.hWnd(), pointer_) ? Place::Tip
                                                             : Place::Elsewhere;
  return place_;
}

std::int32_t ListTips::EntryAtPointer() const {
  POINT place = pointer_;
  ScreenToClient(list_, &place);
  return static_cast<std::int32_t>(SendMessageA(list_, LB_ITEMFROMPOINT, 0, MAKELPARAM(place.x, place.y)));
}

std::string ListTips::EntryText(std::int32_t entry) const {
  return ListBoxText(list_, entry);
}

Point ListTips::OnScreen(int y) const {
  POINT place{0, y};
  ClientToScreen(list_, &place);
  return ToPoint(place);
}

int ListTips::TopEntry() const {
  return static_cast<int>(SendMessageA(list_, LB_GETTOPINDEX, 0, 0));
}

int ListTips::EntryHeight() const {
  return static_cast<int>(SendMessageA(list_, LB_GETITEMHEIGHT, 0, 0));
}

int ListTips::TextWidth(const std::string& text) {
  if (text != measured_) {
    measured_ = text;
    measuredWidth_ = TextSize(FontOf(list_), text).width;
  }
  return measuredWidth_;
}

int ListTips::ListWidth() const {
  return PlaceInParent(list_).width;
}

}  // namespace snip
