#include "find/Folding.h"

#include <algorithm>
#include <utility>

namespace snip {
namespace {

/// The lower-case letters without accents from U+00C0 on; a point for characters that have none.
constexpr std::string_view kLatin =
    "aaaaaa.ceeeeiiii.nooooo.ouuuuy.."
    "aaaaaa.ceeeeiiii.nooooo.ouuuuy.y"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiii..jjkk.llllllllllnnnnnn...oooooo.."
    "rrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
constexpr char32_t kLatinBegin = 0xC0;
static_assert(kLatinBegin + kLatin.size() == 0x180);

constexpr std::pair<char32_t, char32_t> kOthers[] = {
    {0x1A0, 'o'},   {0x1A1, 'o'},   {0x1AF, 'u'},   {0x1B0, 'u'},    // Vietnamese
    {0x386, 0x3B1}, {0x388, 0x3B5}, {0x389, 0x3B7}, {0x38A, 0x3B9},  // Greek
    {0x38C, 0x3BF}, {0x38E, 0x3C5}, {0x38F, 0x3C9}, {0x390, 0x3B9}, {0x3AA, 0x3B9},
    {0x3AB, 0x3C5}, {0x3AC, 0x3B1}, {0x3AD, 0x3B5}, {0x3AE, 0x3B7}, {0x3AF, 0x3B9},
    {0x3B0, 0x3C5}, {0x3C2, 0x3C3}, {0x3CA, 0x3B9}, {0x3CB, 0x3C5}, {0x3CC, 0x3BF},
    {0x3CD, 0x3C5}, {0x3CE, 0x3C9}, {0x401, 0x435}, {0x451, 0x435},  // Cyrillic
};

char32_t WithoutAccent(char32_t character) {
  if (character >= kLatinBegin && character - kLatinBegin < kLatin.size()) {
    const char base = kLatin[character - kLatinBegin];
    return base == '.' ? character : static_cast<char32_t>(base);
  }
  const auto* other = std::ranges::find(kOthers, character, &std::pair<char32_t, char32_t>::first);
  return other == std::end(kOthers) ? character : other->second;
}

bool IsAsciiLetterOrDigit(int byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

}  // namespace

Folding::Folding(const LetterTable& letters, const std::array<char32_t, 256>& characters) {
  for (std::size_t i = 0; i < fold_.size(); ++i) {
    const char byte = static_cast<char>(i);
    const auto base = std::ranges::find(characters, WithoutAccent(characters[i]));
    fold_[i] = letters.Lower(base == characters.end() ? byte : static_cast<char>(base - characters.begin()));
    word_[i] = letters.IsWord(byte);
    capital_[i] = letters.Lower(byte) != byte;
  }
}

Folding::Folding(Bytes bytes) : bytes_(bytes) {
  for (int i = 0; i < 256; ++i) {
    const auto at = static_cast<std::size_t>(i);
    capital_[at] = i >= 'A' && i <= 'Z';
    fold_[at] = static_cast<char>(capital_[at] ? i - 'A' + 'a' : i);
    word_[at] = i >= 0x80 || i == '_' || IsAsciiLetterOrDigit(i);
  }
}

Folding Folding::DoubleByte(const std::array<bool, 256>& leadBytes) {
  Folding folding(Bytes::Two);
  folding.lead_ = leadBytes;
  return folding;
}

Folding Folding::Utf8() {
  return Folding(Bytes::Utf8);
}

std::string Folding::Fold(std::string_view text) const {
  std::string folded(text);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    if (IsLead(folded[i])) {
      ++i;  // the trail byte may look like a letter
    } else {
      folded[i] = Fold(folded[i]);
    }
  }
  return folded;
}

bool Folding::BeginsCharacter(std::string_view text, std::size_t at) const {
  if (at >= text.size()) return true;
  if (bytes_ == Bytes::Utf8) return (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U;
  if (bytes_ == Bytes::One) return true;
  // A byte that is not a lead byte ends a character, so the lead bytes directly before `at` pair up from
  // there on.
  std::size_t begin = at;
  while (begin > 0 && IsLead(text[begin - 1])) --begin;
  return (at - begin) % 2 == 0;
}

}  // namespace snip
