#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "find/Finder.h"
#include "ui/find/FindTarget.h"

namespace snip {

/// Goes from what was found to the next, in the window that the palette belongs to: through the places in the
/// code that is shown, and from there to the next snippet.
class FoundWalk {
 public:
  /// Both must outlive this.
  FoundWalk(WalkTarget& target, Finder& finder) : target_(target), finder_(finder) {}

  /// Begins at a snippet among all that is found now.
  void BeginAt(const Found& found);
  /// Stays in the code that is shown.
  void BeginInCode() { inCode_ = true; }
  /// Something else is looked for: the walk begins at the first of it, unless the user goes to another one.
  void Forget();

  /// The snippet that the walk is at; only after `BeginAt`.
  const FindDestination& current() const { return hits_[hit_]; }
  /// Shows that snippet and selects its first place.
  Went Go() { return GoTo(hit_, true); }

  /// Goes to the next place or snippet, if there is one: the walk is at a snippet that is missing, and stays
  /// where it was if the window does. Nothing if nothing has been looked for yet.
  std::optional<Went> GoOn(bool forward);

 private:
  Went GoTo(std::size_t hit, bool forward);
  bool SelectPlace(bool forward, bool fromStart);

  WalkTarget& target_;
  Finder& finder_;
  bool inCode_ = false;
  std::vector<FindDestination> hits_;  ///< What was found when the user went to one of them.
  std::size_t hit_ = 0;
};

}  // namespace snip
