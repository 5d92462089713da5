#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>

namespace snip {

/// How long the calls that share it may wait for other programs: each for as long as it wants, or, while a
/// limit is set, all of them together for no longer than that. For use in several threads.
class Patience {
 public:
  using Duration = std::chrono::milliseconds;

  /// Holds as long as it lives. A second one at the same time can only lessen what is left.
  class Limit {
   public:
    Limit(Patience& patience, Duration all) : patience_(patience) {
      const std::lock_guard lock(patience_.mutex_);
      if (patience_.limits_++ == 0) patience_.left_ = Duration::max();
      patience_.left_ = std::min(patience_.left_, all);
    }
    ~Limit() {
      const std::lock_guard lock(patience_.mutex_);
      if (--patience_.limits_ == 0) patience_.left_ = Duration::max();
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

   private:
    Patience& patience_;
  };

  /// How much of that may be waited now; it counts as waited.
  Duration Take(Duration wanted) {
    const std::lock_guard lock(mutex_);
    const Duration taken = std::min(wanted, left_);
    if (limits_ > 0) left_ -= taken;
    return taken;
  }

 private:
  std::mutex mutex_;
  int limits_ = 0;
  Duration left_ = Duration::max();
};

}  // namespace snip
