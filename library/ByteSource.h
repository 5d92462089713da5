#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace snip {

/// Bytes that are read piece by piece, such as those of an open file, so that they need not be in memory as a
/// whole.
class ByteSource {
 public:
  /// How much to read at a time and write to a file: little enough to stay in the processor's cache, and
  /// enough for the system to keep the file's pages in large blocks.
  static constexpr std::size_t kWrittenPiece = std::size_t{1} << 18U;

  virtual ~ByteSource() = default;

  /// Fills `room` from its start and returns how many bytes that were; 0 at the end, and when reading fails.
  virtual std::size_t Read(std::span<char> room) = 0;
  /// Whether reading failed, so that the bytes ended too early.
  virtual bool Failed() const = 0;
  /// The number of all bytes if it is known without reading them, else 0.
  virtual std::size_t Size() const { return 0; }
  /// All that has not been read yet.
  virtual std::string ReadRest() {
    std::string bytes;
    bytes.reserve(Size());
    const auto piece = std::make_unique<char[]>(kWrittenPiece);
    while (const std::size_t got = Read({piece.get(), kWrittenPiece})) bytes.append(piece.get(), got);
    return bytes;
  }
  /// Goes back to the beginning; false when that is not possible.
  virtual bool Rewind() { return false; }
};

/// Bytes in memory, which must outlive this.
class BytesInMemory : public ByteSource {
 public:
  explicit BytesInMemory(std::string_view bytes) : all_(bytes), rest_(bytes) {}

  std::size_t Read(std::span<char> room) override {
    const std::size_t got = rest_.copy(room.data(), room.size());
    rest_.remove_prefix(got);
    return got;
  }
  bool Failed() const override { return false; }
  std::size_t Size() const override { return all_.size(); }
  bool Rewind() override {
    rest_ = all_;
    return true;
  }

 private:
  std::string_view all_;
  std::string_view rest_;
};

}  // namespace snip
