#include "find/SearchedLibrary.h"

#include <algorithm>
#include <utility>

namespace snip {

std::uint32_t SearchedLibrary::LetterBits(std::string_view text, const Folding& folding) {
  std::uint32_t bits = 0;
  for (const char byte : text) bits |= 1U << (static_cast<unsigned char>(folding.Fold(byte)) % 32U);
  return bits;
}

SearchedLibrary::SearchedLibrary(std::string name, std::string path, std::size_t bytes)
    : name_(std::move(name)), path_(std::move(path)) {
  texts_.reserve(bytes);
}

SearchedLibrary::SearchedLibrary(std::string name, std::string path, const std::vector<Snippet>* shared,
                                 const Folding& folding)
    : name_(std::move(name)), path_(std::move(path)), shared_(shared) {
  letters_.reserve(shared->size());
  for (const Snippet& snippet : *shared) letters_.push_back(LetterBits(snippet.Name, folding));
}

void SearchedLibrary::Add(const Snippet& snippet, const Folding& folding) {
  for (const std::string* text : {&snippet.Name, &snippet.Attachment, &snippet.Code, &snippet.Description}) {
    texts_ += *text;
    ends_.push_back(static_cast<std::uint32_t>(texts_.size()));
  }
  letters_.push_back(LetterBits(snippet.Name, folding));
}

std::size_t SearchedLibrary::size() const {
  return shared_ == nullptr ? letters_.size() : std::min(shared_->size(), letters_.size());
}

SearchedSnippet SearchedLibrary::operator[](std::size_t snippet) const {
  if (shared_ != nullptr) {
    const Snippet& texts = (*shared_)[snippet];
    return {texts.Name, texts.Attachment, texts.Code, texts.Description};
  }
  const auto text = [&](std::size_t number) {
    const std::size_t at = snippet * 4 + number;
    const std::size_t begin = at == 0 ? 0 : ends_[at - 1];
    return std::string_view(texts_).substr(begin, ends_[at] - begin);
  };
  return {text(0), text(1), text(2), text(3)};
}

std::vector<Snippet> SearchedLibrary::Snippets() const {
  std::vector<Snippet> snippets(size());
  for (std::size_t i = 0; i < snippets.size(); ++i) {
    const SearchedSnippet texts = (*this)[i];
    snippets[i] = {std::string(texts.Name), std::string(texts.Attachment), std::string(texts.Code),
                   std::string(texts.Description)};
  }
  return snippets;
}

}  // namespace snip
