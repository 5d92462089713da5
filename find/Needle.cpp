#include "find/Needle.h"

#include <algorithm>
#include <array>
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

/// Texts lie anywhere in memory, and the processor foresees only what follows in one. To ask for so much of
/// each early makes a search of 20 MB more than twice as fast.
constexpr std::size_t kBytesAhead = 1024;
constexpr std::size_t kCacheLine = 64;

#if defined(__i386__) || defined(__x86_64__)

/// A byte of the needle that text is compared with.
struct BlockProbe {
  const char* first;  ///< Where it lies if the text begins with the needle.
  char value;
};

constexpr std::size_t kBlock = 16;
/// So many blocks for each decision to go on: to decide takes as long as to compare.
constexpr std::size_t kBlocksAtOnce = 4;

/// The bytes that pass both probes have their highest bit set. With `oneHigh` and `otherHigh`, all from 0x80
/// on pass that probe; templates, because to mask it in each block takes half as long again.
template <bool oneHigh, bool otherHigh>
__attribute__((target("sse2"), always_inline)) inline __m128i PassingIn(BlockProbe one, BlockProbe other,
                                                                        std::size_t at) {
  const auto passing = [at](BlockProbe probe, bool high) __attribute__((target("sse2"), always_inline)) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(probe.first + at));
    const __m128i small = _mm_or_si128(bytes, _mm_set1_epi8(static_cast<char>(kSmallBit)));
    const __m128i equal = _mm_cmpeq_epi8(small, _mm_set1_epi8(probe.value));
    return high ? _mm_or_si128(equal, bytes) : equal;
  };
  return _mm_and_si128(passing(one, oneHigh), passing(other, otherHigh));
}

/// The first place that passes both probes, or `length`, which must be at least a block's. 32-bit Windows
/// calls programs with a stack that is not aligned for these instructions.
template <bool oneHigh, bool otherHigh>
#ifdef __i386__
__attribute__((target("sse2"), force_align_arg_pointer))
#endif
std::size_t
FirstInBlocks(BlockProbe one, BlockProbe other, std::size_t length) {
  std::size_t at = 0;
  for (constexpr std::size_t step = kBlocksAtOnce * kBlock; at + step <= length; at += step) {
    // Also behind the text, where the next snippet's mostly lies: a third of the time.
    __builtin_prefetch(one.first + at + kBytesAhead);
    __m128i any = _mm_setzero_si128();
#pragma GCC unroll 4
    for (std::size_t block = 0; block < kBlocksAtOnce; ++block)
      any = _mm_or_si128(any, PassingIn<oneHigh, otherHigh>(one, other, at + block * kBlock));
    if (_mm_movemask_epi8(any) != 0) break;
  }
  for (; at < length; at += kBlock) {
    at = std::min(at, length - kBlock);  // the last block overlaps the one before
    const auto mask =
        static_cast<unsigned int>(_mm_movemask_epi8(PassingIn<oneHigh, otherHigh>(one, other, at)));
    if (mask != 0) return at + static_cast<std::size_t>(std::countr_zero(mask));
  }
  return length;
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
    const auto inText = [&](const Probe& probe) {
      return BlockProbe{text.data() + from + probe.at, probe.value};
    };
    using Search = std::size_t (*)(BlockProbe, BlockProbe, std::size_t);
    static constexpr std::array<Search, 4> kSearches{&FirstInBlocks<false, false>,
                                                     &FirstInBlocks<false, true>, &FirstInBlocks<true, false>,
                                                     &FirstInBlocks<true, true>};
    const Search first = kSearches[(probes_[0].anyHigh ? 2U : 0U) + (probes_[1].anyHigh ? 1U : 0U)];
    return from + first(inText(probes_[0]), inText(probes_[1]), end - from);
  }
#endif
  while (from < end && !Passes(text, from)) ++from;
  return from;
}

std::optional<std::size_t> Needle::Find(std::string_view text, std::size_t from) const {
  if (folded_.empty() || text.size() < folded_.size()) return std::nullopt;
  const std::size_t end = text.size() - folded_.size() + 1;
  for (std::size_t at = from; at < std::min(end, from + kBytesAhead); at += kCacheLine)
    __builtin_prefetch(text.data() + at);
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
