#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "history/BackgroundWork.h"

namespace snip {

/// A hash that is the same on all systems.
std::uint64_t ContentHash(std::string_view bytes);

/// Hashes bytes in a second thread. They must stay valid until this is destroyed.
class HashInBackground {
 public:
  explicit HashInBackground(std::string_view bytes);
  std::uint64_t Wait();

 private:
  std::uint64_t hash_ = 0;
  BackgroundWork work_;
};

/// The hash of contents that are given piece by piece.
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
