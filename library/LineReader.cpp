#include "library/LineReader.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

namespace snip {
namespace {

/// Small enough to stay in the processor's cache between being read and being split.
constexpr std::size_t kPiece = std::size_t{1} << 16U;

/// The index of the first line feed in [from, end), `end` when there is none.
std::size_t FindLineFeed(const char* bytes, std::size_t from, std::size_t end) {
#ifdef _WIN32
  // Wine's memchr compares single bytes, which takes a fifth of the time of reading a library.
  constexpr std::uint64_t ones = 0x0101010101010101;
  constexpr std::uint64_t highBits = ones << 7U;
  for (; from + sizeof ones <= end; from += sizeof ones) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + from, sizeof word);
    word ^= ones * '\n';
    // The lowest bit that this sets is that of the first byte that is now 0.
    const std::uint64_t zeros = (word - ones) & ~word & highBits;
    if (zeros != 0) return from + static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
  }
#endif
  const void* const found = from < end ? std::memchr(bytes + from, '\n', end - from) : nullptr;
  return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - bytes) : end;
}

}  // namespace

LineReader::LineReader(ByteSource& source) : source_(source) {
  std::size_t lineFeed = 0;
  while (lineFeed == end_) {
    if (!Refill()) return;
    lineFeed = FindLineFeed(bytes_.get(), lineFeed, end_);
  }
  unixLines_ = lineFeed == 0 || bytes_[lineFeed - 1] != '\r';
}

std::string_view LineReader::Next() {
  std::size_t lineFeed = FindLineFeed(bytes_.get(), at_, end_);
  for (;;) {
    const std::size_t length = lineFeed - at_;
    const bool atEnd = lineFeed == end_ && !Refill();
    lineFeed = at_ + length;  // Refill moves the bytes
    if (!atEnd && bytes_[lineFeed] == '\n') {
      ++lineNumber_;
      const bool afterReturn = length > 0 && bytes_[lineFeed - 1] == '\r';
      if (afterReturn || unixLines_) return Take(length - (afterReturn ? 1 : 0), length + 1);
      ++lineFeed;
    }
    if (atEnd) {
      // The file was cut within its last line ending.
      const bool dropReturn = length > 0 && bytes_[end_ - 1] == '\r';
      return Take(length - (dropReturn ? 1 : 0), length);
    }
    lineFeed = FindLineFeed(bytes_.get(), lineFeed, end_);
  }
}

std::string_view LineReader::Take(std::size_t length, std::size_t lengthWithEnd) {
  const std::string_view line(bytes_.get() + at_, length);
  at_ += lengthWithEnd;
  return line;
}

bool LineReader::Refill() {
  const std::size_t kept = end_ - mark_;
  if (kept == room_) {
    room_ = std::max(2 * room_, kPiece);
    std::unique_ptr<char[]> larger(new char[room_]);              // not zeroed first, unlike a vector
    if (kept > 0) std::memcpy(larger.get(), bytes_.get(), kept);  // the mark is at the beginning
    bytes_ = std::move(larger);
  } else if (kept > 0) {
    std::memmove(bytes_.get(), bytes_.get() + mark_, kept);
  }
  at_ -= mark_;
  mark_ = 0;
  end_ = kept;
  while (end_ < room_) {
    const std::size_t got = source_.Read({bytes_.get() + end_, room_ - end_});
    if (got == 0) break;
    end_ += got;
  }
  return end_ > kept;
}

}  // namespace snip
