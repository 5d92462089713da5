#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "library/ByteSource.h"

namespace snip {

/// Splits a byte stream into lines, with a buffer of fixed size that grows only for a longer line or to keep
/// the text since the mark.
///
/// The first line says how lines end: CR LF, or LF alone in a file that another system's editor has saved.
/// Any other CR or LF is part of its line, except a CR at the very end of the file, whose LF was lost.
class LineReader {
 public:
  explicit LineReader(ByteSource& source);

  bool AtEnd() { return at_ == end_ && !Refill(); }

  /// Whether LF alone ends lines.
  bool unixLines() const { return unixLines_; }

  /// The next line without its line ending, which the last one need not have. Not to be called at the end.
  /// The line is valid until the next call of AtEnd or Next.
  std::string_view Next();
  std::string_view NextOrEmpty() { return AtEnd() ? std::string_view{} : Next(); }

  /// The number of the next line in the file, from 1, if every LF ended a line.
  std::size_t lineNumber() const { return lineNumber_; }

  /// Keeps what follows the last line in the buffer until the next mark.
  void Mark() { mark_ = at_; }
  /// The lines since then as they are in the file, with their line endings; valid as long as a line.
  std::string_view SinceMark() const { return {bytes_.get() + mark_, at_ - mark_}; }

 private:
  std::string_view Take(std::size_t length, std::size_t lengthWithEnd);
  /// Moves the bytes since the mark to the front and reads more after them; false at the end of the stream.
  bool Refill();

  ByteSource& source_;
  std::size_t room_ = 0;  ///< Size of `bytes_`.
  std::unique_ptr<char[]> bytes_;
  std::size_t mark_ = 0;
  std::size_t at_ = 0;  ///< Where the next line starts.
  std::size_t end_ = 0;
  std::size_t lineNumber_ = 1;
  bool unixLines_ = false;
};

}  // namespace snip
