#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "library/BnsScanner.h"
#include "library/ByteSource.h"
#include "library/Library.h"

namespace snip {

/// Why bytes are not a library.
enum class NotALibrary {
  NoFirstLine,       ///< The file is empty.
  UnknownFirstLine,  ///< The first line names no version of the format.
  Unreadable,        ///< Reading failed before the end.
};

struct BnsContents {
  BnsVersion version = BnsVersion::Version2;
  std::vector<Snippet> snippets;  ///< At most Library::kMaxSnippets.
  std::size_t omitted = 0;        ///< How many more snippets the file has.
};

using BnsResult = std::variant<BnsContents, NotALibrary>;

/// Reads a whole file. Spaces at the end of description and code lines are dropped, everything else is kept.
/// A truncated file is read as far as it goes. Apart from the snippets only a piece of the file is in memory
/// at a time.
BnsResult ReadBns(ByteSource& bytes);
BnsResult ReadBns(std::string_view bytes);
/// Only the snippets; none if the bytes are not a library.
std::vector<Snippet> SnippetsIn(std::string_view bytes);
/// Calls `take` with each snippet instead of putting it into the result.
BnsResult ReadBns(ByteSource& bytes, const std::function<void(const Snippet&)>& take);

/// The bytes of a version 2 file of these snippets, which must not change while it is read.
/// library/BnsRules.h says which snippets read back unchanged.
class BnsBytes : public ByteSource {
 public:
  explicit BnsBytes(std::span<const Snippet> snippets) : snippets_(snippets) {}
  BnsBytes(const BnsBytes&) = delete;
  BnsBytes& operator=(const BnsBytes&) = delete;

  std::size_t Read(std::span<char> room) override;
  bool Failed() const override { return false; }
  std::size_t Size() const override;
  std::string ReadRest() override;
  bool Rewind() override {
    step_ = 0;
    ahead_ = {};
    return true;
  }

 private:
  bool TakeNext();

  std::span<const Snippet> snippets_;
  std::size_t step_ = 0;
  std::array<std::string_view, 12> parts_;  ///< Of one snippet: items, each followed by a line ending.
  std::span<std::string_view> ahead_;       ///< The parts that have not been read completely.
};

/// The same bytes as one string.
std::string WriteBns(std::span<const Snippet> snippets);

/// The bytes of a newly created library: one default snippet.
std::string NewLibraryBns();

}  // namespace snip
