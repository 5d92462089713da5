#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/text/CodePage.h"

namespace snip {

struct Pattern {
  std::string text;  ///< In the library's code page; one line.
  bool ignoreCase = false;
  bool wholeWord = false;
  bool regularExpression = false;
};

/// Where a pattern was found, in bytes from the beginning of the text.
struct Match {
  std::size_t at = 0;
  std::size_t length = 0;
};

/// Finds a pattern in texts of the library's code page.
class Matcher {
 public:
  /// `sample` is text like that to be searched. Throws a Failure for a regular expression that is none.
  Matcher(Pattern pattern, std::string_view sample, const CodePage& page);
  ~Matcher();
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  /// The first match that begins at `from` or behind and lies within one line.
  std::optional<Match> Find(std::string_view text, std::size_t from) const;

 private:
  struct Expression;

  void ChooseRareByte(std::string_view sample);
  bool IsMatchAt(std::string_view text, std::size_t at) const;
  std::optional<Match> FindPlain(std::string_view text, std::size_t from) const;
  std::optional<Match> FindExpression(std::string_view text, std::size_t from) const;

  Pattern pattern_;
  const CodePage& page_;
  std::size_t rareAt_ = 0;  ///< The place in the pattern of the byte that texts have least of,
  std::vector<char> rare_;  ///< and the bytes that match there.
  std::unique_ptr<Expression> expression_;
};

}  // namespace snip
