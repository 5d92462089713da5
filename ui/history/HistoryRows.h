#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "library/Library.h"
#include "ui/editor/VbTokens.h"

namespace snip {

// What the history window lists. A version is compared with the library as it is now: "+" is what putting it
// back would bring, "-" what it would take away, "~" what it would change.

struct SnippetRow {
  char mark = '~';
  std::string text{};                 ///< "~ Left: code, description".
  std::optional<std::size_t> now{};   ///< The snippet's place in the library as it is now, from 0.
  std::optional<std::size_t> then{};  ///< Its place in the version.
};

/// The snippets that differ, in the version's order.
std::vector<SnippetRow> DifferingSnippets(std::span<const Snippet> now, std::span<const Snippet> then);

struct DifferenceLine {
  char mark = ' ';  ///< '+', '-', ' ' for a line that both have, '=' for the heading of a text.
  std::string text;
  bool code = false;
  LineState before = LineState::Fresh;  ///< What the line before leaves for the colours of code.
};

/// The texts in which two states of a snippet differ, line by line; either may be missing, not both.
std::vector<DifferenceLine> DifferingLines(const Snippet* now, const Snippet* then);

/// Collects the snippets that versions have and the library has no more; versions are added from the newest
/// on.
class DeletedSnippets {
 public:
  struct Row {
    Snippet snippet;
    std::size_t version = 0;  ///< The newest that has it.
  };

  /// Those that no version before had.
  std::vector<Row> Add(std::size_t version, std::span<const Snippet> snippets, std::span<const Snippet> now);

 private:
  std::set<std::string> names_;
};

}  // namespace snip
