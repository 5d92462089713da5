#include "ui/editor/CodeFilling.h"

#include <richedit.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/editor/RichEditFormat.h"
#include "ui/editor/RichEditText.h"

namespace snip {
namespace {

/// To replace a text takes a control a time that grows with the square of the text's length.
constexpr std::size_t kShortText = 16000;  ///< Characters.
constexpr std::ptrdiff_t kShortTextLines = 200;

bool IsShort(const auto& text) {
  return text.size() <= kShortText && std::count(text.begin(), text.end(), '\r') <= kShortTextLines;
}

std::size_t LongestLineOf(std::u16string_view characters) {
  std::size_t longest = 0;
  for (std::size_t start = 0; start < characters.size();) {
    const std::size_t end = std::min(characters.find(u'\r', start), characters.size());
    longest = std::max(longest, end - start);
    start = end + 1;
  }
  return longest;
}

void SelectIn(HWND control, CHARRANGE range) {
  SendMessageA(control, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

}  // namespace

bool CodeFilling::IsLong(std::string_view text) {
  return !IsShort(text);
}

bool CodeFilling::Start(HWND control, std::u16string characters, std::string columns, const RtfLook& look,
                        std::size_t linesInSight) {
  rest_.reset();
  if (characters.empty() || !FitsRtf(characters) || LongestLineOf(characters) > kShortText) return false;
  control_ = control;
  const bool isShort = IsShort(characters);
  colouring_.Start(std::move(columns));
  const std::size_t end =
      isShort ? colouring_.lineCount() : EndOfPart(0, std::max(linesInSight, kLinesOfPart));
  Show(characters, 0, end, look, RtfScope::Whole);
  if (isShort) return colouring_.AgreesWithControl();
  rest_ = {std::move(characters), end};
  return true;
}

void CodeFilling::AddPart(const RtfLook& look) {
  const std::size_t end = EndOfPart(rest_->shownLines, kLinesOfPart);
  // What it shows is not changed, and drawing it takes three times as long as adding to it.
  UpdateWindow(control_);
  SendMessageA(control_, WM_SETREDRAW, FALSE, 0);
  constexpr LONG behindAll = 0x7FFFFFFF;
  CHARRANGE selected{};
  POINT scrolled{};
  SendMessageA(control_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
  SendMessageA(control_, EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
  SelectIn(control_, {behindAll, behindAll});
  // To free what Wine 8 records for undo leaves gaps between the lines that slow every key afterwards: in
  // 10,000 lines a key takes ten times as long.
  colouring_.WithoutUndo([&] { Show(rest_->characters, rest_->shownLines, end, look, RtfScope::Part); });
  SelectIn(control_, selected);
  SendMessageA(control_, EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
  SendMessageA(control_, WM_SETREDRAW, TRUE, 0);
  rest_->shownLines = end;
  if (end == colouring_.lineCount()) rest_.reset();
}

std::size_t CodeFilling::FilledEnd(std::size_t lines) const {
  if (!rest_) return std::u16string::npos;
  return rest_->shownLines <= lines ? 0 : colouring_.LineStart(rest_->shownLines - lines);
}

/// The line in front of which a part ends that is shown in a moment.
std::size_t CodeFilling::EndOfPart(std::size_t firstLine, std::size_t lines) const {
  const std::size_t start = colouring_.LineStart(firstLine);
  std::size_t end = firstLine + 1;
  while (end < colouring_.lineCount() && end < firstLine + lines &&
         colouring_.LineStart(end + 1) - start <= kShortText) {
    ++end;
  }
  return end;
}

void CodeFilling::Show(std::u16string_view characters, std::size_t firstLine, std::size_t endLine,
                       const RtfLook& look, RtfScope scope) {
  const std::size_t start = colouring_.LineStart(firstLine);
  const std::size_t end = colouring_.LineStart(endLine);
  std::vector<HueRun> runs = colouring_.HuesOf(firstLine, endLine);
  for (HueRun& run : runs) {
    run.begin -= start;
    run.end -= start;
  }
  const bool whole = scope == RtfScope::Whole;
  StreamIn(control_, RtfOf(characters.substr(start, end - start), runs, look, scope),
           whole ? SF_RTF : SF_RTF | SFF_SELECTION);
  constexpr double halfPoints = 2;
  // RTF has half points only. To set the size of each part takes as long as filling it in.
  if (std::floor(look.font.Size * halfPoints) == look.font.Size * halfPoints) return;
  if (!whole) SelectIn(control_, {static_cast<LONG>(start), static_cast<LONG>(end)});
  SetRichEditSize(control_, look.font, whole ? SCF_ALL : SCF_SELECTION);
}

}  // namespace snip
