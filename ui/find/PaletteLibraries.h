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

  /// Takes the open library as it is now. The others stay as they were read before, until `Read`.
  void Refresh(const std::optional<FindTarget::Open>& open, const std::vector<NamedLibrary>& others);
  /// Reads which of the others have changed. `arrived` is called in the reading thread whenever there is
  /// something to take.
  void Read(std::function<void()> arrived);
  /// Takes what has been read since the last call; false if nothing has changed.
  bool TakeResults();
  /// Stops reading and frees all libraries.
  void Forget();

  /// The libraries read so far, the open one first, then in the order of the chooser.
  std::vector<SearchedLibraryPtr> Searchable() const;
  std::size_t unread() const { return unread_; }
  /// The names of libraries that cannot be read, separated by commas.
  std::string Unreadable() const;

 private:
  struct Entry {
    LibraryAsRead read;
    bool unreadable = false;
    bool open = false;  ///< The library open in the window, whose snippets may change.

    const std::string& path() const { return read.file.path; }
  };

  const LibraryStore& store_;
  const Folding& folding_;
  std::vector<Entry> entries_;
  std::optional<LibraryReading> reading_;
  std::size_t unread_ = 0;
};

}  // namespace snip
