#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "find/Folding.h"
#include "library/Library.h"

namespace snip {

/// The texts of a snippet. They belong to the library.
struct SearchedSnippet {
  std::string_view Name, Attachment, Code, Description;
};

/// A library as a search sees it.
class SearchedLibrary {
 public:
  /// An empty library with memory for about that many bytes of text.
  SearchedLibrary(std::string name, std::string path, std::size_t bytes = 0);
  /// A view of an owner's snippets, which the owner may change. It never sees more snippets than there were.
  SearchedLibrary(std::string name, std::string path, const std::vector<Snippet>* shared,
                  const Folding& folding);
  SearchedLibrary(const SearchedLibrary&) = delete;
  SearchedLibrary& operator=(const SearchedLibrary&) = delete;

  /// Appends a copy of a snippet; not for a view.
  void Add(const Snippet& snippet, const Folding& folding);

  const std::string& name() const { return name_; }
  const std::string& path() const { return path_; }
  std::size_t size() const;
  SearchedSnippet operator[](std::size_t snippet) const;
  std::vector<Snippet> Snippets() const;
  /// The `LetterBits` of a snippet's name.
  std::uint32_t lettersInName(std::size_t snippet) const { return letters_[snippet]; }

  /// A bit for each letter and some for other characters. A text without all bits of a word cannot contain
  /// it.
  static std::uint32_t LetterBits(std::string_view text, const Folding& folding);

 private:
  std::string name_;
  std::string path_;
  const std::vector<Snippet>* shared_ = nullptr;
  // Without `shared_`, all texts one after the other, four of each snippet. One block of memory is smaller
  // than many strings, and is returned to the system when the library is not searched any more.
  std::string texts_;
  std::vector<std::uint32_t> ends_;
  std::vector<std::uint32_t> letters_;
};

using SearchedLibraryPtr = std::shared_ptr<const SearchedLibrary>;

}  // namespace snip
