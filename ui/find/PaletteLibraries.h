#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "find/LibraryReading.h"
#include "ui/find/FindTarget.h"

namespace snip {

/// The libraries that the palette searches: the open one as it is in memory, and the others, which are read
/// in the background.
class PaletteLibraries {
 public:
  /// `store` and `folding` must outlive this.
  PaletteLibraries(const LibraryStore& store, const Folding& folding) : store_(store), folding_(folding) {}

  /// Takes the open library as it is now; what was read of the others before stays until `Read`.
  void Refresh(const std::optional<FindTarget::Open>& open, const std::vector<NamedLibrary>& others);
  /// Reads which of the others have changed. `arrived` is called in the reading thread whenever there is
  /// something to take.
  void Read(std::function<void()> arrived);
  /// Takes what has been read since; false if all of it is as it was.
  bool TakeResults();
  /// Ends the reading, and lets all libraries go.
  void Forget();

  /// Those that can be searched already, in the order of the chooser, the open one first.
  std::vector<SearchedLibraryPtr> Searchable() const;
  std::size_t unread() const { return unread_; }
  /// The names of those that cannot be read, separated by commas.
  std::string Unreadable() const;

 private:
  struct Entry {
    LibraryAsRead read;
    bool unreadable = false;
    bool open = false;  ///< The window's own, of which the snippets may change.

    const std::string& path() const { return read.file.path; }
  };

  const LibraryStore& store_;
  const Folding& folding_;
  std::vector<Entry> entries_;
  std::optional<LibraryReading> reading_;
  std::size_t unread_ = 0;
};

}  // namespace snip
