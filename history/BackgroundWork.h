#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace snip {

/// Runs one piece of work at a time in a thread.
class BackgroundWork {
 public:
  BackgroundWork() = default;
  ~BackgroundWork() { Finish(); }
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;

  /// False if the previous piece is still running, or if no thread can be started. An exception ends the work
  /// silently.
  bool Begin(std::function<void()> work);
  bool Works() const { return thread_.joinable() && !done_; }
  /// Waits until the work is done.
  void Finish();

 private:
  std::thread thread_;
  std::atomic<bool> done_ = false;
};

}  // namespace snip
