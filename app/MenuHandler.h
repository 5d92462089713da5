#pragma once

#include <ocidl.h>

#include <functional>

#include "platform/Com.h"

namespace snip {

/// Receives the choices of an entry of the environment's menus as long as it lives.
class MenuHandler {
 public:
  /// `events` is the source of the entry's events, which has to be kept for them to go on. `click` is called
  /// while the environment waits. Throws `HostError`.
  MenuHandler(ComPtr<IUnknown> events, std::function<void()> click);
  ~MenuHandler();
  MenuHandler(const MenuHandler&) = delete;
  MenuHandler& operator=(const MenuHandler&) = delete;

 private:
  class Sink;

  ComPtr<IUnknown> events_;
  ComPtr<IConnectionPoint> point_;
  ComPtr<Sink> sink_;
  DWORD cookie_ = 0;
};

}  // namespace snip
