#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "library/ByteSource.h"

namespace snip {

/// Takes bytes apart into lines, of which it never holds more than a piece of fixed size, or the one line
/// that is longer, and what follows the mark.
///
/// The first line says how lines end: CR LF, or LF alone in a file that came through another system's editor.
/// Any other CR or LF is part of its line, but for a CR at the very end, of which the LF was lost.
class LineReader {
 public:
  explicit LineReader(ByteSource& source);

  bool AtEnd() { return at_ == end_ && !Refill(); }

  /// The next line without its line end; the last one need not have any. Not to be called at the end. The
  /// line is valid until anything else is asked for.
  std::string_view Next();
  std::string_view NextOrEmpty() { return AtEnd() ? std::string_view{} : Next(); }

  /// Keeps what follows the last line taken until the next mark.
  void Mark() { mark_ = at_; }
  /// The lines taken since then, as they stand in the file, with their ends; valid as long as a line.
  std::string_view SinceMark() const { return {bytes_.get() + mark_, at_ - mark_}; }

 private:
  std::string_view Take(std::size_t length, std::size_t lengthWithEnd);
  /// Gets more bytes behind those marked or not taken yet, which move; false when there are none.
  bool Refill();

  ByteSource& source_;
  std::size_t room_ = 0;  ///< Size of `bytes_`.
  std::unique_ptr<char[]> bytes_;
  std::size_t mark_ = 0;
  std::size_t at_ = 0;  ///< Where the next line starts.
  std::size_t end_ = 0;
  bool unixLines_ = false;
};

}  // namespace snip
