#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

/// One named piece of source code. Lines of `Code` and `Description` are separated by CR LF; all texts are in
/// the system's ANSI code page.
struct Snippet {
  std::string Name;
  std::string Attachment;  ///< Full path of the attached file, or empty.
  std::string Code;
  std::string Description;

  friend bool operator==(const Snippet&, const Snippet&) = default;
};

/// What the names of library files end with, in any letter case.
inline constexpr std::string_view kLibraryExtension = ".bns";
bool HasLibraryExtension(std::string_view file);

/// A new snippet, which the user has not edited yet.
Snippet DefaultSnippet();

/// The one library that the main window works on. Row i of the snippet list shows `Snippets[i]`.
struct Library {
  /// Earlier versions of the program use 16-bit indexes, which limits the size of a library.
  static constexpr std::size_t kMaxSnippets = 32767;

  std::vector<Snippet> Snippets;
  std::string
      LibraryName;       ///< File name without directory and extension; decides where the library is saved.
  bool Saved = true;     ///< Whether the file holds what is in memory.
  unsigned Changes = 0;  ///< Counts its changes.

  void Change() {
    Saved = false;
    ++Changes;
  }

  /// Index of the last snippet, -1 when there is none.
  int LastIndex() const { return static_cast<int>(Snippets.size()) - 1; }
  bool IsFull() const { return Snippets.size() >= kMaxSnippets; }
  bool HasIndex(int index) const { return index >= 0 && index <= LastIndex(); }
};

}  // namespace snip
