#pragma once

#include <string_view>

namespace snip {

/// What decides whether a word that may also be a name is a keyword.
struct KeywordPlace {
  std::string_view statement;  ///< First word of the statement.
  bool beginsStatement = false;
  char next = '\0';  ///< The first character behind the word that is no blank.
};

/// Whether a word, in any letter case, is a keyword of Visual Basic 5 at its place.
bool IsKeyword(std::string_view word, const KeywordPlace& place);

/// Whether a word is a keyword in any place.
bool IsAlwaysKeyword(std::string_view word);

/// Whether a word begins a line for the preprocessor behind a number sign.
bool IsDirective(std::string_view word);

bool IsRem(std::string_view word);

/// Whether another statement may follow the word in the same line.
bool IsClause(std::string_view word);

}  // namespace snip
