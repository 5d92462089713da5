#pragma once

#include <windows.h>

namespace snip {

/// Whether the user has chosen high contrast, where only the system's colours may be relied on.
inline bool HasHighContrast() {
  HIGHCONTRASTA contrast{};
  contrast.cbSize = sizeof contrast;
  SystemParametersInfoA(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0);
  return (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

}  // namespace snip
