#include "history/ContentHash.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace snip {

std::uint64_t ContentHash(std::string_view bytes) {
  return XXH64(bytes.data(), bytes.size(), 0);
}

HashInBackground::HashInBackground(std::string_view bytes) {
  if (!work_.Begin([this, bytes] { hash_ = ContentHash(bytes); })) hash_ = ContentHash(bytes);
}

std::uint64_t HashInBackground::Wait() {
  work_.Finish();
  return hash_;
}

struct RunningHash::State {
  XXH64_state_t hash;
};

RunningHash::RunningHash() : state_(std::make_unique<State>()) {
  XXH64_reset(&state_->hash, 0);
}

RunningHash::~RunningHash() = default;

void RunningHash::Add(std::string_view bytes) {
  XXH64_update(&state_->hash, bytes.data(), bytes.size());
}

std::uint64_t RunningHash::Value() const {
  return XXH64_digest(&state_->hash);
}

std::string HexDigits(std::uint64_t hash) {
  std::string digits;
  for (int shift = 28; shift >= 0; shift -= 4) digits += "0123456789abcdef"[(hash >> shift) & 0xFU];
  return digits;
}

}  // namespace snip
