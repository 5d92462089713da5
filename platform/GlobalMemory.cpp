#include "platform/GlobalMemory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace snip {

UniqueGlobal MakeGlobal(std::string_view bytes) {
  UniqueGlobal block(GlobalAlloc(GMEM_MOVEABLE, std::max<std::size_t>(bytes.size(), 1)));
  const LockedGlobal locked(block.get());
  if (locked.data() == nullptr) throw std::bad_alloc();
  std::memcpy(locked.data(), bytes.data(), bytes.size());
  return block;
}

LockedGlobal::LockedGlobal(HGLOBAL block)
    : block_(block), data_(block == nullptr ? nullptr : static_cast<char*>(GlobalLock(block))) {}

LockedGlobal::~LockedGlobal() {
  if (data_ != nullptr) GlobalUnlock(block_);
}

std::string_view LockedGlobal::bytes() const {
  return data_ == nullptr ? std::string_view() : std::string_view(data_, GlobalSize(block_));
}

std::u16string_view LockedGlobal::Utf16() const {
  const std::u16string_view units(reinterpret_cast<const char16_t*>(data_),
                                  bytes().size() / sizeof(char16_t));
  return units.substr(0, units.find(u'\0'));
}

}  // namespace snip
