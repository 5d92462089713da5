#include "ui/editor/VbTokens.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/Text.h"
#include "ui/editor/VbKeywords.h"

namespace snip {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}
bool IsNamePart(char c) {
  return IsNameStart(c) || IsDigit(c) || c == '_';
}
char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsHexDigit(char c) {
  return IsDigit(c) || (Lower(c) >= 'a' && Lower(c) <= 'f');
}
bool IsOctalDigit(char c) {
  return c >= '0' && c <= '7';
}
bool IsTypeSuffix(char c) {
  return c != '\0' && std::string_view("$%&!#@").find(c) != std::string_view::npos;
}

bool GoesOn(std::string_view line) {
  const std::size_t last = line.find_last_not_of(" \t");
  if (last == std::string_view::npos || line[last] != '_') return false;
  return last == 0 || IsBlank(line[last - 1]);
}

/// Of the words in a date between number signs, only these occur; anything else shows that the signs are
/// those of two file numbers.
bool IsDateWord(std::string_view word) {
  constexpr std::array<std::string_view, 12> months = {"january",   "february", "march",    "april",
                                                       "may",       "june",     "july",     "august",
                                                       "september", "october",  "november", "december"};
  std::string lower(word);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  if (lower == "am" || lower == "pm") return true;
  return std::any_of(months.begin(), months.end(),
                     [&](std::string_view month) { return lower == month || lower == month.substr(0, 3); });
}

bool IsDate(std::string_view content) {
  bool digit = false;
  bool divided = false;
  for (std::size_t i = 0; i < content.size();) {
    const char c = content[i];
    if (IsNameStart(c)) {
      std::size_t end = i;
      while (end < content.size() && IsNameStart(content[end])) ++end;
      if (!IsDateWord(content.substr(i, end - i))) return false;
      divided = true;
      i = end;
      continue;
    }
    digit = digit || IsDigit(c);
    divided = divided || c == '/' || c == '-' || c == ':';
    if (!IsDigit(c) && std::string_view(" /-:,.").find(c) == std::string_view::npos) return false;
    ++i;
  }
  return digit && divided;
}

/// Statements in which words are keywords that elsewhere are names.
constexpr std::array<std::pair<std::string_view, LineState>, 3> kGoingOn = {
    {{"Open", LineState::InOpen}, {"Option", LineState::InOption}, {"Name", LineState::InName}}};

/// Reads one line from its begin to its end.
class LineScanner {
 public:
  LineScanner(std::string_view line, LineState before)
      : line_(line), inDirective_(before == LineState::InDirective), before_(before) {
    for (const auto& [word, state] : kGoingOn) {
      if (state == before) statement_ = word;
    }
  }

  LineTokens Scan() {
    if (before_ == LineState::InComment) {
      TakeComment(0);
    } else {
      SkipBlanks();
      if (before_ == LineState::Fresh) TakeLineStart();
      while (place_ < line_.size()) TakeNext();
    }
    if (GoesOn(line_)) result_.after = Continuation();
    return std::move(result_);
  }

 private:
  /// '\0' behind the line's end.
  char At(std::size_t place) const { return place < line_.size() ? line_[place] : '\0'; }
  void Take(std::size_t end, TokenKind kind) {
    result_.tokens.push_back({place_, end, kind});
    place_ = end;
  }
  void SkipBlanks() {
    while (IsBlank(At(place_))) ++place_;
  }
  std::size_t EndOfName(std::size_t begin) const {
    while (begin < line_.size() && IsNamePart(line_[begin])) ++begin;
    return begin;
  }
  std::string_view Part(std::size_t begin, std::size_t end) const { return line_.substr(begin, end - begin); }

  void TakeComment(std::size_t begin) {
    place_ = begin;
    inComment_ = true;
    if (begin < line_.size()) Take(line_.size(), TokenKind::Comment);
  }

  LineState Continuation() const {
    if (inComment_) return LineState::InComment;
    if (inString_) return LineState::Fresh;
    if (inDirective_) return LineState::InDirective;
    for (const auto& [word, state] : kGoingOn) {
      if (EqualsIgnoringAsciiCase(statement_, word)) return state;
    }
    return LineState::InStatement;
  }

  void TakeLineStart() {
    if (At(place_) == '#') {
      std::size_t word = place_ + 1;
      while (IsBlank(At(word))) ++word;
      const std::size_t end = EndOfName(word);
      if (!IsDirective(Part(word, end))) return;
      inDirective_ = true;
      Take(end, TokenKind::Directive);
      return;
    }
    if (IsDigit(At(place_))) {
      std::size_t end = place_;
      while (IsDigit(At(end))) ++end;
      if (At(end) == ':') ++end;
      if (!IsNamePart(At(end)) && At(end) != '.') Take(end, TokenKind::Label);
      return;
    }
    if (!IsNameStart(At(place_))) return;
    const std::size_t end = EndOfName(place_);
    const bool label = At(end) == ':' && At(end + 1) != '=' && !IsAlwaysKeyword(Part(place_, end));
    if (label && !IsRem(Part(place_, end))) Take(end + 1, TokenKind::Label);
  }

  void TakeNext() {
    const char c = line_[place_];
    const char next = At(place_ + 1);
    if (c == '\'') {
      TakeComment(place_);
    } else if (c == '"') {
      TakeString();
    } else if (c == '#') {
      TakeNumberSign();
    } else if (c == '[') {
      TakeBracketed();
    } else if (IsDigit(c) || (c == '.' && IsDigit(next) && !BehindOperand())) {
      Take(EndOfNumber(), TokenKind::Number);
    } else if (c == '&' && TakeBasedNumber()) {
      // taken
    } else if (IsNameStart(c)) {
      TakeWord();
    } else {
      if (c == ':') statement_ = {};
      ++place_;
    }
  }

  void TakeString() {
    std::size_t end = place_ + 1;
    for (;;) {
      end = line_.find('"', end);
      if (end == std::string_view::npos) {
        inString_ = true;
        Take(line_.size(), TokenKind::String);
        return;
      }
      ++end;
      if (At(end) != '"') break;
      ++end;  // a doubled quote is one
    }
    Take(end, TokenKind::String);
  }

  void TakeNumberSign() {
    const std::size_t close = line_.find('#', place_ + 1);
    if (close != std::string_view::npos && IsDate(Part(place_ + 1, close))) {
      Take(close + 1, TokenKind::Date);
    } else {
      ++place_;
    }
  }

  void TakeBracketed() {
    const std::size_t close = line_.find(']', place_);
    place_ = close == std::string_view::npos ? place_ + 1 : close + 1;
  }

  bool BehindOperand() const {
    if (place_ == 0) return false;
    const char before = line_[place_ - 1];
    return IsNamePart(before) || before == ')' || before == ']';
  }

  std::size_t EndOfNumber() const {
    std::size_t end = place_;
    while (IsDigit(At(end))) ++end;
    if (At(end) == '.') ++end;
    while (IsDigit(At(end))) ++end;
    if (Lower(At(end)) == 'e' || Lower(At(end)) == 'd') {
      const bool sign = At(end + 1) == '+' || At(end + 1) == '-';
      std::size_t exponent = end + (sign ? 2 : 1);
      if (IsDigit(At(exponent))) {
        while (IsDigit(At(exponent))) ++exponent;
        end = exponent;
      }
    }
    return IsTypeSuffix(At(end)) && At(end) != '$' ? end + 1 : end;
  }

  bool TakeBasedNumber() {
    const char base = Lower(At(place_ + 1));
    if (base != 'h' && base != 'o') return false;
    const auto isDigit = base == 'h' ? &IsHexDigit : &IsOctalDigit;
    std::size_t end = place_ + 2;
    if (!isDigit(At(end))) return false;
    while (isDigit(At(end))) ++end;
    if (IsNamePart(At(end))) return false;  // a name behind the operator: "a &has"
    if (At(end) == '&' || At(end) == '%') ++end;
    Take(end, TokenKind::Number);
    return true;
  }

  void TakeWord() {
    const std::size_t end = EndOfName(place_);
    const std::string_view word = Part(place_, end);
    const bool member = place_ > 0 && (line_[place_ - 1] == '.' || line_[place_ - 1] == '!');
    if (!member && IsRem(word)) {
      TakeComment(place_);
      return;
    }
    if (statement_.empty()) statement_ = word;
    if (member) {
      place_ = EndOfSuffixed(end);
      return;
    }
    std::size_t behind = end;
    while (IsBlank(At(behind))) ++behind;
    const KeywordPlace where{
        .statement = statement_, .beginsStatement = statement_.data() == word.data(), .next = At(behind)};
    if (IsKeyword(word, where)) {
      const bool textFunction = At(end) == '$';
      Take(textFunction ? end + 1 : end, inDirective_ ? TokenKind::Directive : TokenKind::Keyword);
      if (IsClause(word)) statement_ = {};
    } else {
      place_ = EndOfSuffixed(end);
    }
  }

  /// Behind a name and its type suffix. A "!" in front of a name is no suffix: it asks a collection.
  std::size_t EndOfSuffixed(std::size_t end) const {
    if (!IsTypeSuffix(At(end))) return end;
    const bool bang = At(end) == '!' && (IsNameStart(At(end + 1)) || At(end + 1) == '[');
    return bang ? end : end + 1;
  }

  std::string_view line_;
  std::size_t place_ = 0;
  std::string_view statement_;  ///< First word of the present statement.
  bool inDirective_;
  bool inComment_ = false;
  bool inString_ = false;
  LineState before_;
  LineTokens result_;
};

}  // namespace

LineTokens TokensOfLine(std::string_view line, LineState before) {
  return LineScanner(line, before).Scan();
}

LineState StateAfterLine(std::string_view line, LineState before) {
  return GoesOn(line) ? TokensOfLine(line, before).after : LineState::Fresh;
}

}  // namespace snip
