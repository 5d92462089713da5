#include "find/Needle.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#if defined(__i386__) || defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace snip {
namespace {

/// The bit that is set in lower-case ASCII letters.
constexpr unsigned char kSmallBit = 0x20;

char WithSmallBit(char byte) {
  return static_cast<char>(static_cast<unsigned char>(byte) | kSmallBit);
}

/// How rare a character is in code and prose: a higher value is rarer.
std::size_t Rarity(char folded) {
  constexpr std::string_view mostCommonFirst = " etaoinsrldcumhpfgybwvkxjqz";
  return mostCommonFirst.find(folded);
}

#if defined(__i386__) || defined(__x86_64__)

/// The two bytes that a block of text is compared with.
struct BlockProbe {
  const char* at;  ///< In the text.
  char value;
  char highBit;  ///< 0x80 if all bytes from 0x80 on pass.
};

constexpr std::size_t kBlock = 16;

/// The first place in the blocks that passes both probes, or the length of all blocks. 32-bit Windows calls
/// programs with a stack that is not aligned for these instructions.
#ifdef __i386__
__attribute__((target("sse2"), force_align_arg_pointer))
#endif
std::size_t
FirstInBlocks(BlockProbe one, BlockProbe other, std::size_t blocks) {
  const __m128i small = _mm_set1_epi8(static_cast<char>(kSmallBit));
  const __m128i oneValue = _mm_set1_epi8(one.value);
  const __m128i otherValue = _mm_set1_epi8(other.value);
  const __m128i oneHigh = _mm_set1_epi8(one.highBit);
  const __m128i otherHigh = _mm_set1_epi8(other.highBit);
  for (std::size_t block = 0; block < blocks; ++block) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(one.at + block * kBlock));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(other.at + block * kBlock));
    const __m128i passA =
        _mm_or_si128(_mm_cmpeq_epi8(_mm_or_si128(a, small), oneValue), _mm_and_si128(a, oneHigh));
    const __m128i passB =
        _mm_or_si128(_mm_cmpeq_epi8(_mm_or_si128(b, small), otherValue), _mm_and_si128(b, otherHigh));
    const auto mask = static_cast<unsigned int>(_mm_movemask_epi8(_mm_and_si128(passA, passB)));
    if (mask != 0) return block * kBlock + static_cast<std::size_t>(std::countr_zero(mask));
  }
  return blocks * kBlock;
}

bool HasBlocks() {
#ifdef __i386__
  return __builtin_cpu_supports("sse2") != 0;
#else
  return true;
#endif
}

#endif

}  // namespace

Needle::Needle(std::string_view text, const Folding& folding)
    : folding_(folding), folded_(folding.Fold(text)) {
  const auto rarerThan = [this](std::size_t a, std::size_t b) {
    return Rarity(folded_[a]) > Rarity(folded_[b]);
  };
  for (std::size_t at = 1; at < folded_.size(); ++at) {
    if (rarerThan(at, probes_[0].at)) {
      probes_[1].at = probes_[0].at;
      probes_[0].at = at;
    } else if (probes_[1].at == probes_[0].at || rarerThan(at, probes_[1].at)) {
      probes_[1].at = at;
    }
  }
  for (Probe& probe : probes_) {
    if (folded_.empty()) return;
    const char wanted = folded_[probe.at];
    probe.value = WithSmallBit(wanted);
    for (int i = 0x80; i < 256; ++i) {
      const char byte = static_cast<char>(i);
      if (folding.Fold(byte) == wanted && WithSmallBit(byte) != probe.value) probe.anyHigh = true;
    }
  }
}

bool Needle::Probe::Passes(char byte) const {
  return WithSmallBit(byte) == value || (anyHigh && static_cast<unsigned char>(byte) >= 0x80);
}

bool Needle::Passes(std::string_view text, std::size_t at) const {
  return probes_[0].Passes(text[at + probes_[0].at]) && probes_[1].Passes(text[at + probes_[1].at]);
}

std::size_t Needle::NextCandidate(std::string_view text, std::size_t from, std::size_t end) const {
#if defined(__i386__) || defined(__x86_64__)
  if (end - from >= kBlock && HasBlocks()) {
    const auto block = [&](const Probe& probe) {
      return BlockProbe{text.data() + from + probe.at, probe.value,
                        static_cast<char>(probe.anyHigh ? 0x80 : 0)};
    };
    const std::size_t blocks = (end - from) / kBlock;
    const std::size_t found = FirstInBlocks(block(probes_[0]), block(probes_[1]), blocks);
    from += found;
    if (found < blocks * kBlock) return from;
  }
#endif
  while (from < end && !Passes(text, from)) ++from;
  return from;
}

std::optional<std::size_t> Needle::Find(std::string_view text, std::size_t from) const {
  if (folded_.empty() || text.size() < folded_.size()) return std::nullopt;
  const std::size_t end = text.size() - folded_.size() + 1;
  while (from < end) {
    from = NextCandidate(text, from, end);
    if (from < end && MatchesAt(text, from)) return from;
    ++from;
  }
  return std::nullopt;
}

bool Needle::MatchesAt(std::string_view text, std::size_t at) const {
  if (at > text.size() || text.size() - at < folded_.size()) return false;
  for (std::size_t i = 0; i < folded_.size(); ++i) {
    if (folding_.IsLead(folded_[i])) {
      if (text[at + i] != folded_[i]) return false;
      if (++i < folded_.size() && text[at + i] != folded_[i]) return false;
    } else if (folding_.Fold(text[at + i]) != folded_[i]) {
      return false;
    }
  }
  return folding_.BeginsCharacter(text, at) && folding_.BeginsCharacter(text, at + folded_.size());
}

}  // namespace snip
