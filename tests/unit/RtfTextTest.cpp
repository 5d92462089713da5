#include "ui/editor/RtfText.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

#include "ui/editor/CodeColours.h"

namespace snip::test {
namespace {

TEST(RtfText, EveryCharacterIsWrittenSoThatItComesBack) {
  const RtfLook look{.font = {.Name = "Courier {New}", .Size = 9.75, .Bold = true, .Strikethrough = true},
                     .colours = {.fore = 0x010203, .keyword = 0, .comment = 0, .string = 0},
                     .tabTwips = 0};
  const std::array<HueRun, 2> runs = {HueRun{0, 3, Hue::Keyword}, HueRun{4, 6, Hue::Comment}};
  const std::string rtf = RtfOf(u"End 'x \t{\\}\u20AC\u8000\x80\r", runs, look);
  EXPECT_NE(rtf.find("\\f0\\fnil\\fcharset1 Courier New;"), std::string::npos) << rtf;
  EXPECT_EQ(rtf.find("\\tx"), std::string::npos) << "no stops without a distance";
  EXPECT_NE(rtf.find("\\colortbl ;\\red3\\green2\\blue1;"), std::string::npos) << rtf;
  EXPECT_EQ(rtf.substr(rtf.find("\\plain")),
            "\\plain\\f0\\fs20\\b\\strike\\cf1 \\cf2 End \\cf3 'x\\cf1  \\tab "
            "\\{\\\\\\}\\u8364?\\u-32768?\\u128?\\par\n\\par\n}");
  EXPECT_FALSE(FitsRtf(u"a\u0001"));
  EXPECT_TRUE(FitsRtf(u"a\t\r\xE9"));
}

TEST(CodeColours, AreReadableOnAnyBackgroundOrTheForeColour) {
  int ownColours = 0;
  for (Rgb background = 0; background < 0x1000000; background += 0x0F1307) {
    const Rgb fore = Contrast(background, 0) > Contrast(background, 0xFFFFFF) ? 0 : 0xFFFFFF;
    const CodeColours colours = CodeColoursOn(background, fore);
    for (const Rgb color : {colours.keyword, colours.comment, colours.string}) {
      EXPECT_GE(Contrast(color, background), color == fore ? 1.0 : 4.5);
      ownColours += color == fore ? 0 : 1;
    }
  }
  EXPECT_GT(ownColours, 0);
  EXPECT_EQ(CodeColoursOn(0xFFFFFF, 0).keyword, 0x800000U);
  EXPECT_NE(CodeColoursOn(0, 0xFFFFFF).comment, 0xFFFFFFU);
  for (const auto& [color, contrast] : {std::pair(0xFF0000U, 8.59), {0x00FF00U, 1.37}, {0x0000FFU, 4.00}})
    EXPECT_NEAR(Contrast(color, 0xFFFFFF), contrast, 0.005) << color;
}

}  // namespace
}  // namespace snip::test
