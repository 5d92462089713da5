#include "ui/editor/CodeColouring.h"

#include <richedit.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/FlagScope.h"
#include "platform/HighContrast.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "ui/editor/RichEditText.h"

namespace snip {
namespace {

/// How long a slice may take, well below what a user feels.
constexpr std::chrono::milliseconds kSlice{8};

CHARRANGE Selection(HWND control) {
  CHARRANGE selection{};
  SendMessageA(control, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  return selection;
}

void Select(HWND control, CHARRANGE range) {
  SendMessageA(control, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

}  // namespace

void CodeColouring::Attach(HWND control, int lineHeight) {
  control_ = control;
  SetLineHeight(lineHeight);
  ranges_ = control != nullptr ? RichEditRanges(control) : RichEditRanges();
  model_.Load({});
}

void CodeColouring::WithoutUndo(const std::function<void()>& change) {
  if (!active()) return change();
  const FlagScope busy(busy_);
  const RichEditRanges::Unrecorded unrecorded(ranges_);
  change();
}

bool CodeColouring::TakeColours(COLORREF fore) {
  highContrast_ = HasHighContrast();
  const CodeColours colours = CodeColoursOn(GetSysColor(COLOR_WINDOW), fore);
  const bool changed = colours != colours_;
  colours_ = colours;
  if (changed) model_.ForgetHues();
  SetSyntaxColors(syntaxColors_);
  return changed;
}

void CodeColouring::SetSyntaxColors(bool colouring) {
  syntaxColors_ = colouring;
  model_.SetColouring(colouring && !highContrast_);
}

void CodeColouring::Start(std::string columns) {
  slice_ = 0;
  model_.Load(std::move(columns));
}

std::size_t CodeColouring::LineStart(std::size_t line) const {
  return line < model_.lineCount() ? model_.LineStart(line) : model_.text().size();
}

void CodeColouring::StartUncoloured(std::string columns) {
  slice_ = 0;
  model_.Load(std::move(columns));
  if (AgreesWithControl()) return;
  if (const auto characters = RichEditText(control_)) model_.Load(RichEditColumns(*characters));
}

CodeColouring::Caret CodeColouring::CaretBefore(WPARAM typed) const {
  const CHARRANGE selection = Selection(control_);
  const bool isAscii = typed >= u' ' && typed <= u'~';
  return {.begin = static_cast<std::size_t>(selection.cpMin),
          .end = static_cast<std::size_t>(selection.cpMax),
          .typed = isAscii ? static_cast<char16_t>(typed) : u'\0'};
}

void CodeColouring::FollowEdit(Caret before) {
  if (!active()) return;
  const CHARRANGE now = Selection(control_);
  const std::size_t length = ranges_.TextLength();
  const std::size_t oldLength = model_.text().size();
  // What is behind the caret and behind the former selection is as it was; so is what is in front of
  // both.
  const std::size_t begin = std::min(before.begin, static_cast<std::size_t>(now.cpMin));
  const std::size_t tail = std::min(oldLength - std::min(oldLength, before.end),
                                    length - std::min(length, static_cast<std::size_t>(now.cpMax)));
  const std::size_t end = length - tail;
  const std::size_t oldEnd = oldLength - tail;
  if (end < begin || oldEnd < begin) return FollowChange();
  // In the middle of a long text, Wine 8's control takes twice as long to tell a character as to take it in.
  std::u16string characters =
      before.typed != 0 && end - begin == 1 ? std::u16string(1, before.typed) : ranges_.Text(begin, end);
  if (characters.size() != end - begin) return FollowChange();
  ShowAsStored(begin, characters);
  const std::string inserted = RichEditColumns(characters);
  const bool atCaret = inserted.size() == 1 && now.cpMin == now.cpMax;
  const std::size_t endLine = model_.Replace(begin, oldEnd, inserted, atCaret ? HueAtCaret() : Hue::Unknown);
  const std::size_t line = model_.LineAt(begin);
  // Which lines can be seen is not asked for each key: in a long text the control takes its time to tell.
  if (endLine - line <= VisibleLines()) {
    Finish(line, endLine);
  } else {
    FinishVisible();
  }
}

void CodeColouring::FollowChange() {
  if (!active()) return;
  std::optional<std::u16string> characters = RichEditText(control_);
  if (!characters) return;
  ShowAsStored(0, *characters);
  model_.ReplaceAll(RichEditColumns(*characters));
  FinishVisible();
}

void CodeColouring::ShowAsStored(std::size_t begin, std::u16string& characters) {
  const std::u16string stored = Utf16FromAnsi(AnsiFromUtf16(characters));
  if (stored == characters || stored.size() != characters.size()) return;
  const CHARRANGE selection = Selection(control_);
  const FlagScope busy(busy_);
  const RichEditRanges::Unrecorded unrecorded(ranges_);
  for (std::size_t i = 0; i < stored.size(); ++i) {
    if (stored[i] == characters[i]) continue;
    // By messages, since Wine 8's control fails when its object model changes the text.
    const auto place = static_cast<LONG>(begin + i);
    Select(control_, {place, place + 1});
    const std::string bytes = AnsiFromUtf16(std::u16string_view(stored).substr(i, 1));
    SendMessageA(control_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(bytes.c_str()));
  }
  Select(control_, selection);
  characters = stored;
}

void CodeColouring::FinishVisible() {
  // In the midst of a change, which is followed later, the places are wrong.
  if (finished() || busy_ || !AgreesWithControl()) return;
  const std::size_t first = FirstVisibleLine();
  Finish(first, first + VisibleLines());
}

bool CodeColouring::FinishSome() {
  if (finished()) return false;
  if (busy_ || !AgreesWithControl()) return false;
  const auto end = std::chrono::steady_clock::now() + kSlice;
  do {
    slice_ = model_.NextUnfinished(slice_);
    if (slice_ == model_.lineCount()) slice_ = model_.NextUnfinished(0);
    Finish(slice_, slice_ + 1);
  } while (!model_.finished() && std::chrono::steady_clock::now() < end);
  return !model_.finished();
}

void CodeColouring::Finish(std::size_t firstLine, std::size_t endLine) {
  const std::vector<HueRun> runs = model_.Finish(firstLine, endLine);
  if (runs.empty()) return;
  const FlagScope busy(busy_);
  const RichEditRanges::Colouring colouring(ranges_);
  for (const HueRun& run : runs) colouring.SetColor(run.begin, run.end, ColorOf(run.hue));
}

COLORREF CodeColouring::ColorOf(Hue hue) const {
  switch (hue) {
    case Hue::Keyword:
      return colours_.keyword;
    case Hue::Comment:
      return colours_.comment;
    case Hue::String:
      return colours_.string;
    default:
      return colours_.fore;
  }
}

/// The colour of what was typed last. Two hues may have one colour, and then it matters not which is told.
Hue CodeColouring::HueAtCaret() const {
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  SendMessageA(control_, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
  if ((format.dwMask & CFM_COLOR) == 0 || (format.dwEffects & CFE_AUTOCOLOR) != 0) return Hue::Unknown;
  for (const Hue hue : {Hue::Fore, Hue::Keyword, Hue::Comment, Hue::String}) {
    if (ColorOf(hue) == format.crTextColor) return hue;
  }
  return Hue::Unknown;
}

std::size_t CodeColouring::FirstVisibleLine() const {
  const LRESULT line = SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0);
  const LRESULT place = SendMessageA(control_, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
  return model_.LineAt(static_cast<std::size_t>(std::max<LRESULT>(place, 0)));
}

std::size_t CodeColouring::VisibleLines() const {
  // One more at each edge can be seen in part.
  return static_cast<std::size_t>(ClientSize(control_).height / lineHeight_ + 2);
}

}  // namespace snip
