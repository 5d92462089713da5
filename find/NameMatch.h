#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "find/Needle.h"

namespace snip {

/// Where a word was found, the best first.
enum class HitPlace : unsigned char {
  None,  ///< Nothing was looked for but libraries.
  WholeName,
  NameBegin,
  WordBegin,   ///< Where a word of the name begins.
  WordBegins,  ///< Its letters begin several: "rsfr" is in "ReadStringFromRegistry".
  InName,
  LettersInName,  ///< All of its letters are in the name in their order, from where a word begins.
  Description,
  Code,
};

/// A part of a text, in bytes.
struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// The best place at which the name has the word, if it has it; a phrase has to be there as a whole. `parts`
/// becomes what of the name that is, in its order.
std::optional<HitPlace> MatchName(const Needle& word, bool phrase, std::string_view name,
                                  const Folding& folding, std::vector<TextRange>* parts = nullptr);

}  // namespace snip
