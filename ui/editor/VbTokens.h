#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace snip {

/// What a part of a line of Visual Basic is. What is in no token - names, operators, blanks - is plain
/// text.
enum class TokenKind : unsigned char {
  Keyword,
  String,     ///< With its quotes; up to the line's end when the closing one is missing.
  Comment,    ///< From the apostrophe or `Rem` to the line's end.
  Number,     ///< With its type suffix; &H and &O as well.
  Date,       ///< With its number signs.
  Directive,  ///< A keyword of a line for the preprocessor; the number sign belongs to the first of them.
  Label,      ///< A line's number, or its name with the colon.
};

/// A token's 0-based columns, the end excluded.
struct VbToken {
  std::size_t begin = 0;
  std::size_t end = 0;
  TokenKind kind = TokenKind::Keyword;
  friend bool operator==(const VbToken&, const VbToken&) = default;
};

/// What a line is told by the line before, which may end in a blank and "_" to go on in it; of statements
/// that have keywords of their own, which one it is.
enum class LineState : unsigned char { Fresh, InStatement, InOpen, InOption, InName, InComment, InDirective };

struct LineTokens {
  std::vector<VbToken> tokens;  ///< In the line's order, without overlap.
  LineState after = LineState::Fresh;
};

/// Splits one line, without its line end, that follows lines which left `before`. Characters from 0x80 on are
/// letters of names.
LineTokens TokensOfLine(std::string_view line, LineState before);

/// What the line leaves for the next one; quicker than asking for its tokens as well.
LineState StateAfterLine(std::string_view line, LineState before);

}  // namespace snip
