#pragma once

#include <windows.h>

#include <atomic>
#include <string>

#include "platform/Handle.h"

namespace snip {

inline void EndWait(HANDLE wait) {
  UnregisterWaitEx(wait, INVALID_HANDLE_VALUE);  // returns when nothing is called any more
}

/// Tells whether files of a folder have been written, named or removed. A thread of the system waits for it,
/// because asking again and again was a tenth of an idle program's requests to Wine's server.
class FolderChange {
 public:
  /// Watches this folder in place of the one before. One that the system does not watch never changes.
  void Watch(const std::string& folder);
  void Stop();
  /// Whether something has changed since the last time.
  bool Take();

 private:
  static void CALLBACK Changed(void* changed, BOOLEAN timedOut);
  void Wait();

  std::atomic<bool> changed_ = false;
  UniqueHandle<HANDLE, &FindCloseChangeNotification, -1> notification_;
  UniqueHandle<HANDLE, &EndWait> wait_;
};

}  // namespace snip
