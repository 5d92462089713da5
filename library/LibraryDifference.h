#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "library/Library.h"

namespace snip {

enum class Renames { Follow, Ignore };

/// For each snippet of `older`, the position in `newer` of the snippet that it became; none if it was
/// removed. Snippets are the same if they have the same name or, if renames are followed, the same texts or
/// else at least half of their text in common. Of several with one name, those with the same texts are
/// matched first, then the others in order.
std::vector<std::optional<std::size_t>> MatchSnippets(std::span<const Snippet> older,
                                                      std::span<const Snippet> newer,
                                                      Renames renames = Renames::Follow);

/// Which of these positions are not in a longest increasing subsequence: the snippets that were moved, as few
/// as possible. An empty position is not a moved one.
std::vector<bool> FindMoved(std::span<const std::optional<std::size_t>> positions);

/// What became of one snippet.
struct SnippetChange {
  std::optional<std::size_t> oldPosition;  ///< From 0; none if the snippet was added.
  std::optional<std::size_t> newPosition;  ///< None if it was removed.
  bool renamed = false;
  bool moved = false;        ///< Within the library, not only because others were added or removed.
  bool attachment = false;   ///< Whether the attachment changed.
  bool description = false;  ///< Whether the description changed.
  bool code = false;         ///< Whether the code changed.

  friend bool operator==(const SnippetChange&, const SnippetChange&) = default;
};

/// The snippets that differ between two libraries, in the order of the newer one; a removed snippet comes
/// after the one that it followed.
std::vector<SnippetChange> CompareLibraries(std::span<const Snippet> older, std::span<const Snippet> newer);

}  // namespace snip
