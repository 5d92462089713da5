#pragma once

#include <windows.h>
#include <objbase.h>

#include <functional>

#include "app/ServerLife.h"

namespace snip {

/// Offers a class to the clients of other processes for as long as it lives and `life` lets it.
class ComServer {
 public:
  /// Makes an object and hands out one interface of it.
  using Maker = std::function<HRESULT(REFIID, void**)>;

  ComServer(const CLSID& id, ServerLife& life, Maker maker);
  ~ComServer();
  ComServer(const ComServer&) = delete;
  ComServer& operator=(const ComServer&) = delete;

  /// Whether COM took the class.
  bool started() const { return cookie_ != 0; }

 private:
  void Revoke();

  ServerLife& life_;
  DWORD cookie_ = 0;
};

}  // namespace snip
