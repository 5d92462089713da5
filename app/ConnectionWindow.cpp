#include "app/ConnectionWindow.h"

#include "ui/main/HostEnvironment.h"

namespace snip {
namespace {

constexpr UINT kShow = WM_APP + 1;
constexpr UINT kGone = WM_APP + 2;
constexpr UINT kUnload = WM_APP + 3;
constexpr UINT kWatch = WM_APP + 4;

constexpr UINT_PTR kWatchTimer = 1;
constexpr UINT kProcessCheckMs = 1000;
constexpr UINT kPingMs = 5000;
/// A process that ends is not reached any more for a while before its end is told.
constexpr DWORD kEndingMs = 500;

}  // namespace

ConnectionWindow::ConnectionWindow(Owner& owner) : owner_(owner) {
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

void ConnectionWindow::PostWatch() {
  PostMessageA(hWnd(), kWatch, 0, 0);
}

void ConnectionWindow::PostUnload() {
  PostMessageA(hWnd(), kUnload, 0, 0);
}

bool ConnectionWindow::FindGone() {
  const HWND self = hWnd();
  const bool gone = HostGone(kEndingMs);
  if (gone) PostMessageA(self, kGone, 0, 0);
  return gone;
}

bool ConnectionWindow::HostGone(DWORD patienceMs) const {
  if (process_) return WaitForSingleObject(process_.get(), patienceMs) == WAIT_OBJECT_0;
  try {
    owner_.PingHost();
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
      owner_.ShowMainWindow();
      return 0;
    case kUnload:
      owner_.UnloadMainWindow();
      return 0;
    case WM_TIMER: {
      // The environment may disconnect while it is asked, and this object go with it.
      const HWND self = hWnd();
      const bool watched = static_cast<bool>(process_);
      if (!watched) KillTimer(self, kWatchTimer);  // until the next look for the process has ended
      const bool gone = HostGone(0);
      if (gone || !watched) PostMessageA(self, gone ? kGone : kWatch, 0, 0);
      return 0;
    }
    case kWatch:
      owner_.WatchHost();
      return 0;
    case kGone:
      owner_.HostIsGone();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
