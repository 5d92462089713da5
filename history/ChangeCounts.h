#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "library/Library.h"

namespace snip {

/// How many snippets a save added, removed and changed.
struct ChangeCounts {
  std::size_t added = 0;
  std::size_t removed = 0;
  std::size_t changed = 0;
};

ChangeCounts CountChanges(std::span<const Snippet> older, std::span<const Snippet> newer);

/// "+3 -1 ~2", leaving out zeros; "=" if all are 0.
std::string TextOf(const ChangeCounts& counts);

}  // namespace snip
