#include "platform/Fonts.h"

#include <cstring>

namespace snip {

UniqueFont MessageFont() {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return UniqueFont(CreateFontIndirectA(&metrics.lfMessageFont));
}

UniqueFont FontOfSize(const std::string& face, int points) {
  const WindowDC screen(nullptr);
  LOGFONTA description{};
  description.lfHeight = -MulDiv(points, GetDeviceCaps(screen.get(), LOGPIXELSY), 72);
  description.lfCharSet = DEFAULT_CHARSET;
  std::strncpy(description.lfFaceName, face.c_str(), sizeof description.lfFaceName - 1);
  return UniqueFont(CreateFontIndirectA(&description));
}

Size CharacterSize(HFONT font) {
  // The average over both alphabets, as the platform defines dialog units for other fonts than its own.
  constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int count = sizeof letters - 1;
  const WindowDC screen(nullptr);
  const SelectedObject selected(screen.get(), font);
  SIZE size{};
  GetTextExtentPoint32A(screen.get(), letters, count, &size);
  return {static_cast<int>((size.cx + count / 2) / count), static_cast<int>(size.cy)};
}

Size WrappedTextSize(HFONT font, const std::string& text, int width) {
  const WindowDC screen(nullptr);
  const SelectedObject selected(screen.get(), font);
  RECT area{0, 0, width, 0};
  DrawTextA(screen.get(), text.data(), static_cast<int>(text.size()), &area,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
  return {static_cast<int>(area.right), static_cast<int>(area.bottom)};
}

}  // namespace snip
