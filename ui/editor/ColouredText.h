#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ui/editor/VbTokens.h"

namespace snip {

/// What colour a character has. `Unknown` is that of characters that came in by other ways than ours.
enum class Hue : unsigned char { Fore, Keyword, Comment, String, Unknown };

/// Characters to be given a colour: 0-based places in the text, the end excluded.
struct HueRun {
  std::size_t begin = 0;
  std::size_t end = 0;
  Hue hue = Hue::Fore;
  friend bool operator==(const HueRun&, const HueRun&) = default;
};

/// Knows which characters a code field shows, in which colour each of them is and which it ought to have, so
/// that after a change only those are coloured that have to be. Lines end in one CR; every character of the
/// field is one char here, those from 0x80 on whatever letter they are.
class ColouredText {
 public:
  /// Starts over with a text that is all in the fore colour.
  void Load(std::string text);

  const std::string& text() const { return text_; }

  /// Without colouring all the text ought to be in the fore colour.
  bool colouring() const { return colouring_; }
  void SetColouring(bool colouring);

  /// Follows a change of the field: `inserted`, shown in `hue`, replaces [begin, end). Gives the
  /// end of the lines, the first being that of `begin`, which may lack their colours by this.
  std::size_t Replace(std::size_t begin, std::size_t end, std::string_view inserted, Hue hue);
  /// Follows a change of which nothing is known, by comparing the whole text with what it was.
  void ReplaceAll(std::string_view text);

  /// Which colour the characters have is known no more.
  void ForgetHues();
  void ForgetHues(std::size_t begin, std::size_t end);

  std::size_t lineCount() const { return lines_.size(); }
  /// The line of a place, from 0.
  std::size_t LineAt(std::size_t place) const;
  std::size_t LineStart(std::size_t line) const { return lines_[line].start; }

  /// Whether every line has its colours.
  bool finished() const { return unfinished_ == 0; }
  /// The first line at or behind `line` that lacks its colours; the line count when there is none.
  std::size_t NextUnfinished(std::size_t line) const;

  /// What to colour in the lines [first, end) to finish them, in the text's order; takes it for done. Blanks
  /// may get any colour, for few long runs are quicker than many short ones.
  std::vector<HueRun> Finish(std::size_t first, std::size_t end);

 private:
  struct Line {
    std::size_t start = 0;
    LineState before = LineState::Fresh;
    bool finished = false;
  };

  std::size_t LineEnd(std::size_t line) const;  ///< In front of the CR.
  std::string_view LineText(std::size_t line) const;
  void MarkUnfinished(std::size_t line);
  /// Marks a line and those behind it that it tells something new; gives their end.
  std::size_t Retell(std::size_t line, std::size_t firstUntouched);
  void FinishLine(std::size_t line, std::vector<HueRun>& runs);

  std::string text_;
  std::vector<Hue> hues_;  ///< Of each character, as the field has it.
  std::vector<Line> lines_{Line{.start = 0, .before = LineState::Fresh, .finished = true}};
  std::size_t unfinished_ = 0;
  bool colouring_ = true;
};

}  // namespace snip
