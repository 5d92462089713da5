#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "find/Folding.h"

namespace snip {

/// A text that is looked for in others without regard to case and accents, about as fast as memory is read.
class Needle {
 public:
  /// `folding` must outlive this.
  Needle(std::string_view text, const Folding& folding);

  /// As it is compared. A match has as many bytes.
  const std::string& folded() const { return folded_; }
  /// The first match that begins at or after `from`; none for an empty needle.
  std::optional<std::size_t> Find(std::string_view text, std::size_t from = 0) const;
  bool IsIn(std::string_view text) const { return Find(text).has_value(); }
  bool MatchesAt(std::string_view text, std::size_t at) const;

 private:
  /// A place in the needle that the search looks at first, because few texts have that character.
  struct Probe {
    std::size_t at = 0;
    char value = 0;        ///< What the byte there is once its bit for small letters is set,
    bool anyHigh = false;  ///< unless it is one of the upper half, where letters have accents.

    bool Passes(char byte) const;
  };

  bool Passes(std::string_view text, std::size_t at) const;
  /// The first place in [from, end) that passes the probes; `end` if there is none.
  std::size_t NextCandidate(std::string_view text, std::size_t from, std::size_t end) const;

  const Folding& folding_;
  std::string folded_;
  std::array<Probe, 2> probes_;
};

}  // namespace snip
