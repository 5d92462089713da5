#include "vba/ModuleLife.h"

#include <windows.h>

#include <cstddef>
#include <new>

namespace snip::vba {
namespace {

LONG uses = 0;

}  // namespace

void LockModule() {
  InterlockedIncrement(&uses);
}

void UnlockModule() {
  InterlockedDecrement(&uses);
}

bool ModuleUsed() {
  return uses != 0;
}

}  // namespace snip::vba

// These replace the operators of the run-time library, which would pull in exceptions. A compiler option says
// that this one may return null.
void* operator new(std::size_t size) {
  void* const memory = HeapAlloc(GetProcessHeap(), 0, size);
  if (memory != nullptr) snip::vba::LockModule();
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  HeapFree(GetProcessHeap(), 0, memory);
  snip::vba::UnlockModule();
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  operator delete(memory);
}
