#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "library/ByteSource.h"
#include "library/Library.h"

namespace snip {

/// The `.bns` file format: bytes in, snippets out, and back.
///
/// A file is text in the ANSI code page, one item a line, every line ended by CR LF:
///
///     BNS2.0
///     name                     \  once for
///     attachment path          |  each snippet
///     description lines        |
///     (,)                      |
///     code lines               /
///     (.)                         only when another snippet follows
///     ...
///
/// There are no escapes and no counts: a description or code line that is a marker, blanks around it aside,
/// ends its block there.

enum class BnsVersion {
  Version1,  ///< Read only: no attachments, one-line descriptions, the markers "." and "..".
  Version2,
};

/// Why bytes are no library.
enum class NotALibrary {
  NoFirstLine,       ///< There is nothing in the file.
  UnknownFirstLine,  ///< The first line names no version of the format.
  Unreadable,        ///< Reading failed before the end.
};

struct BnsContents {
  BnsVersion version = BnsVersion::Version2;
  std::vector<Snippet> snippets;  ///< At most Library::kMaxSnippets.
  std::size_t omitted = 0;        ///< How many more the file holds that a library has no room for.
};

using BnsResult = std::variant<BnsContents, NotALibrary>;

/// Reads a whole file. Blanks at the end of description and code lines are dropped, everything else is kept.
/// A file that stops short is read as far as it goes.
///
/// The first line says how lines end: CR LF, or LF alone in a file that came through another system's editor.
/// Any other CR or LF is part of its line, but for a CR at the very end, of which the LF was lost.
///
/// Never holds more of the file than a piece, aside from the snippets.
BnsResult ReadBns(ByteSource& bytes);
BnsResult ReadBns(std::string_view bytes);

/// The bytes of a version 2 file of these snippets, which have to stay as they are meanwhile. The file reads
/// back unchanged but for blanks at the end of lines, as long as no line of a text is a marker and no name or
/// attachment holds a line end.
class BnsBytes : public ByteSource {
 public:
  explicit BnsBytes(std::span<const Snippet> snippets) : snippets_(snippets) {}
  BnsBytes(const BnsBytes&) = delete;
  BnsBytes& operator=(const BnsBytes&) = delete;

  std::size_t Read(std::span<char> room) override;
  bool Failed() const override { return false; }

 private:
  bool TakeNext();

  std::span<const Snippet> snippets_;
  std::size_t step_ = 0;
  std::array<std::string_view, 12> parts_;  ///< Of one snippet: items, each with its line end behind it.
  std::span<std::string_view> ahead_;       ///< Those of the parts that have not been read to their end.
};

/// The same bytes as a whole.
std::string WriteBns(std::span<const Snippet> snippets);

/// Whether a file of these snippets reads back as them, blanks at the end of lines aside. Texts of a version
/// 1 file may hold lines that are markers only in version 2.
bool ReadsBackWhole(std::span<const Snippet> snippets);

/// Whether a snippet's name would be read as the end of the list, so that it and all snippets behind it were
/// lost.
bool EndsSnippetList(std::string_view name);

/// The bytes of a newly created library: one default snippet.
std::string NewLibraryBns();

}  // namespace snip
