#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "find/Folding.h"
#include "library/Library.h"

namespace snip {

/// A library as a search sees it.
class SearchedLibrary {
 public:
  /// One of which this keeps the snippets.
  SearchedLibrary(std::string name, std::string path, std::vector<Snippet> snippets, const Folding& folding);
  /// One that its owner keeps, and may change: a search of it sees no more snippets than there were.
  SearchedLibrary(std::string name, std::string path, const std::vector<Snippet>* shared,
                  const Folding& folding);
  SearchedLibrary(const SearchedLibrary&) = delete;
  SearchedLibrary& operator=(const SearchedLibrary&) = delete;

  const std::string& name() const { return name_; }
  const std::string& path() const { return path_; }
  std::span<const Snippet> snippets() const {
    return std::span(*snippets_).first(std::min(snippets_->size(), letters_.size()));
  }
  /// Which letters the name of a snippet has, as LetterBits tells them.
  std::uint32_t lettersInName(std::size_t snippet) const { return letters_[snippet]; }

  /// A bit for each letter and some for other characters: a text that has not all bits of a word lacks it.
  static std::uint32_t LetterBits(std::string_view text, const Folding& folding);

 private:
  std::string name_;
  std::string path_;
  std::vector<Snippet> own_;
  const std::vector<Snippet>* snippets_;
  std::vector<std::uint32_t> letters_;
};

using SearchedLibraryPtr = std::shared_ptr<const SearchedLibrary>;

}  // namespace snip
