#pragma once

#include <algorithm>
#include <array>
#include <numeric>

#include "find/Folding.h"
#include "tests/unit/WesternLetters.h"

namespace snip::test {

inline Folding Latin1() {
  std::array<char32_t, 256> characters{};
  std::iota(characters.begin(), characters.end(), U'\0');
  return {WesternLetters(), characters};
}

inline Folding ShiftJis() {
  std::array<bool, 256> lead{};
  std::fill(lead.begin() + 0x81, lead.begin() + 0xA0, true);
  std::fill(lead.begin() + 0xE0, lead.begin() + 0xFD, true);
  return Folding::DoubleByte(lead);
}

}  // namespace snip::test
