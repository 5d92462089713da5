#include "find/NameMatch.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string>

namespace snip {
namespace {

// Longer words and names are only compared as a whole.
constexpr std::size_t kLongestName = 128;
constexpr std::size_t kLongestWord = 32;

/// Whether a word begins there: after a character that is not part of a word, at a capital after a small
/// letter ("Read|String"), at the last of several capitals ("HTTP|Server"), and where digits begin or end.
bool BeginsWord(std::string_view name, std::size_t at, const Folding& folding) {
  const auto inWord = [&](std::size_t i) { return folding.IsWord(name[i]) && name[i] != '_'; };
  const auto isDigit = [&](std::size_t i) { return name[i] >= '0' && name[i] <= '9'; };
  if (!inWord(at)) return false;
  if (at == 0 || !inWord(at - 1)) return true;
  if (isDigit(at) != isDigit(at - 1)) return true;
  if (!folding.IsCapital(name[at])) return false;
  return !folding.IsCapital(name[at - 1]) ||
         (at + 1 < name.size() && inWord(at + 1) && !isDigit(at + 1) && !folding.IsCapital(name[at + 1]));
}

/// Finds the letters of a word in a name, one by one.
class LetterMatch {
 public:
  LetterMatch(const std::string& word, std::string_view name, const Folding& folding)
      : word_(word), name_(name), folding_(folding) {}

  /// Matches the letters as beginnings of words of the name.
  bool MatchBeginnings() { return Continue(0, 0); }

  /// Matches the letters in order, the first at the beginning of a word: without that rule, most sentences
  /// would match most words.
  bool MatchInOrder() {
    std::size_t at = 0;
    for (std::size_t i = 0; i < word_.size(); ++i, ++at) {
      while (at < name_.size() && !CanBe(at, i)) ++at;
      if (at == name_.size()) return false;
      places_[i] = at;
    }
    // Choosing the letters closest to the end gives the shortest match.
    for (std::size_t i = word_.size() - 1; i-- > 0;) {
      std::size_t closest = places_[i + 1] - 1;
      while (!CanBe(closest, i)) --closest;
      places_[i] = closest;
    }
    return true;
  }

  std::vector<TextRange> Parts() const {
    std::vector<TextRange> parts;
    for (std::size_t i = 0; i < word_.size(); ++i) {
      if (!parts.empty() && parts.back().end == places_[i]) {
        ++parts.back().end;
      } else {
        parts.push_back({places_[i], places_[i] + 1});
      }
    }
    return parts;
  }

 private:
  bool Is(std::size_t at, char letter) const { return folding_.Fold(name_[at]) == letter; }
  bool CanBe(std::size_t at, std::size_t letter) const {
    return Is(at, word_[letter]) && (letter > 0 || BeginsWord(name_, at, folding_));
  }

  /// Matches the letters from `letter` on; the first one is at `at` or begins a later word.
  bool Continue(std::size_t letter, std::size_t at) {
    if (letter == word_.size()) return true;
    const std::size_t state = letter * kLongestName + at;
    if (at >= name_.size() || failed_[state]) return false;
    const auto takes = [&](std::size_t place) {
      places_[letter] = place;
      return Is(place, word_[letter]) && Continue(letter + 1, place + 1);
    };
    if (letter > 0 && takes(at)) return true;
    for (std::size_t place = at; place < name_.size(); ++place) {
      if (BeginsWord(name_, place, folding_) && takes(place)) return true;
    }
    failed_[state] = true;
    return false;
  }

  const std::string& word_;
  std::string_view name_;
  const Folding& folding_;
  std::array<std::size_t, kLongestWord> places_{};
  std::bitset<kLongestWord * kLongestName> failed_;  ///< Combinations that have failed.
};

/// Whether the letters can be compared one by one, because none belongs to a character of several bytes.
bool HasOnlySingleBytes(std::string_view text, const Folding& folding) {
  return folding.bytes() == Folding::Bytes::One ||
         std::ranges::none_of(text, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

}  // namespace

std::optional<HitPlace> MatchName(const Needle& word, bool phrase, std::string_view name,
                                  const Folding& folding, std::vector<TextRange>* parts) {
  const std::size_t length = word.folded().size();
  const auto whole = [&](HitPlace place, std::size_t at) {
    if (parts != nullptr) *parts = {{at, at + length}};
    return place;
  };
  const auto first = word.Find(name);
  if (first == 0U) return whole(length == name.size() ? HitPlace::WholeName : HitPlace::NameBegin, 0);
  for (auto at = first; at; at = word.Find(name, *at + 1)) {
    if (BeginsWord(name, *at, folding)) return whole(HitPlace::WordBegin, *at);
  }
  if (!phrase && length > 1 && length <= kLongestWord && name.size() <= kLongestName &&
      HasOnlySingleBytes(name, folding)) {
    LetterMatch letters(word.folded(), name, folding);
    const auto of = [&](HitPlace place) {
      if (parts != nullptr) *parts = letters.Parts();
      return place;
    };
    if (letters.MatchInOrder()) {
      if (letters.MatchBeginnings()) return of(HitPlace::WordBegins);
      if (!first && letters.MatchInOrder()) return of(HitPlace::LettersInName);
    }
  }
  return first ? std::optional(whole(HitPlace::InName, *first)) : std::nullopt;
}

}  // namespace snip
