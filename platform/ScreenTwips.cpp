#include "platform/ScreenTwips.h"

#include "platform/Handle.h"
#include "platform/Rects.h"

namespace snip {

TwipsPerPixel ScreenTwips() {
  const MeasuringDC screen;
  return TwipsPerPixel::FromDpi(GetDeviceCaps(screen.get(), LOGPIXELSX),
                                GetDeviceCaps(screen.get(), LOGPIXELSY));
}

Rect ScreenAt(Point point) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromPoint(ToPOINT(point), MONITOR_DEFAULTTONEAREST), &monitor);
  return ToRect(monitor.rcMonitor);
}

}  // namespace snip
