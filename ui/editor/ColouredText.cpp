#include "ui/editor/ColouredText.h"

#include <algorithm>
#include <utility>

namespace snip {
namespace {

Hue HueOf(TokenKind kind) {
  switch (kind) {
    case TokenKind::Keyword:
    case TokenKind::Directive:
      return Hue::Keyword;
    case TokenKind::Comment:
      return Hue::Comment;
    case TokenKind::String:
      return Hue::String;
    default:
      return Hue::Fore;
  }
}

/// The language's own limit. Controls take long to lay out a longer line of many colours.
constexpr std::size_t kLongestLine = 1023;

constexpr std::size_t kRoomForTyping = 1000;

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

}  // namespace

void ColouredText::Load(std::string text) {
  text_ = std::move(text);
  // Room for some typing: to move a long text takes longer than a key.
  text_.reserve(text_.size() + kRoomForTyping);
  hues_.reserve(text_.size() + kRoomForTyping);
  hues_.assign(text_.size(), Hue::Fore);
  lines_.assign(1, Line{});
  for (std::size_t i = 0; i < text_.size(); ++i) {
    if (text_[i] == '\r') lines_.push_back({.start = i + 1, .before = LineState::Fresh, .finished = false});
  }
  unfinished_ = lines_.size();
  for (std::size_t line = 1; line < lines_.size(); ++line) {
    lines_[line].before = StateAfterLine(LineText(line - 1), lines_[line - 1].before);
  }
}

void ColouredText::SetColouring(bool colouring) {
  if (colouring == colouring_) return;
  colouring_ = colouring;
  for (std::size_t line = 0; line < lines_.size(); ++line) MarkUnfinished(line);
}

std::size_t ColouredText::Replace(std::size_t begin, std::size_t end, std::string_view inserted, Hue hue) {
  const std::size_t first = LineAt(begin);
  const std::size_t last = LineAt(end);
  text_.replace(begin, end - begin, inserted);
  const auto place = hues_.begin() + static_cast<std::ptrdiff_t>(begin);
  hues_.erase(place, place + static_cast<std::ptrdiff_t>(end - begin));
  hues_.insert(hues_.begin() + static_cast<std::ptrdiff_t>(begin), inserted.size(), hue);

  const auto lineAt = [&](std::size_t line) { return lines_.begin() + static_cast<std::ptrdiff_t>(line); };
  unfinished_ -= static_cast<std::size_t>(
      std::count_if(lineAt(first + 1), lineAt(last + 1), [](const Line& line) { return !line.finished; }));
  lines_.erase(lineAt(first + 1), lineAt(last + 1));
  for (auto line = lineAt(first + 1); line != lines_.end(); ++line) {
    line->start = line->start - (end - begin) + inserted.size();
  }
  std::vector<Line> added;
  for (std::size_t i = 0; i < inserted.size(); ++i) {
    if (inserted[i] != '\r') continue;
    added.push_back({.start = begin + i + 1, .before = LineState::Fresh, .finished = false});
  }
  lines_.insert(lineAt(first + 1), added.begin(), added.end());
  unfinished_ += added.size();
  return Retell(first, first + added.size() + 1);
}

void ColouredText::ReplaceAll(std::string_view text) {
  const std::size_t shorter = std::min(text.size(), text_.size());
  std::size_t same = 0;
  while (same < shorter && text[same] == text_[same]) ++same;
  std::size_t sameAtEnd = 0;
  while (sameAtEnd < shorter - same &&
         text[text.size() - 1 - sameAtEnd] == text_[text_.size() - 1 - sameAtEnd]) {
    ++sameAtEnd;
  }
  const std::size_t oldEnd = text_.size() - sameAtEnd;
  const std::string_view inserted = text.substr(same, text.size() - sameAtEnd - same);
  // What came in or went beside the like of itself may be one as well as the other.
  std::size_t begin = same;
  if (inserted.empty() != (oldEnd == same)) {
    const std::string_view longer = inserted.empty() ? text_ : text;
    const std::size_t moved = std::max(inserted.size(), oldEnd - same);
    while (begin > 0 && longer[begin - 1] == longer[begin - 1 + moved]) --begin;
  }
  Replace(same, oldEnd, inserted, Hue::Unknown);
  if (begin < same) ForgetHues(begin, same);
}

void ColouredText::ForgetHues() {
  ForgetHues(0, text_.size());
}

void ColouredText::ForgetHues(std::size_t begin, std::size_t end) {
  std::fill(hues_.begin() + static_cast<std::ptrdiff_t>(begin),
            hues_.begin() + static_cast<std::ptrdiff_t>(end), Hue::Unknown);
  for (std::size_t line = LineAt(begin); line <= LineAt(end); ++line) MarkUnfinished(line);
}

std::size_t ColouredText::LineAt(std::size_t place) const {
  const auto behind = std::upper_bound(lines_.begin(), lines_.end(), place,
                                       [](std::size_t p, const Line& line) { return p < line.start; });
  return static_cast<std::size_t>(behind - lines_.begin()) - 1;
}

std::size_t ColouredText::NextUnfinished(std::size_t line) const {
  if (finished()) return lines_.size();
  while (line < lines_.size() && lines_[line].finished) ++line;
  return std::min(line, lines_.size());
}

std::vector<HueRun> ColouredText::Finish(std::size_t first, std::size_t end) {
  std::vector<HueRun> runs;
  for (std::size_t line = first; line < std::min(end, lines_.size()); ++line) {
    if (!lines_[line].finished) FinishLine(line, runs);
  }
  for (const HueRun& run : runs) {
    std::fill(hues_.begin() + static_cast<std::ptrdiff_t>(run.begin),
              hues_.begin() + static_cast<std::ptrdiff_t>(run.end), run.hue);
  }
  return runs;
}

std::size_t ColouredText::LineEnd(std::size_t line) const {
  return line + 1 < lines_.size() ? lines_[line + 1].start - 1 : text_.size();
}

std::string_view ColouredText::LineText(std::size_t line) const {
  return std::string_view(text_).substr(LineStart(line), LineEnd(line) - LineStart(line));
}

void ColouredText::MarkUnfinished(std::size_t line) {
  if (lines_[line].finished) ++unfinished_;
  lines_[line].finished = false;
}

std::size_t ColouredText::Retell(std::size_t line, std::size_t firstUntouched) {
  MarkUnfinished(line);
  for (; line + 1 < lines_.size(); ++line) {
    const LineState told = StateAfterLine(LineText(line), lines_[line].before);
    if (line + 1 >= firstUntouched && lines_[line + 1].before == told) break;
    lines_[line + 1].before = told;
    MarkUnfinished(line + 1);
  }
  return line + 1;
}

void ColouredText::FinishLine(std::size_t line, std::vector<HueRun>& runs) {
  lines_[line].finished = true;
  --unfinished_;
  const std::size_t start = LineStart(line);
  const std::string_view text = LineText(line);
  std::vector<Hue> wanted(text.size(), Hue::Fore);
  if (colouring_ && text.size() <= kLongestLine) {
    for (const VbToken& token : TokensOfLine(text, lines_[line].before).tokens) {
      std::fill(wanted.begin() + static_cast<std::ptrdiff_t>(token.begin),
                wanted.begin() + static_cast<std::ptrdiff_t>(token.end), HueOf(token.kind));
    }
  }
  // A run reaches on over blanks and over what has its colour already, as long as no other colour lies
  // between.
  bool open = !runs.empty() && std::all_of(text_.begin() + static_cast<std::ptrdiff_t>(runs.back().end),
                                           text_.begin() + static_cast<std::ptrdiff_t>(start), IsBlank);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsBlank(text[i])) continue;
    open = open && runs.back().hue == wanted[i];
    if (hues_[start + i] == wanted[i]) continue;
    if (!open) runs.push_back({start + i, start + i + 1, wanted[i]});
    runs.back().end = start + i + 1;
    open = true;
  }
}

}  // namespace snip
