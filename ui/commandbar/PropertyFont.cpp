#include "ui/commandbar/PropertyFont.h"

#include <cmath>
#include <cstdlib>

namespace snip {
namespace {

constexpr double kTwipsPerPoint = 20.0;

}  // namespace

UniqueFont MakeFont(const FontProperty& font, const TwipsPerPixel& twips) {
  LOGFONTA description{};
  description.lfHeight = -static_cast<LONG>(std::lround(font.Size * kTwipsPerPoint / twips.y));
  description.lfWeight = font.Bold ? FW_BOLD : FW_NORMAL;
  description.lfItalic = font.Italic ? TRUE : FALSE;
  description.lfUnderline = font.Underline ? TRUE : FALSE;
  description.lfStrikeOut = font.Strikethrough ? TRUE : FALSE;
  description.lfCharSet = font.Charset;
  font.Name.copy(description.lfFaceName, sizeof description.lfFaceName - 1);
  return UniqueFont(CreateFontIndirectA(&description));
}

FontProperty FontPropertyOf(const LOGFONTA& font, const TwipsPerPixel& twips) {
  return {.Name = font.lfFaceName,
          .Size = std::abs(font.lfHeight) * twips.y / kTwipsPerPoint,
          .Bold = font.lfWeight >= FW_BOLD,
          .Italic = font.lfItalic != 0,
          .Underline = font.lfUnderline != 0,
          .Strikethrough = font.lfStrikeOut != 0,
          .Charset = font.lfCharSet};
}

}  // namespace snip
