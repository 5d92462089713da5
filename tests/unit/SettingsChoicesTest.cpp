#include "ui/dialogs/SettingsChoices.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/unit/FakeSettingsTarget.h"

namespace snip::test {
namespace {

TEST(SettingsChoicesTest, OnlyAFixedNameIsSelected) {
  for (const auto& [font, selected, count] :
       {std::tuple("Arial", 0, 6U), std::tuple("Verdana", 5, 6U), std::tuple("verdana", -1, 7U),
        std::tuple("Consolas", -1, 7U)}) {
    const FontNames names = FontNamesFor(font);
    EXPECT_EQ(names.selected, selected) << font;
    EXPECT_EQ(names.entries.size(), count) << font;
    EXPECT_EQ(names.entries.back(), count == 7 ? font : "Verdana");
  }
}

TEST(SettingsChoicesTest, SizesThatNoFontHasAreRefused) {
  for (const double size : {0.5, 9.75, 2048.0}) EXPECT_TRUE(IsFontSize(size)) << size;
  for (const double size : {0.0, -1.0, 2049.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(IsFontSize(size)) << size;
  }
}

TEST(SettingsChoicesTest, EachValueIsSavedRightAfterItIsApplied) {
  FakeSettingsTarget target;
  const auto save = [&](const char* name, const std::string& text) {
    target.log.push_back(std::string(name) + "=" + text);
  };
  ApplySettings({.allowMenuDrag = true, .minimizeOnView = true}, target, save);
  EXPECT_EQ(target.log, (std::vector<std::string>{"font", "FontName=Courier New", "FontSize=9.75", "drag",
                                                  "AllowMenuDrag=-1", "sounds", "UseSounds=0", "minimize",
                                                  "MinimizeOnView=-1", "tips", "SnippetTips=0"}));
  EXPECT_EQ(target.font, (FontProperty{.Name = "Courier New", .Size = 9.75}));
  EXPECT_TRUE(target.menuDrag && target.minimize);
  EXPECT_FALSE(target.sounds || target.tips);
}

}  // namespace
}  // namespace snip::test
