#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/Session.h"
#include "library/BnsFormat.h"

namespace snip {

/// Throws a Failure if a library cannot hold so many snippets.
void RequireRoom(const std::string& path, std::size_t count);

/// The contents of a library's bytes; throws a Failure if they are not a library.
BnsContents ReadContents(Session& session, const std::string& path, std::string_view bytes);

/// Throws a Failure if writing the library would lose data in its bytes; reports that if the session is
/// lossy.
void CheckNothingIsLost(Session& session, const std::string& path, std::string_view bytes);

/// Reads a library that is to be changed: like ReadContents, but refuses version 1 and what
/// CheckNothingIsLost refuses.
BnsContents ReadForChange(Session& session, const std::string& path, std::string_view bytes);

/// Writes a library; throws a Failure if it would not read back as these snippets, or if there are too many.
/// The path "-" is the standard output.
void WriteLibrary(Session& session, const std::string& path, const std::vector<Snippet>& snippets,
                  bool isNew = false);

/// Drops trailing spaces of the snippet's lines; throws a Failure if a library file cannot hold it.
void RequireHeld(Session& session, Snippet& snippet);

/// A library that a command reads and may change. The path "-" is the standard input, and the standard output
/// when the library is saved.
class LibraryFile {
 public:
  /// Reads a library; throws a Failure if the file is not one.
  LibraryFile(Session& session, const std::string& path);
  /// Reads a library to be changed. Refuses one if saving would lose data, unless the session is lossy. With
  /// `create`, returns an empty library if there is no file.
  static LibraryFile ForChange(Session& session, const std::string& path, bool create = false);

  std::vector<Snippet> snippets;

  BnsVersion version() const { return version_; }
  bool isNew() const { return isNew_; }

  /// The position of the snippet that `which` (UTF-8) names: its exact name; its name in another case; or "#"
  /// and its number from 1. Throws a Failure if there is none, or more than one.
  std::size_t Find(const std::string& which) const;

  /// Throws a Failure if there is no room for so many more snippets.
  void CheckRoom(std::size_t more) const;

  void Save() { WriteLibrary(session_, path_, snippets, isNew_); }

 private:
  LibraryFile(Session& session, const std::string& path, BnsContents&& contents);

  Session& session_;
  std::string path_;
  BnsVersion version_ = BnsVersion::Version2;
  bool isNew_ = false;
};

}  // namespace snip
