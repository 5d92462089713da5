#include "ui/commandbar/SystemSounds.h"

#include <gtest/gtest.h>

namespace snip::test {
namespace {

TEST(SystemSoundsTest, EventsHaveTheirNumbers) {
  EXPECT_EQ(SystemSoundEventName(SystemSound::kMenuCommand), "MenuCommand");
  EXPECT_EQ(SystemSoundEventName(SystemSound::kMenuPopup), "MenuPopup");
  EXPECT_EQ(SystemSoundEventName(SystemSound::kAsterisk), "SystemAsterisk");
  EXPECT_EQ(SystemSoundEventName(SystemSound::kExclamation), "SystemExclamation");
  EXPECT_EQ(SystemSoundEventName(SystemSound::kHand), "SystemHand");
  EXPECT_EQ(SystemSoundEventName(SystemSound::kQuestion), "SystemQuestion");
  EXPECT_EQ(SystemSoundEventName(0), "Buddy In");
  EXPECT_EQ(SystemSoundEventName(21), "You've Got Mail");
}

TEST(SystemSoundsTest, NumbersOutsideTheTableHaveNoName) {
  for (const int index : {22, 23, 32767, -1, -22, -32768}) {
    EXPECT_EQ(SystemSoundEventName(static_cast<std::int16_t>(index)), "") << index;
  }
}

TEST(SystemSoundsTest, KeysOfBothSchemes) {
  EXPECT_EQ(DefaultSchemeSoundKey("MenuPopup"), "AppEvents\\Schemes\\Apps\\.Default\\MenuPopup\\.Current");
  EXPECT_EQ(DefaultSchemeSoundKey(""), "AppEvents\\Schemes\\Apps\\.Default\\\\.Current");
  EXPECT_EQ(OfficeSchemeSoundKey("ToolbarClick"),
            "AppEvents\\Schemes\\Apps\\Office97\\Office97-ToolbarClick\\.Current");
}

}  // namespace
}  // namespace snip::test
