#include "platform/Clipboard.h"

#include <cstddef>

#include "platform/GlobalMemory.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

/// Other programs look at the clipboard whenever it changes and may hold it for a moment.
constexpr int kOpenAttempts = 10;
constexpr DWORD kAttemptPauseMs = 20;

class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND owner) {
    for (int attempt = 0; attempt < kOpenAttempts && !open_; ++attempt) {
      if (attempt > 0) Sleep(kAttemptPauseMs);
      open_ = OpenClipboard(owner) != 0;
    }
  }
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  explicit operator bool() const { return open_; }

 private:
  bool open_ = false;
};

bool PutData(UINT format, const void* data, std::size_t size) {
  UniqueGlobal block = MakeGlobal({static_cast<const char*>(data), size});
  if (SetClipboardData(format, block.get()) == nullptr) return false;
  block.Release();  // the clipboard has taken it over
  return true;
}

}  // namespace

bool CopyToClipboard(HWND owner, const std::string& text) {
  const OpenedClipboard clipboard(owner);
  if (!clipboard || EmptyClipboard() == 0) return false;
  if (text.empty()) return true;  // there is nothing to be pasted
  // In Unicode as well: a locale that says in which code page the bytes are can name none of some code pages.
  const LCID locale = GetSystemDefaultLCID();
  const std::u16string wide = Utf16FromAnsi(text);
  return PutData(CF_TEXT, text.c_str(), text.size() + 1) && PutData(CF_LOCALE, &locale, sizeof locale) &&
         PutData(CF_UNICODETEXT, wide.c_str(), (wide.size() + 1) * sizeof(char16_t));
}

bool ClipboardHasText() {
  return IsClipboardFormatAvailable(CF_TEXT) != 0;  // the system converts from Unicode
}

std::string ClipboardText(HWND owner) {
  const OpenedClipboard clipboard(owner);
  // In Unicode, since the system makes that of all text; what it makes of Unicode is in the keyboard's code
  // page.
  const HANDLE block = clipboard ? GetClipboardData(CF_UNICODETEXT) : nullptr;  // stays the clipboard's
  return AnsiFromUtf16(LockedGlobal(block).Utf16());
}

}  // namespace snip
