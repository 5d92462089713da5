#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace snip {

/// When changes that are not saved are to be written as a draft: after a pause, and during steady work now
/// and then. Times are milliseconds of any clock that does not go back.
class DraftTimer {
 public:
  // With the second after which a change is noticed, the one after which the end of these is, and the time of
  // the disk, a draft is written within 10 seconds of a pause and 60 of steady work.
  static constexpr std::uint64_t kPauseMs = 8000;
  static constexpr std::uint64_t kLongestMs = 57000;

  void Changed(std::uint64_t now) {
    last_ = now;
    if (!first_) first_ = now;
  }
  bool Due(std::uint64_t now) const {
    return first_ && now >= std::min(last_ + kPauseMs, *first_ + kLongestMs);
  }
  /// A draft is written, or there is nothing to be written any more.
  void Done() { first_.reset(); }

 private:
  std::optional<std::uint64_t> first_;  ///< The first change that no draft holds.
  std::uint64_t last_ = 0;
};

}  // namespace snip
