#include "platform/Com.h"

#include <new>

namespace snip {

Bstr::Bstr(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, nullptr, 0);
  text_ = SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (text_ == nullptr) throw std::bad_alloc();
  MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, text_, length);
}

std::string Bstr::Text() const {
  const int length = static_cast<int>(SysStringLen(text_));
  const int bytes = WideCharToMultiByte(CP_ACP, 0, text_, length, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_ACP, 0, text_, length, text.data(), bytes, nullptr, nullptr);
  return text;
}

}  // namespace snip
