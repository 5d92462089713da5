#include "platform/ScreenTwips.h"

#include "platform/Handle.h"

namespace snip {

TwipsPerPixel ScreenTwips() {
  const WindowDC screen(nullptr);
  return TwipsPerPixel::FromDpi(GetDeviceCaps(screen.get(), LOGPIXELSX),
                                GetDeviceCaps(screen.get(), LOGPIXELSY));
}

}  // namespace snip
