#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace snip {

/// Decides when unsaved changes are written as a draft: after a pause, and from time to time during steady
/// work. Times are milliseconds of a clock that never goes back.
class DraftTimer {
 public:
  // A change is noticed up to a second late, and so is the end of these times. Together with writing to the
  // disk, a draft is complete within 10 seconds of a pause and 60 of steady work.
  static constexpr std::uint64_t kPauseMs = 8000;
  static constexpr std::uint64_t kLongestMs = 57000;

  void Changed(std::uint64_t now) {
    last_ = now;
    if (!first_) first_ = now;
  }
  bool Due(std::uint64_t now) const {
    return first_ && now >= std::min(last_ + kPauseMs, *first_ + kLongestMs);
  }
  /// A draft has been written, or there are no unsaved changes any more.
  void Done() { first_.reset(); }

 private:
  std::optional<std::uint64_t> first_;  ///< The time of the first change since the last draft.
  std::uint64_t last_ = 0;
};

}  // namespace snip
