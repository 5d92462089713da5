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

// In place of the run-time library's, which bring exceptions along. The compiler has been told that this one
// may answer with null.
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
