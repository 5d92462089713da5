#include "platform/Com.h"

#include <new>

#include "platform/Win32Text.h"

namespace snip {

Bstr::Bstr(const std::string& text) : Bstr(Utf16FromAnsi(text)) {}

Bstr::Bstr(std::u16string_view text)
    : text_(
          SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()))) {
  if (text_ == nullptr) throw std::bad_alloc();
}

std::string Bstr::Text() const {
  return AnsiFromUtf16({reinterpret_cast<const char16_t*>(text_), SysStringLen(text_)});
}

}  // namespace snip
