#include "platform/Clipboard.h"

#include <cstring>

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

/// A block of the kind that the clipboard takes over; freed when it does not.
HGLOBAL MovableCopy(const void* data, std::size_t size) {
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
  if (block == nullptr) return nullptr;
  void* target = GlobalLock(block);
  if (target == nullptr) {
    GlobalFree(block);
    return nullptr;
  }
  std::memcpy(target, data, size);
  GlobalUnlock(block);
  return block;
}

bool PutData(UINT format, const void* data, std::size_t size) {
  const HGLOBAL block = MovableCopy(data, size);
  if (block == nullptr) return false;
  if (SetClipboardData(format, block) != nullptr) return true;
  // The clipboard owns the block only when it took it.
  // cppcheck-suppress doubleFree
  GlobalFree(block);
  return false;
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
  const auto* text = block == nullptr ? nullptr : static_cast<const char16_t*>(GlobalLock(block));
  if (text == nullptr) return {};
  const std::u16string_view units(text, GlobalSize(block) / sizeof(char16_t));
  std::string copy = AnsiFromUtf16(units.substr(0, units.find(u'\0')));
  GlobalUnlock(block);
  return copy;
}

}  // namespace snip
