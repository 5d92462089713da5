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
    Rename,      ///< The snippet at `row` to `text`; its other fields stay, as for an attachment.
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

/// Applies `change` to `snippets`; returns the change that undoes it.
ListChange MakeChange(std::vector<Snippet>& snippets, ListChange change);

/// The changes that can be undone and those that can be redone.
class ListUndo {
 public:
  static constexpr std::size_t kMostSteps = 100;
  /// How many of them may hold a whole library.
  static constexpr std::size_t kMostLibraries = 4;

  void Clear();
  /// Records a new change, which `inverse` undoes; nothing can be redone then.
  void Made(ListChange inverse);

  /// Takes out the next change to apply; the caller applies it and gives its inverse to `Undone` or `Redone`.
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
