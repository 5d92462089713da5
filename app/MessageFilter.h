#pragma once

#include <windows.h>
#include <objbase.h>

#include "platform/Com.h"

namespace snip {

/// Has calls that a busy environment turns away made again, for a few seconds, as long as it lives: an
/// environment is busy while it shows a dialog or compiles. Without it such a call fails at once.
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
