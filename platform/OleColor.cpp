#include "platform/OleColor.h"

namespace snip {

COLORREF TranslateColor(OLE_COLOR color) {
  COLORREF translated = 0;
  // Without a palette: a palette index stays one and is looked up in the device context it is used in.
  if (SUCCEEDED(OleTranslateColor(color, nullptr, &translated))) return translated;
  return color & 0xFFFFFFU;
}

}  // namespace snip
