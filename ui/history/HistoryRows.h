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

// The rows of the history window. A version is compared with the library as it is now: restoring it would add
// a snippet marked "+", remove one marked "-", and change one marked "~".

struct SnippetRow {
  char mark = '~';
  std::string text{};                 ///< "~ Left: code, description".
  std::optional<std::size_t> now{};   ///< The snippet's place in the library as it is now, from 0.
  std::optional<std::size_t> then{};  ///< Its place in the version.
};

/// The snippets that differ, in the version's order.
std::vector<SnippetRow> DifferingSnippets(std::span<const Snippet> now, std::span<const Snippet> then);

struct DifferenceLine {
  char mark = ' ';  ///< '+' or '-'; ' ' for a line that both have, '=' for a heading.
  std::string text;
  bool code = false;
  LineState before = LineState::Fresh;  ///< The state of VB tokens at the line's start, for colouring.
};

/// The texts in which two states of a snippet differ, line by line. One of the two may be null.
std::vector<DifferenceLine> DifferingLines(const Snippet* now, const Snippet* then);

/// Collects the snippets that a version has but the library no longer has. Add the versions from the newest
/// to the oldest.
class DeletedSnippets {
 public:
  struct Row {
    Snippet snippet;
    std::size_t version = 0;  ///< The newest version that has it.
  };

  /// The snippets that no version added before had.
  std::vector<Row> Add(std::size_t version, std::span<const Snippet> snippets, std::span<const Snippet> now);

 private:
  std::set<std::string> names_;
};

}  // namespace snip
