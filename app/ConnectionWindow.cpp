#include "app/ConnectionWindow.h"

#include <utility>

#include "ui/main/HostEnvironment.h"

namespace snip {
namespace {

constexpr UINT kShow = WM_APP + 1;
constexpr UINT kGone = WM_APP + 2;

constexpr UINT_PTR kWatchTimer = 1;
constexpr UINT kProcessCheckMs = 1000;
constexpr UINT kPingMs = 15000;

}  // namespace

ConnectionWindow::ConnectionWindow(Handlers handlers) : handlers_(std::move(handlers)) {
  Create({.className = "SnipstoreConnection", .parent = HWND_MESSAGE});
}

ConnectionWindow::~ConnectionWindow() {
  Destroy();
}

void ConnectionWindow::WatchProcessOf(HWND hostWindow) {
  DWORD id = 0;
  GetWindowThreadProcessId(hostWindow, &id);
  if (id != 0) process_.Reset(OpenProcess(SYNCHRONIZE, FALSE, id));
  SetTimer(hWnd(), kWatchTimer, process_ ? kProcessCheckMs : kPingMs, nullptr);
}

void ConnectionWindow::PostShow() {
  PostMessageA(hWnd(), kShow, 0, 0);
}

void ConnectionWindow::PostGone() {
  PostMessageA(hWnd(), kGone, 0, 0);
}

bool ConnectionWindow::HostGone() const {
  if (process_) return WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0;
  try {
    handlers_.ping();
    return false;
  } catch (const snip::HostGone&) {
    return true;
  } catch (const HostError&) {
    return false;
  }
}

LRESULT ConnectionWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case kShow:
      Run(handlers_.show);
      return 0;
    case WM_TIMER:
      if (HostGone()) Run(handlers_.gone);
      return 0;
    case kGone:
      Run(handlers_.gone);
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

/// A handler may end the connection and this window with it.
void ConnectionWindow::Run(std::function<void()> handler) {
  handler();
}

}  // namespace snip
