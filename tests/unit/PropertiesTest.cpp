#include <gtest/gtest.h>

#include "tests/unit/MemoryBag.h"
#include "ui/commandbar/CommandBarProperties.h"

namespace snip::test {
namespace {

const FontProperty kAmbient{.Name = "Tahoma", .Size = 8};

TEST(Properties, AreKeptUnderTheirNamesWithTheirDefaults) {
  const CommandBarProperties changed{.Enabled = false,
                                     .Font = {.Name = "Courier New", .Size = 9.75, .Bold = true},
                                     .BorderStyle = 0,
                                     .MaskColor = {0x8000000F},
                                     .Dockable = true,
                                     .SoundEffects = false,
                                     .MouseIcon = {"hand.cur"},
                                     .MousePointer = 99,
                                     .OLEDropMode = -1};
  MemoryBag bag;
  changed.Write(bag, kAmbient);
  const std::int16_t none = 0;
  const decltype(bag.stored) expected = {{"Enabled", {false, true}},
                                         {"Font", {changed.Font, kAmbient}},
                                         {"BorderStyle", {none, std::int16_t{1}}},
                                         {"MaskColor", {changed.MaskColor, ColorProperty{0xC0C0C0}}},
                                         {"Dockable", {true, false}},
                                         {"SoundEffects", {false, true}},
                                         {"MouseIcon", {changed.MouseIcon, PictureProperty{}}},
                                         {"MousePointer", {std::int16_t{99}, none}},
                                         {"OLEDropMode", {std::int16_t{-1}, none}}};
  EXPECT_EQ(bag.stored, expected);
  EXPECT_EQ(CommandBarProperties::Read(bag, kAmbient), changed);
  EXPECT_EQ(CommandBarProperties::Read(MemoryBag(), kAmbient), CommandBarProperties::Initial(kAmbient));
  // One that is missing, or of another type than it has to be, is as in a new bar, and no other is.
  for (const auto& [name, values] : expected) {
    SCOPED_TRACE(name);
    MemoryBag missing = bag, other = bag, written;
    missing.stored.erase(name);
    other.stored[name].first = ColorProperty{};
    if (name == "MaskColor") other.stored[name].first = true;
    for (const MemoryBag& read : {missing, other}) {
      CommandBarProperties::Read(read, kAmbient).Write(written, kAmbient);
      for (const auto& [each, pair] : written.stored) {
        EXPECT_EQ(pair.first, each == name ? values.second : expected.at(each).first) << each;
      }
    }
  }
}

}  // namespace
}  // namespace snip::test
