#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace snip {

/// Does one piece of work at a time in a thread of its own.
class BackgroundWork {
 public:
  BackgroundWork() = default;
  ~BackgroundWork() { Finish(); }
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;

  /// False when the piece before is still being worked on, or when there is no thread to be had. What the
  /// work throws ends it.
  bool Begin(std::function<void()> work);
  bool Works() const { return thread_.joinable() && !done_; }
  /// Waits for the end of the work.
  void Finish();

 private:
  std::thread thread_;
  std::atomic<bool> done_ = false;
};

}  // namespace snip
