#include "ui/editor/RichEditFormat.h"

#include <cmath>

#include "ui/editor/RtfText.h"

namespace snip {
namespace {

LONG TwipsOf(const FontProperty& font) {
  constexpr double twipsPerPoint = 20;
  return std::lround(font.Size * twipsPerPoint);
}

}  // namespace

void SetRichEditFormat(HWND control, const FontProperty& font, COLORREF color, DWORD mask) {
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  format.dwMask = mask;
  format.yHeight = TwipsOf(font);
  format.bCharSet = font.Charset;
  format.crTextColor = color;
  format.dwEffects = (font.Bold ? CFE_BOLD : 0U) | (font.Italic ? CFE_ITALIC : 0U) |
                     (font.Underline ? CFE_UNDERLINE : 0U) | (font.Strikethrough ? CFE_STRIKEOUT : 0U);
  font.Name.copy(format.szFaceName, sizeof format.szFaceName - 1);
  for (const int part : {SCF_DEFAULT, SCF_ALL}) {
    SendMessageA(control, EM_SETCHARFORMAT, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(&format));
  }
}

void SetRichEditSize(HWND control, const FontProperty& font, int scope) {
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  format.dwMask = CFM_SIZE;
  format.yHeight = TwipsOf(font);
  SendMessageA(control, EM_SETCHARFORMAT, static_cast<WPARAM>(scope), reinterpret_cast<LPARAM>(&format));
}

void SetRichEditDefaultColor(HWND control, COLORREF color) {
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  format.dwMask = CFM_COLOR;
  format.crTextColor = color;
  SendMessageA(control, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
}

void SetRichEditTabs(HWND control, int distance) {
  PARAFORMAT format{};
  format.cbSize = sizeof format;
  format.dwMask = PFM_TABSTOPS;
  format.cTabCount = kTabStops;
  for (int stop = 0; stop < kTabStops; ++stop) format.rgxTabs[stop] = (stop + 1) * distance;
  SendMessageA(control, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
}

void ChangeRichEditFont(HWND control, const FontProperty& font, int tabDistance) {
  const LRESULT firstLine = SendMessageA(control, EM_GETFIRSTVISIBLELINE, 0, 0);
  CHARRANGE selection{};
  SendMessageA(control, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  SetRichEditFormat(control, font, 0, kFontFormat);
  CHARRANGE all{0, -1};
  SendMessageA(control, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&all));
  SetRichEditTabs(control, tabDistance);
  SendMessageA(control, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  const LRESULT shownLine = SendMessageA(control, EM_GETFIRSTVISIBLELINE, 0, 0);
  SendMessageA(control, EM_LINESCROLL, 0, firstLine - shownLine);
}

}  // namespace snip
