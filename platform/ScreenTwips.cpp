#include "platform/ScreenTwips.h"

#include "platform/Handle.h"
#include "platform/Rects.h"

namespace snip {

TwipsPerPixel ScreenTwips() {
  const MeasuringDC dc;
  const auto dpi = [&dc](int axis) {
    const int told = GetDeviceCaps(dc.get(), axis);
    return told > 0 ? told : 96;  // no device context is left to be had
  };
  return TwipsPerPixel::FromDpi(dpi(LOGPIXELSX), dpi(LOGPIXELSY));
}

Rect ScreenAt(Point point) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromPoint(ToPOINT(point), MONITOR_DEFAULTTONEAREST), &monitor);
  return ToRect(monitor.rcMonitor);
}

}  // namespace snip
