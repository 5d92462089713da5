#include "ui/editor/RtfText.h"

#include <algorithm>
#include <cmath>

namespace snip {
namespace {

std::string Number(const char* word, int value) {
  return word + std::to_string(value);
}

void AppendChar(std::string& rtf, char16_t c) {
  if (c == u'\r') {
    rtf += "\\par\n";
  } else if (c == u'\t') {
    rtf += "\\tab ";
  } else if (c == u'\\' || c == u'{' || c == u'}') {
    rtf += '\\';
    rtf += static_cast<char>(c);
  } else if (c < 0x80) {
    rtf += static_cast<char>(c);
  } else {
    // By its Unicode number, a signed one of 16 bits, whatever the code page; the "?" is for readers that do
    // not know this.
    const int code = c < 0x8000 ? c : c - 0x10000;
    rtf += Number("\\u", code) + '?';
  }
}

std::string Header(const RtfLook& look) {
  constexpr double halfPoints = 2.0;
  std::string rtf =
      "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fnil" + Number("\\fcharset", look.font.Charset) + ' ';
  for (const char c : look.font.Name) {
    if (c != '\\' && c != '{' && c != '}' && c != ';') rtf += c;
  }
  rtf += ";}}{\\colortbl ;";
  for (const Rgb color :
       {look.colours.fore, look.colours.keyword, look.colours.comment, look.colours.string}) {
    rtf += Number("\\red", static_cast<int>(color & 0xFF)) +
           Number("\\green", static_cast<int>(color >> 8 & 0xFF)) +
           Number("\\blue", static_cast<int>(color >> 16 & 0xFF)) + ';';
  }
  rtf += "}\\uc1\\pard";
  for (int stop = 1; look.tabTwips > 0 && stop <= kTabStops; ++stop)
    rtf += Number("\\tx", stop * look.tabTwips);
  rtf += "\\plain\\f0" + Number("\\fs", static_cast<int>(std::lround(look.font.Size * halfPoints)));
  if (look.font.Bold) rtf += "\\b";
  if (look.font.Italic) rtf += "\\i";
  if (look.font.Underline) rtf += "\\ul";
  if (look.font.Strikethrough) rtf += "\\strike";
  return rtf;
}

/// A colour's number in the table of the header.
int TableIndex(Hue hue) {
  return static_cast<int>(hue == Hue::Unknown ? Hue::Fore : hue) + 1;
}

}  // namespace

bool FitsRtf(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t c) {
    return c == u'\t' || c == u'\r' || (c >= 0x20 && c != 0x7F && (c < 0x80 || c >= 0xA0));
  });
}

std::string RtfOf(std::u16string_view text, std::span<const HueRun> runs, const RtfLook& look,
                  RtfScope scope) {
  std::string rtf = Header(look);
  rtf.reserve(rtf.size() + text.size() + text.size() / 4);
  const auto color = [&rtf](Hue hue) { rtf += Number("\\cf", TableIndex(hue)) + ' '; };
  std::size_t place = 0;
  const auto appendUpTo = [&](std::size_t end) {
    for (; place < end; ++place) AppendChar(rtf, text[place]);
  };
  Hue current = Hue::Fore;
  color(current);
  const auto switchTo = [&](Hue hue) {
    if (hue != current) color(hue);
    current = hue;
  };
  for (const HueRun& run : runs) {
    const auto gap = text.substr(place, run.begin - place);
    if (gap.find_first_not_of(u" \t\r") != gap.npos) switchTo(Hue::Fore);
    appendUpTo(run.begin);
    switchTo(run.hue);
    appendUpTo(run.end);
  }
  if (place < text.size()) switchTo(Hue::Fore);
  appendUpTo(text.size());
  // Gives the last line its tab stops as well; a control takes it away again.
  if (scope == RtfScope::Whole) rtf += "\\par\n";
  return rtf + "}";
}

}  // namespace snip
