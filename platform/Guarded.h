#pragma once

#include <windows.h>

#include <new>
#include <type_traits>

namespace snip {

// No exception may unwind through the system's frames: what the system calls does its work in one of these.

/// The result of `action`, or `failed` when it threw, mostly because memory ran out.
template <class Result, class Action>
Result Guarded(Result failed, const Action& action) noexcept {
  try {
    return action();
  } catch (...) {
    return failed;
  }
}

/// The same for an action without a result.
template <class Action>
void Guarded(const Action& action) noexcept {
  try {
    action();
  } catch (...) {
    return;  // there is nobody to tell
  }
}

/// For a method of COM: the result of `action`, S_OK when it has none, E_OUTOFMEMORY or E_UNEXPECTED.
template <class Action>
HRESULT GuardedMethod(const Action& action) noexcept {
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<const Action&>>) {
      action();
      return S_OK;
    } else {
      return action();
    }
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace snip
