#include <windows.h>

// The threads of the C++ run-time library measure their waits with GetTickCount64. Windows XP lacks it and
// starts no program that imports it, so the 32-bit programs bring a clock of their own: the linker takes this
// definition of what the import table would hold.

namespace {

/// Milliseconds that never run backwards, from any beginning.
ULONGLONG WINAPI MonotonicMilliseconds() {
  LARGE_INTEGER frequency{};
  LARGE_INTEGER count{};
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&count);
  const LONGLONG seconds = count.QuadPart / frequency.QuadPart;
  const LONGLONG rest = count.QuadPart % frequency.QuadPart;
  return static_cast<ULONGLONG>(seconds * 1000 + rest * 1000 / frequency.QuadPart);
}

}  // namespace

extern "C" {
extern ULONGLONG(WINAPI* const importedGetTickCount64)() __asm__("__imp__GetTickCount64@0");
ULONGLONG(WINAPI* const importedGetTickCount64)() = &MonotonicMilliseconds;
}
