#pragma once

#include <windows.h>

#include <string_view>

#include "platform/Handle.h"

namespace snip {

/// A movable block, as the clipboard and drags pass data.
using UniqueGlobal = UniqueHandle<HGLOBAL, &GlobalFree>;

/// A block of at least one byte; throws std::bad_alloc.
UniqueGlobal MakeGlobal(std::string_view bytes);

/// A block's bytes, in place while this lives. A null block has none.
class LockedGlobal {
 public:
  explicit LockedGlobal(HGLOBAL block);
  ~LockedGlobal();
  LockedGlobal(const LockedGlobal&) = delete;
  LockedGlobal& operator=(const LockedGlobal&) = delete;

  /// Null when the block is gone.
  char* data() const { return data_; }
  std::string_view bytes() const;
  /// The same as UTF-16, up to a zero.
  std::u16string_view Utf16() const;

 private:
  HGLOBAL block_;
  char* data_;
};

}  // namespace snip
