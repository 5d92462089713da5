#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/ByteSource.h"
#include "platform/FileStamp.h"

namespace snip {

/// Where libraries are kept, as the logic sees it. Implemented by `LibraryFolder`.
class LibraryStore {
 public:
  virtual ~LibraryStore() = default;

  /// The names, without extension, of the libraries in the folder, in the order of its listing.
  virtual std::vector<std::string> Names() const = 0;
  /// The full path of the library of that name in the folder, whether or not it exists.
  virtual std::string PathOf(const std::string& name) const = 0;
  virtual bool Exists(const std::string& path) const = 0;
  /// Nothing when it cannot be told whether there is such a file.
  virtual std::optional<FileStamp> Stamp(const std::string& path) const = 0;
  /// A file's bytes, or null when it cannot be read.
  virtual std::unique_ptr<ByteSource> Open(const std::string& path) const = 0;
  /// The same for one that is only looked through, perhaps not to its end.
  virtual std::unique_ptr<ByteSource> OpenToSearch(const std::string& path) const { return Open(path); }
  /// Deletes what is at `path` and writes the bytes there; tells whether all of them are there.
  virtual bool Replace(const std::string& path, ByteSource&& bytes) = 0;
  /// The same for a new library, of which nothing is wanted when it cannot be written.
  virtual bool Create(const std::string& path, ByteSource&& bytes) { return Replace(path, std::move(bytes)); }
  /// False, and nothing is changed, when there is a file of the new name already or the system refuses.
  virtual bool Rename(const std::string& path, const std::string& newPath) = 0;

  /// From now on the library in memory is that file's: it has been read from there, or saved there.
  virtual void OpenedOrSaved(const std::string& /*path*/) {}
  /// The open library is left, and its changes, which these bytes hold, are in no file. Tells whether they
  /// are kept somewhere else.
  virtual bool ThrownAway(ByteSource&& /*bytes*/) { return false; }
};

}  // namespace snip
