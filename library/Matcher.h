#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "library/LetterTable.h"

namespace snip {

struct Pattern {
  std::string text;  ///< In the library's code page; one line.
  bool ignoreCase = false;
  bool wholeWord = false;
  bool regularExpression = false;
};

/// Where a pattern matches, in bytes from the beginning of the text.
struct Match {
  std::size_t at = 0;
  std::size_t length = 0;
};

/// A regular expression takes too long on a text.
class ExpressionTooSlow : public std::runtime_error {
 public:
  ExpressionTooSlow() : std::runtime_error("the regular expression takes too long on this text") {}
};

/// Finds a pattern in texts of the library's code page.
class Matcher {
 public:
  /// Throws std::invalid_argument for a malformed regular expression. `letters` must outlive this.
  Matcher(Pattern pattern, const LetterTable& letters);
  ~Matcher();
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  /// The text as Find searches it: in small letters, made in `room`, if the pattern ignores case;
  /// empty if it cannot have a match.
  std::string_view Fold(std::string_view text, std::string& room) const;
  /// The first match that begins at or after `from` and is within one line. `text` comes
  /// from Fold. Throws ExpressionTooSlow.
  std::optional<Match> Find(std::string_view text, std::size_t from) const;

 private:
  struct Expression;

  bool IsWholeWord(std::string_view text, const Match& match) const;
  std::optional<Match> FindPlain(std::string_view text, std::size_t from) const;
  std::optional<Match> FindExpression(std::string_view text, std::size_t from) const;

  Pattern pattern_;
  std::size_t rareAt_ = 0;    ///< The place in a plain pattern that the search begins with.
  std::string rareVariants_;  ///< The characters that match there if case is ignored.
  const LetterTable& letters_;
  std::unique_ptr<Expression> expression_;
};

}  // namespace snip
