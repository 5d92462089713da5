#include "ui/commandbar/CommandBarProperties.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "ui/commandbar/TextPropertyBag.h"

namespace snip::test {
namespace {

const FontProperty kAmbient{.Name = "Tahoma", .Size = 8};

/// Keeps what was written, in order, with the defaults it was written with.
class RecordingBag : public PropertyBag {
 public:
  PropertyValue Read(std::string_view name, const PropertyValue& defaultValue) const override {
    const auto found = stored.find(std::string(name));
    return found != stored.end() ? found->second : defaultValue;
  }
  void Write(std::string_view name, const PropertyValue& value, const PropertyValue& defaultValue) override {
    names.emplace_back(name);
    stored[std::string(name)] = value;
    defaults[std::string(name)] = defaultValue;
  }

  std::vector<std::string> names;
  std::map<std::string, PropertyValue> stored, defaults;
};

CommandBarProperties OthersThanInitial() {
  return {.Enabled = false,
          .Font = {.Name = "Courier New", .Size = 9.75, .Bold = true},
          .BorderStyle = 0,
          .MaskColor = {0x8000000F},
          .Dockable = true,
          .SoundEffects = false,
          .MouseIcon = {"C:\\Cursors\\hand.cur"},
          .MousePointer = 99,
          .OLEDropMode = -1};
}

TEST(CommandBarPropertiesTest, ANewBarHasTheInitialValues) {
  const CommandBarProperties initial = CommandBarProperties::Initial(kAmbient);
  EXPECT_TRUE(initial.Enabled);
  EXPECT_EQ(initial.Font, kAmbient);
  EXPECT_EQ(initial.BorderStyle, 1);
  EXPECT_EQ(initial.MaskColor, ColorProperty{0xC0C0C0});
  EXPECT_FALSE(initial.Dockable);
  EXPECT_TRUE(initial.SoundEffects);
  EXPECT_EQ(initial.MouseIcon, PictureProperty{});
  EXPECT_EQ(initial.MousePointer, 0);
  EXPECT_EQ(initial.OLEDropMode, 0);
}

TEST(CommandBarPropertiesTest, AnEmptyBagGivesANewBar) {
  EXPECT_EQ(CommandBarProperties::Read(RecordingBag(), kAmbient), CommandBarProperties::Initial(kAmbient));
}

TEST(CommandBarPropertiesTest, PropertiesAreStoredUnderTheirNamesWithTheirDefaults) {
  RecordingBag bag;
  OthersThanInitial().Write(bag, kAmbient);
  EXPECT_EQ(bag.names,
            (std::vector<std::string>{"Enabled", "Font", "BorderStyle", "MaskColor", "Dockable",
                                      "SoundEffects", "MouseIcon", "MousePointer", "OLEDropMode"}));
  EXPECT_EQ(bag.defaults, (std::map<std::string, PropertyValue>{{"Enabled", true},
                                                                {"Font", kAmbient},
                                                                {"BorderStyle", std::int16_t{1}},
                                                                {"MaskColor", ColorProperty{0xC0C0C0}},
                                                                {"Dockable", false},
                                                                {"SoundEffects", true},
                                                                {"MouseIcon", PictureProperty{}},
                                                                {"MousePointer", std::int16_t{0}},
                                                                {"OLEDropMode", std::int16_t{0}}}));
  EXPECT_EQ(bag.stored, (std::map<std::string, PropertyValue>{
                            {"Enabled", false},
                            {"Font", FontProperty{.Name = "Courier New", .Size = 9.75, .Bold = true}},
                            {"BorderStyle", std::int16_t{0}},
                            {"MaskColor", ColorProperty{0x8000000F}},
                            {"Dockable", true},
                            {"SoundEffects", false},
                            {"MouseIcon", PictureProperty{"C:\\Cursors\\hand.cur"}},
                            {"MousePointer", std::int16_t{99}},
                            {"OLEDropMode", std::int16_t{-1}}}));
  EXPECT_EQ(CommandBarProperties::Read(bag, kAmbient), OthersThanInitial());
}

TEST(CommandBarPropertiesTest, EachPropertyIsReadByItself) {
  RecordingBag all;
  OthersThanInitial().Write(all, kAmbient);
  for (const auto& [name, value] : all.stored) {
    SCOPED_TRACE(name);
    RecordingBag one;
    one.stored[name] = value;
    RecordingBag readBack;
    CommandBarProperties::Read(one, kAmbient).Write(readBack, kAmbient);
    for (const auto& [readName, readValue] : readBack.stored) {
      EXPECT_EQ(readValue == readBack.defaults[readName], readName != name) << readName;
    }
  }
}

TEST(CommandBarPropertiesTest, AValueOfAnotherTypeIsAsInANewBar) {
  RecordingBag bag;
  bag.stored = {{"Enabled", std::int16_t{0}}, {"BorderStyle", false}, {"MaskColor", std::int16_t{5}}};
  EXPECT_EQ(CommandBarProperties::Read(bag, kAmbient), CommandBarProperties::Initial(kAmbient));
}

TEST(CommandBarPropertiesTest, AsTextABarHoldsWhatIsNotInitial) {
  TextPropertyBag bag;
  CommandBarProperties properties = CommandBarProperties::Initial(kAmbient);
  properties.Write(bag, kAmbient);
  EXPECT_EQ(bag.Text(), "");

  OthersThanInitial().Write(bag, kAmbient);
  EXPECT_EQ(bag.Text(),
            "Enabled = False\r\n"
            "Font = \"Courier New\", 9.75, Bold\r\n"
            "BorderStyle = 0\r\n"
            "MaskColor = &H8000000F\r\n"
            "Dockable = True\r\n"
            "SoundEffects = False\r\n"
            "MouseIcon = \"C:\\\\Cursors\\\\hand.cur\"\r\n"
            "MousePointer = 99\r\n"
            "OLEDropMode = -1\r\n");

  properties = OthersThanInitial();
  properties.MousePointer = 0;
  properties.Write(bag, kAmbient);
  EXPECT_EQ(bag.Text().find("MousePointer"), std::string::npos);
  EXPECT_EQ(CommandBarProperties::Read(bag, kAmbient), properties);
}

TEST(CommandBarPropertiesTest, TheAmbientFontIsTheDefaultAtTheTime) {
  TextPropertyBag bag;
  CommandBarProperties::Initial(kAmbient).Write(bag, kAmbient);
  const FontProperty another{.Name = "Arial", .Size = 12};
  EXPECT_EQ(CommandBarProperties::Read(bag, another).Font, another);
}

TEST(CommandBarPropertiesTest, ABarAsTextIsCheckedForTheTypesOfItsProperties) {
  const std::vector<NamedProperty> known = CommandBarProperties::Initial(kAmbient).All();
  const auto parsed = TextPropertyBag::Parse("dockable = true\r\nSomethingElse = 4\r\n", known);
  ASSERT_TRUE(std::holds_alternative<TextPropertyBag>(parsed));
  EXPECT_TRUE(CommandBarProperties::Read(std::get<TextPropertyBag>(parsed), kAmbient).Dockable);

  for (const std::string line :
       {"Enabled = 1", "Font = \"Arial\"", "BorderStyle = True", "MaskColor = 0", "Dockable = -1",
        "SoundEffects = 0", "MouseIcon = 1", "MousePointer = &H1", "OLEDropMode = \"\""}) {
    SCOPED_TRACE(line);
    const auto result = TextPropertyBag::Parse("Other = 1\r\n" + line, known);
    const auto* error = std::get_if<PropertyTextError>(&result);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->line, 2);
  }
}

}  // namespace
}  // namespace snip::test
