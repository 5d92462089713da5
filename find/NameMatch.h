#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "find/Needle.h"

namespace snip {

/// Where a word was found, from the best place to the worst.
enum class HitPlace : unsigned char {
  None,  ///< The query names libraries only.
  WholeName,
  NameBegin,
  WordBegin,   ///< At the beginning of a word of the name.
  WordBegins,  ///< As the beginnings of several words: "rsfr" matches "ReadStringFromRegistry".
  InName,
  LettersInName,  ///< All its letters are in the name, in order, starting at the beginning of a word.
  Description,
  Code,
};

/// A part of a text, in bytes.
struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// The best place at which the name matches the word, if it does; a phrase has to match as a whole. `parts`
/// becomes the matching parts of the name, in order.
std::optional<HitPlace> MatchName(const Needle& word, bool phrase, std::string_view name,
                                  const Folding& folding, std::vector<TextRange>* parts = nullptr);

}  // namespace snip
