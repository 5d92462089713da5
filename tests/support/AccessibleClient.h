#pragma once

#include <windows.h>
#include <objbase.h>
#include <oleacc.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/Com.h"
#include "platform/Geometry.h"

namespace snip::test {

/// What a client is told of one child.
struct AccessibleChild {
  LONG id = 0;
  std::string name;
  LONG role = 0;
  LONG state = 0;
  std::string shortcut;
  std::string defaultAction;
  Rect place;  ///< In pixels of the screen.

  bool Has(LONG states) const { return (state & states) == states; }
};

/// A window's client area as a screen reader sees it. Its thread must be a COM apartment; when the window is
/// another thread's, that one has to answer messages meanwhile.
class AccessibleClient {
 public:
  /// Asks the window. Without an answer of its own the system answers for it.
  explicit AccessibleClient(HWND window);

  IAccessible* get() const { return object_.get(); }
  IAccessible* operator->() const { return object_.get(); }

  AccessibleChild Child(LONG id) const;
  /// In order.
  std::vector<AccessibleChild> Children() const;
  /// Does the default action of the first child with this name; false when there is none or it refuses.
  bool Press(const std::string& name) const;

  /// Lets go of the window.
  void Reset() { object_.Reset(); }

 private:
  ComPtr<IAccessible> object_;
};

/// What is told of each child: its name, shortcut and default action, with ", " between them, its role and
/// its state.
std::vector<std::tuple<std::string, LONG, LONG>> Told(const std::vector<AccessibleChild>& children);

using WinEvents = std::vector<std::pair<DWORD, LONG>>;  ///< Event and child.

/// Hears what the client areas of a class's windows announce in this thread. The system's callback has no
/// parameter for its owner, so there is only one recorder at a time.
class WinEventRecorder {
 public:
  explicit WinEventRecorder(const std::string& className);
  ~WinEventRecorder() { UnhookWinEvent(hook_); }
  WinEventRecorder(const WinEventRecorder&) = delete;
  WinEventRecorder& operator=(const WinEventRecorder&) = delete;

  const WinEvents& Heard() const;

 private:
  HWINEVENTHOOK hook_;
};

}  // namespace snip::test
