#include "ui/find/FoundList.h"

#include <windowsx.h>

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "platform/Drawing.h"
#include "platform/Fonts.h"
#include "platform/Rects.h"

namespace snip {
namespace {

UniqueFont BoldOf(HFONT font, bool underlined) {
  LOGFONTA description{};
  GetObjectA(font, sizeof description, &description);
  description.lfWeight = FW_BOLD;
  description.lfUnderline = underlined ? TRUE : FALSE;
  return UniqueFont(CreateFontIndirectA(&description));
}

/// A colour between those of the text and its background that is still easy to read.
COLORREF Between(COLORREF text, COLORREF ground) {
  const auto mix = [](int a, int b) { return (2 * a + b) / 3; };
  return RGB(mix(GetRValue(text), GetRValue(ground)), mix(GetGValue(text), GetGValue(ground)),
             mix(GetBValue(text), GetBValue(ground)));
}

/// Writes one line within a rectangle, parts of it in another font; a text that does not fit ends with dots.
class LineWriter {
 public:
  LineWriter(HDC dc, const RECT& room, const Folding& folding)
      : dc_(dc), room_(room), right_(room.right), folding_(folding) {}

  /// Reserves room at the right end for a text written later, at most a third of what is left.
  void LeaveRoomFor(std::string_view text, HFONT font) {
    const SelectedObject selected(dc_, font);
    const int wanted = text.empty() ? 0 : LetterEnds(text).back();
    right_ = room_.right - std::min<LONG>(wanted, (room_.right - room_.left) / 3);
  }
  void UseAllRoom() { right_ = room_.right; }
  void Write(std::string_view text, HFONT font) {
    const LONG width = right_ - room_.left;
    if (text.empty() || width <= 0) return;
    const SelectedObject selected(dc_, font);
    const std::vector<int> ends = LetterEnds(text);
    if (ends.back() <= width) return Draw(text, ends);
    constexpr std::string_view dots = "...";
    const std::vector<int> dotEnds = LetterEnds(dots);
    auto fit =
        static_cast<std::size_t>(std::ranges::upper_bound(ends, width - dotEnds.back()) - ends.begin());
    while (!folding_.BeginsCharacter(text, fit)) --fit;
    if (fit > 0) Draw(text.substr(0, fit), ends);
    Draw(dots, dotEnds);
    room_.left = right_;
  }
  void Write(std::string_view text, const std::vector<TextRange>& marks, HFONT font, HFONT markFont) {
    std::size_t at = 0;
    for (const TextRange& mark : marks) {
      Write(text.substr(at, mark.begin - at), font);
      Write(text.substr(mark.begin, mark.end - mark.begin), markFont);
      at = mark.end;
    }
    Write(text.substr(at), font);
  }

 private:
  std::vector<int> LetterEnds(std::string_view text) const {
    std::vector<int> ends(text.size());
    SIZE size{};
    GetTextExtentExPointA(dc_, text.data(), static_cast<int>(text.size()), 0, nullptr, ends.data(), &size);
    return ends;
  }
  /// Letter by letter, because a part that is written alone is not always as wide as it was measured.
  void Draw(std::string_view text, const std::vector<int>& ends) {
    std::vector<int> widths(text.size());
    std::adjacent_difference(ends.begin(), ends.begin() + std::ssize(text), widths.begin());
    ExtTextOutA(dc_, room_.left, room_.top, ETO_CLIPPED, &room_, text.data(), static_cast<UINT>(text.size()),
                widths.data());
    room_.left += ends[text.size() - 1];
  }

  HDC dc_;
  RECT room_;
  LONG right_;  ///< Where what is written now has to end.
  const Folding& folding_;
};

}  // namespace

FoundList::FoundList(const PaletteRows& rows, Events events) : rows_(rows), events_(std::move(events)) {}

FoundList::~FoundList() {
  Destroy();
}

bool FoundList::CreateIn(HWND parent, int id, HFONT font) {
  font_ = font;
  heading_ = BoldOf(font, false);
  marked_ = BoldOf(font, true);  // not every face has a bold weight that looks different
  rowHeight_ = std::max(CharacterSize(marked_.get()).height, CharacterSize(font).height) * 5 / 4;
  return Create({.className = "BnFoundList",
                 .title = "Found snippets",
                 .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL,
                 .exStyle = WS_EX_CLIENTEDGE,
                 .place = {},
                 .parent = parent,
                 .id = id,
                 .background = COLOR_WINDOW});
}

int FoundList::RowsInSight() const {
  return std::max(1, ClientSize(hWnd()).height / rowHeight_);
}

int FoundList::RowAt(int y) const {
  const int row = top_ + y / rowHeight_;
  return y >= 0 && row < rows_.count() ? row : -1;
}

void FoundList::TakeRows(int selected, bool stays) {
  top_ = stays ? std::max(0, top_ + selected - selected_) : 0;
  selected_ = selected;
  ShowSelected();
  UpdateScrollBar();
  InvalidateRect(hWnd(), nullptr, FALSE);
  accessible_.Notify(EVENT_OBJECT_REORDER);
  if (selected_ >= 0) accessible_.Notify(EVENT_OBJECT_SELECTION, selected_);
}

void FoundList::Select(int row) {
  if (row < 0 || row >= rows_.count()) return;
  const bool other = std::exchange(selected_, row) != row;
  if (other) {
    ShowSelected();
    InvalidateRect(hWnd(), nullptr, FALSE);
    accessible_.Notify(EVENT_OBJECT_SELECTION, row);
  }
  // Also sent while the field has the focus, and when there is no further row, because screen readers read a
  // row out when it gets the focus.
  accessible_.Notify(EVENT_OBJECT_FOCUS, row);
  if (other) events_.selected();
}

bool FoundList::MoveByKey(WPARAM key) {
  const int page = RowsInSight() - 1;
  const int last = rows_.count() - 1;
  switch (key) {
    case VK_UP:
      Select(rows_.Step(selected_, -1));
      return true;
    case VK_DOWN:
      Select(rows_.Step(selected_, 1));
      return true;
    case VK_PRIOR:
      Select(rows_.Step(std::max(selected_ - page, 0) + 1, -1));
      return true;
    case VK_NEXT:
      Select(rows_.Step(std::min(selected_ + page, last) - 1, 1));
      return true;
    default:
      return false;
  }
}

void FoundList::ShowSelected() {
  if (selected_ < 0) return;
  // Scrolls the heading above the first row into view, too.
  const int first = selected_ == rows_.First() ? 0 : selected_;
  ScrollTo(std::clamp(top_, selected_ - RowsInSight() + 1, first));
}

void FoundList::ScrollTo(int top) {
  top = std::clamp(top, 0, std::max(0, rows_.count() - RowsInSight()));
  if (std::exchange(top_, top) == top) return;
  UpdateScrollBar();
  InvalidateRect(hWnd(), nullptr, FALSE);
}

void FoundList::UpdateScrollBar() const {
  RowScrollBar::Show(hWnd(), top_, RowsInSight(), rows_.count());
}

void FoundList::Paint() {
  const PaintDC paint(hWnd());
  const Size size = ClientSize(hWnd());
  if (size.width <= 0 || size.height <= 0) return;
  const Canvas canvas(size);
  FillArea(canvas.dc(), {0, 0, size.width, size.height}, GetSysColor(COLOR_WINDOW));
  SetBkMode(canvas.dc(), TRANSPARENT);
  for (int row = top_; row < rows_.count() && (row - top_) * rowHeight_ < size.height; ++row) {
    const int y = (row - top_) * rowHeight_;
    PaintRow(canvas.dc(), row, {0, y, size.width, y + rowHeight_});
  }
  BitBlt(paint.get(), 0, 0, size.width, size.height, canvas.dc(), 0, 0, SRCCOPY);
}

void FoundList::PaintRow(HDC dc, int row, const RECT& place) const {
  const PaletteRow texts = rows_.Row(row);
  const bool selected = row == selected_;
  if (selected) FillArea(dc, ToRect(place), GetSysColor(COLOR_HIGHLIGHT));
  const COLORREF colour = GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
  const COLORREF weak = selected ? colour : Between(colour, GetSysColor(COLOR_WINDOW));
  const int margin = rowHeight_ / 4;
  RECT room = place;
  room.left += texts.heading ? margin : margin * 2;
  room.top += rowHeight_ / 10;
  SetTextColor(dc, colour);
  // The matching line has the right half so that the names form a column, unless the list is too narrow for
  // both.
  RECT left = room;
  const LONG middle = (place.left + place.right) / 2;
  const bool hasContext = !texts.context.empty() && place.right - place.left >= 20 * rowHeight_;
  if (hasContext) left.right = middle - margin;
  const Folding& folding = rows_.finder().folding();
  LineWriter line(dc, left, folding);
  if (texts.heading) {
    line.Write(texts.text, heading_.get());
    return;
  }
  line.LeaveRoomFor(texts.behind, font_);
  line.Write(texts.text, texts.marks, font_, marked_.get());
  line.UseAllRoom();
  SetTextColor(dc, weak);
  line.Write(texts.behind, font_);
  if (hasContext) {
    room.left = middle;
    LineWriter context(dc, room, folding);
    SetTextColor(dc, colour);
    context.Write(texts.context, texts.contextMarks, font_, marked_.get());
  }
  if (selected && GetFocus() == hWnd()) DrawFocusRect(dc, &place);
}

AccessibleItem FoundList::DescribeItem(int item) const {
  const PaletteRow row = rows_.Row(item);
  const Rect place{0, (item - top_) * rowHeight_, ClientSize(hWnd()).width, rowHeight_};
  if (row.heading)
    return {.name = row.text,
            .role = ROLE_SYSTEM_STATICTEXT,
            .state = 0,
            .place = place,
            .shortcut = "",
            .defaultAction = ""};
  const LONG state =
      STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE | (item == selected_ ? STATE_SYSTEM_SELECTED : 0);
  return {.name = row.Spoken(),
          .role = ROLE_SYSTEM_LISTITEM,
          .state = state,
          .place = place,
          .shortcut = "",
          .defaultAction = "Double Click"};
}

std::optional<int> FoundList::FocusedItem() const {
  return selected_ >= 0 ? std::optional(selected_) : std::nullopt;
}

void FoundList::DoDefaultAction(int item) {
  Select(item);
  events_.activated();
}

LRESULT FoundList::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = accessible_.Answer(message, wParam, lParam)) return *answer;
  if (const auto top = scrollBar_.Wanted(hWnd(), message, wParam)) {
    ScrollTo(*top);
    return 0;
  }
  switch (message) {
    case WM_PAINT:
      Paint();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      ScrollTo(top_);
      UpdateScrollBar();
      InvalidateRect(hWnd(), nullptr, FALSE);
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
      SetFocus(hWnd());
      const int row = RowAt(GET_Y_LPARAM(lParam));
      if (row < 0 || rows_.Row(row).heading) return 0;
      Select(row);
      if (message == WM_LBUTTONDBLCLK) events_.activated();
      return 0;
    }
    case WM_KEYDOWN:
      if (wParam == VK_HOME) Select(rows_.First());
      if (wParam == VK_END) Select(rows_.count() - 1);
      if (!MoveByKey(wParam)) return Default(message, wParam, lParam);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_SETFOCUS:
      if (selected_ >= 0) accessible_.Notify(EVENT_OBJECT_FOCUS, selected_);
      [[fallthrough]];
    case WM_KILLFOCUS:
      InvalidateRect(hWnd(), nullptr, FALSE);
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
