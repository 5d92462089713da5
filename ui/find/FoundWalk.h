#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "find/Finder.h"
#include "ui/find/FindTarget.h"

namespace snip {

/// Moves from one match to the next in the main window: through the places in the shown code, then on to the
/// next snippet.
class FoundWalk {
 public:
  /// Both must outlive this.
  FoundWalk(WalkTarget& target, Finder& finder) : target_(target), finder_(finder) {}

  /// Begins at a snippet of the current search result.
  void BeginAt(const Found& found);
  /// Walks only through the code that is shown.
  void BeginInCode() { inCode_ = true; }
  /// The search has changed: the walk begins at its first match, unless the user chooses another one.
  void Forget();

  /// The current snippet of the walk; call it only after `BeginAt`.
  const FindDestination& current() const { return hits_[hit_]; }
  /// Shows that snippet and selects its first place.
  Went Go() { return GoTo(hit_, true); }

  /// Goes to the next place or snippet, if there is one. The walk moves on to a snippet that turns out to be
  /// missing, but not to one that the window refuses to show. Nothing if nothing has been searched for yet.
  std::optional<Went> GoOn(bool forward);

 private:
  Went GoTo(std::size_t hit, bool forward);
  bool SelectPlace(bool forward, bool fromStart);

  WalkTarget& target_;
  Finder& finder_;
  bool inCode_ = false;
  std::vector<FindDestination> hits_;  ///< The search result when the walk began.
  std::size_t hit_ = 0;
};

}  // namespace snip
