#include "platform/Fonts.h"

#include <cmath>
#include <utility>

namespace snip {

namespace {

LOGFONTA MessageFontDescription() {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return metrics.lfMessageFont;
}

void SetFace(LOGFONTA& description, const std::string& face) {
  description.lfFaceName[face.copy(description.lfFaceName, LF_FACESIZE - 1)] = '\0';
}

}  // namespace

UniqueFont MessageFont() {
  const LOGFONTA description = MessageFontDescription();
  return UniqueFont(CreateFontIndirectA(&description));
}

UniqueFont MessageFontInFace(const std::string& face) {
  LOGFONTA description = MessageFontDescription();
  SetFace(description, face);
  UniqueFont font(CreateFontIndirectA(&description));
  const MeasuringDC dc;
  const SelectedObject selected(dc.get(), font.get());
  char taken[LF_FACESIZE]{};
  GetTextFaceA(dc.get(), sizeof taken, taken);
  return lstrcmpiA(taken, face.c_str()) == 0 ? std::move(font) : MessageFont();
}

UniqueFont FontOfSize(const std::string& face, double points) {
  const MeasuringDC dc;
  LOGFONTA description{};
  description.lfHeight = -static_cast<LONG>(std::lround(points * GetDeviceCaps(dc.get(), LOGPIXELSY) / 72));
  description.lfCharSet = DEFAULT_CHARSET;
  SetFace(description, face);
  return UniqueFont(CreateFontIndirectA(&description));
}

Size CharacterSize(HFONT font) {
  // The average over both alphabets, as the platform defines dialog units for other fonts than its own.
  constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  constexpr int count = sizeof letters - 1;
  const Size all = TextSize(font, letters);
  return {(all.width + count / 2) / count, all.height};
}

Size TextSize(HFONT font, std::string_view text) {
  const MeasuringDC dc;
  const SelectedObject selected(dc.get(), font);
  SIZE size{};
  GetTextExtentPoint32A(dc.get(), text.data(), static_cast<int>(text.size()), &size);
  return {static_cast<int>(size.cx), static_cast<int>(size.cy)};
}

HFONT FontOf(HWND control) {
  return reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0));
}

Size WrappedTextSize(HFONT font, const std::string& text, int width) {
  const MeasuringDC dc;
  const SelectedObject selected(dc.get(), font);
  RECT area{0, 0, width, 0};
  DrawTextA(dc.get(), text.data(), static_cast<int>(text.size()), &area,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
  return {static_cast<int>(area.right), static_cast<int>(area.bottom)};
}

}  // namespace snip
