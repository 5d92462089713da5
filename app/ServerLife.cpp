#include "app/ServerLife.h"

#include <algorithm>

#include "platform/Com.h"

namespace snip {
namespace {

constexpr UINT_PTR kIdleTimer = 1;
constexpr UINT_PTR kLateTimer = 2;
constexpr UINT kRelease = WM_APP + 1;  ///< lParam: the object

}  // namespace

ServerLife::ServerLife(UINT idleMs, UINT lateMs) : idleMs_(idleMs), lateMs_(lateMs) {
  Create({.className = "SnipstoreServerLife", .parent = HWND_MESSAGE});
  AwaitConnection();
}

ServerLife::~ServerLife() {
  Destroy();
}

ServerLife::Use::Use(ServerLife& life, IUnknown* object) : life_(life), object_(object) {
  life_.objects_.push_back(object_);
  life_.Lock();
}

ServerLife::Use::~Use() {
  life_.objects_.erase(std::find(life_.objects_.begin(), life_.objects_.end(), object_));
  life_.Unlock();
}

bool ServerLife::Use::PassRelease() const {
  if (GetCurrentThreadId() == life_.thread_) return false;
  // When the window has gone the process is about to end, and the object with it.
  PostMessageA(life_.hWnd(), kRelease, 0, reinterpret_cast<LPARAM>(object_));
  return true;
}

ServerLife::Connection::Connection(ServerLife& life) : life_(life) {
  ++life_.connections_;
  life_.abandoned_ = false;
  KillTimer(life_.hWnd(), kIdleTimer);
}

ServerLife::Connection::~Connection() {
  if (--life_.connections_ == 0) life_.AwaitConnection();
}

void ServerLife::Lock() {
  ++uses_;
  CoAddRefServerProcess();
  KillTimer(hWnd(), kLateTimer);
  if (connections_ == 0) AwaitConnection();  // each client has all the time to connect
}

void ServerLife::Unlock() {
  --uses_;
  if (CoReleaseServerProcess() == 0) AwaitLateClients();
}

void ServerLife::DisconnectObjects() {
  std::vector<ComPtr<IUnknown>> left;
  for (IUnknown* object : objects_) left.push_back(ComPtr<IUnknown>::Share(object));
  for (const auto& object : left) CoDisconnectObject(object.get(), 0);
}

void ServerLife::AwaitConnection() {
  SetTimer(hWnd(), kIdleTimer, idleMs_, nullptr);
}

/// A client that was given the class a moment ago comes with its first call only now.
void ServerLife::AwaitLateClients() {
  Withdraw();
  SetTimer(hWnd(), kLateTimer, lateMs_, nullptr);
}

void ServerLife::Withdraw() const {
  if (withdraw_) withdraw_();
}

LRESULT ServerLife::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kRelease) {
    reinterpret_cast<IUnknown*>(lParam)->Release();
    return 0;
  }
  if (message != WM_TIMER) return Default(message, wParam, lParam);
  if (wParam == kLateTimer) {
    KillTimer(hWnd(), kLateTimer);
    if (uses_ == 0) PostQuitMessage(0);
    return 0;
  }
  if (connections_ != 0) return 0;  // it was due already when the environment came
  abandoned_ = true;
  Withdraw();
  KillTimer(hWnd(), kIdleTimer);
  PostQuitMessage(0);
  return 0;
}

}  // namespace snip
