#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/Session.h"
#include "library/BnsFormat.h"

namespace snip {

/// The contents of a library's bytes; throws a Failure if they are not a library.
BnsContents ReadContents(Session& session, const std::string& path, std::string_view bytes);

/// Drops the spaces at the snippet's line ends; throws a Failure if a library file cannot hold it.
void RequireHeld(Session& session, Snippet& snippet);

/// A library that a command reads and perhaps changes. The path "-" stands for the standard input, and for
/// the standard output when the library is saved.
class LibraryFile {
 public:
  /// Reads a library; throws a Failure where there is none.
  LibraryFile(Session& session, const std::string& path);
  /// A library to be changed. Refuses those of which saving would lose something, unless the session may.
  static LibraryFile ForChange(Session& session, const std::string& path);
  /// The same, but one without snippets where there is no file.
  static LibraryFile ForChangeOrNew(Session& session, const std::string& path);

  std::vector<Snippet> snippets;

  BnsVersion version() const { return version_; }
  bool isNew() const { return isNew_; }
  const std::string& path() const { return path_; }

  /// The position of the snippet that `which` (UTF-8) names: a name, exactly; a name in another case; or "#"
  /// and a number from 1. Throws a Failure for none and for several.
  std::size_t Find(const std::string& which) const;

  /// Whether there is room for so many more; throws a Failure when not.
  void CheckRoom(std::size_t more) const;

  void Save();

 private:
  struct Empty {};
  LibraryFile(Session& session, std::string path, Empty);
  LibraryFile(Session& session, std::string path, const FileBytes& file);
  void CheckNothingIsLost(std::string_view bytes) const;

  Session& session_;
  std::string path_;
  BnsVersion version_ = BnsVersion::Version2;
  bool isNew_ = false;
};

}  // namespace snip
