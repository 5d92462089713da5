#pragma once

#include <windows.h>
#include <objbase.h>

#include "platform/Com.h"

namespace snip {

/// How long a busy environment is asked again, and after what pauses: an environment is busy while it shows a
/// dialog or compiles.
inline constexpr DWORD kBusyPatienceMs = 5000;
inline constexpr DWORD kBusyPauseMs = 200;

/// Has COM make calls again that a busy environment turns away, as long as it lives. Without it such a call
/// fails at once.
class MessageFilter {
 public:
  MessageFilter();
  ~MessageFilter();
  MessageFilter(const MessageFilter&) = delete;
  MessageFilter& operator=(const MessageFilter&) = delete;

  IMessageFilter* get() const { return filter_.get(); }

 private:
  ComPtr<IMessageFilter> filter_;
};

}  // namespace snip
