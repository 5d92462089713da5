#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/ByteSource.h"
#include "platform/FileStamp.h"

namespace snip {

/// Where libraries are kept, as the logic sees it. Implemented by `LibraryFolder` and by `LibraryKeeper`,
/// which adds a history.
class LibraryStore {
 public:
  virtual ~LibraryStore() = default;

  /// The names, without extension, of the libraries in the folder, in the order of its listing.
  virtual std::vector<std::string> Names() const = 0;
  /// The full path of the library of that name in the folder, whether or not it exists.
  virtual std::string PathOf(const std::string& name) const = 0;
  virtual bool Exists(const std::string& path) const = 0;
  /// Nothing if it cannot be determined whether there is such a file.
  virtual std::optional<FileStamp> Stamp(const std::string& path) const = 0;
  /// A file's bytes, or null when it cannot be read.
  virtual std::unique_ptr<ByteSource> Open(const std::string& path) const = 0;
  /// The same for a file that is only searched, perhaps not to its end.
  virtual std::unique_ptr<ByteSource> OpenToSearch(const std::string& path) const { return Open(path); }
  /// Replaces what is at `path` by the bytes; true if all of them were written.
  virtual bool Replace(const std::string& path, ByteSource&& bytes) = 0;
  /// The same for a new library; if it cannot be written, no part of it is needed.
  virtual bool Create(const std::string& path, ByteSource&& bytes) { return Replace(path, std::move(bytes)); }
  /// False, and nothing is changed, when there is a file of the new name already or the system refuses.
  virtual bool Rename(const std::string& path, const std::string& newPath) = 0;

  /// Tells the store that the library in memory has been read from that file, or saved to it.
  virtual void OpenedOrSaved(const std::string& /*path*/) {}
  /// Tells the store that the open library is discarded while its changes, which are in these bytes, are in
  /// no file. True if the store keeps them elsewhere.
  virtual bool ThrownAway(ByteSource&& /*bytes*/) { return false; }
};

}  // namespace snip
