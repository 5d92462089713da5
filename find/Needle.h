#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "find/Folding.h"

namespace snip {

/// A text to search for, regardless of case and accents, about as fast as memory can be read.
class Needle {
 public:
  /// `folding` must outlive this.
  Needle(std::string_view text, const Folding& folding);

  /// The folded text. A match has the same number of bytes.
  const std::string& folded() const { return folded_; }
  /// The first match at or after `from`; nothing for an empty needle.
  std::optional<std::size_t> Find(std::string_view text, std::size_t from = 0) const;
  bool IsIn(std::string_view text) const { return Find(text).has_value(); }
  bool MatchesAt(std::string_view text, std::size_t at) const;

 private:
  /// A byte of the needle that is compared first, because it is rare.
  struct Probe {
    std::size_t at = 0;
    char value = 0;        ///< The byte with its lower-case bit set,
    bool anyHigh = false;  ///< or any byte from 0x80 on, where accented letters are.

    bool Passes(char byte) const;
  };

  bool Passes(std::string_view text, std::size_t at) const;
  /// The first place in [from, end) that passes the probes, or `end`.
  std::size_t NextCandidate(std::string_view text, std::size_t from, std::size_t end) const;

  const Folding& folding_;
  std::string folded_;
  std::array<Probe, 2> probes_;
};

}  // namespace snip
