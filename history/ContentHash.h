#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "history/BackgroundWork.h"

namespace snip {

/// Tells contents apart; equal on all systems.
std::uint64_t ContentHash(std::string_view bytes);

/// The hash of bytes, which stay where they are meanwhile, made in a thread of its own.
class HashInBackground {
 public:
  explicit HashInBackground(std::string_view bytes);
  std::uint64_t Wait();

 private:
  std::uint64_t hash_ = 0;
  BackgroundWork work_;
};

/// The hash of contents that come piece by piece.
class RunningHash {
 public:
  RunningHash();
  ~RunningHash();
  RunningHash(const RunningHash&) = delete;
  RunningHash& operator=(const RunningHash&) = delete;

  void Add(std::string_view bytes);
  std::uint64_t Value() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The lower 32 bits of a hash as eight hexadecimal digits.
std::string HexDigits(std::uint64_t hash);

}  // namespace snip
