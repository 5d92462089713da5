#include "ui/find/FoundPreview.h"

#include <utility>

#include "platform/HighContrast.h"

namespace snip {
namespace {

constexpr std::size_t kMostMarks = 200;

/// The colours of marks. Coloured code has to stay readable on them.
Marks MarkColours() {
  if (HasHighContrast())
    return {.ground = GetSysColor(COLOR_HIGHLIGHT), .ink = GetSysColor(COLOR_HIGHLIGHTTEXT)};
  const COLORREF ground = GetSysColor(COLOR_WINDOW);
  const bool dark = GetRValue(ground) + GetGValue(ground) + GetBValue(ground) < 3 * 128;
  return {.ground = dark ? RGB(96, 80, 0) : RGB(255, 240, 150)};
}

}  // namespace

void FoundPreview::CreateIn(HWND parent, int id, HWND before, const FontProperty& font) {
  field_.CreateIn(parent, id, font, "Preview");
  field_.SetLocked(true);
  SetWindowPos(field_.hWnd(), before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void FoundPreview::SetLook(const FontProperty& font, bool coloursCode) {
  field_.SetFont(font);
  field_.SetSyntaxColors(coloursCode);
}

void FoundPreview::Show(const std::string& code, const std::vector<TextRange>& places,
                        std::optional<TextRange> current) {
  Marks marks = MarkColours();
  for (const TextRange& place : places) {
    if (place == current) marks.shown = marks.parts.size();
    if (place == current || marks.parts.size() < kMostMarks) marks.parts.emplace_back(place.begin, place.end);
  }
  if (code == code_ && marks == marks_) return;
  field_.SetText(code);
  field_.Mark(marks);
  code_ = code;
  marks_ = std::move(marks);
}

void FoundPreview::Clear() {
  marks_ = {};
  if (!std::exchange(code_, {}).empty()) field_.SetText("");
}

}  // namespace snip
