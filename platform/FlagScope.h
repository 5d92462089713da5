#pragma once

#include <utility>

namespace snip {

/// Keeps a flag set for as long as it lives, also when an exception ends that early; then it is what it was
/// before.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~FlagScope() { flag_ = before_; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace snip
