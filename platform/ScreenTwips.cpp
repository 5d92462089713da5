#include "platform/ScreenTwips.h"

#include "platform/Handle.h"

namespace snip {

TwipsPerPixel ScreenTwips() {
  const WindowDC screen(nullptr);
  return TwipsPerPixel::FromDpi(GetDeviceCaps(screen.get(), LOGPIXELSX),
                                GetDeviceCaps(screen.get(), LOGPIXELSY));
}

Rect ScreenAt(Point point) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromPoint({point.x, point.y}, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& area = monitor.rcMonitor;
  return {area.left, area.top, area.right - area.left, area.bottom - area.top};
}

}  // namespace snip
