#include "find/SearchedLibrary.h"

#include <utility>

namespace snip {

std::uint32_t SearchedLibrary::LetterBits(std::string_view text, const Folding& folding) {
  std::uint32_t bits = 0;
  for (const char byte : text) bits |= 1U << (static_cast<unsigned char>(folding.Fold(byte)) % 32U);
  return bits;
}

SearchedLibrary::SearchedLibrary(std::string name, std::string path, std::vector<Snippet> snippets,
                                 const Folding& folding)
    : SearchedLibrary(std::move(name), std::move(path), &snippets, folding) {
  own_ = std::move(snippets);
  snippets_ = &own_;
}

SearchedLibrary::SearchedLibrary(std::string name, std::string path, const std::vector<Snippet>* shared,
                                 const Folding& folding)
    : name_(std::move(name)), path_(std::move(path)), snippets_(shared) {
  letters_.reserve(shared->size());
  for (const Snippet& snippet : *shared) letters_.push_back(LetterBits(snippet.Name, folding));
}

}  // namespace snip
