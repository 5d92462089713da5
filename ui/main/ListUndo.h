#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "library/Library.h"

namespace snip {

/// A change of the list of snippets. Rows are from 0.
struct ListChange {
  enum class Kind {
    Insert,      ///< `snippet` before the one at `row`.
    Remove,      ///< The snippet at `row`.
    Replace,     ///< The snippet at `row` by `snippet`.
    Rename,      ///< The snippet at `row` to `text`; what else it holds stays, as for an attachment.
    Attachment,  ///< `text` for the snippet at `row`.
    Move,        ///< The snippet at `row` so that it is at `to`.
    All,         ///< All snippets by `all`.
  };
  Kind kind = Kind::Insert;
  int row = 0;
  int to = 0;
  Snippet snippet{};
  std::string text{};
  std::vector<Snippet> all{};
};

/// Changes a library as told; the change that takes it back.
ListChange MakeChange(std::vector<Snippet>& snippets, ListChange change);

/// The changes that can be taken back and those that can be made again.
class ListUndo {
 public:
  static constexpr std::size_t kMostSteps = 100;
  /// Of those that hold a whole library.
  static constexpr std::size_t kMostLibraries = 4;

  void Clear();
  /// A change was made, which `inverse` takes back.
  void Made(ListChange inverse);

  /// The next change to be made in that direction; the caller makes it and hands over its inverse.
  std::optional<ListChange> NextUndo() { return Next(undo_); }
  std::optional<ListChange> NextRedo() { return Next(redo_); }
  void Undone(ListChange inverse) { Push(redo_, std::move(inverse)); }
  void Redone(ListChange inverse) { Push(undo_, std::move(inverse)); }

 private:
  using Steps = std::vector<ListChange>;

  static std::optional<ListChange> Next(Steps& steps);
  static void Push(Steps& steps, ListChange change);

  Steps undo_;
  Steps redo_;
};

}  // namespace snip
