#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "settings/Settings.h"
#include "settings/SettingsText.h"
#include "tests/unit/FakeSettingsTarget.h"
#include "tests/unit/Script.h"
#include "ui/dialogs/SettingsChoices.h"
#include "ui/find/HotKey.h"

namespace snip::test {
namespace {

using Values = std::map<std::string, std::string>;

Settings Read(const Values& values) {
  return ReadSettings([&](const char* section, const char* name) {
    const auto found = values.find(std::string(section) + "\\" + name);
    return found == values.end() ? std::string() : found->second;
  });
}

TEST(Settings, AnEmptyStoreGivesTheDefaults) {
  EXPECT_EQ(Read({}), Settings());
  const Settings first;
  EXPECT_FALSE(first.KeepOnTop);
  EXPECT_TRUE(first.switches[Switch::SnippetTips] && first.switches[Switch::AllowMenuDrag]);
  EXPECT_EQ(first.ColorSyntax, 1);
  EXPECT_EQ(first.Top, 0);
  EXPECT_FALSE(first.Width || first.Height || first.FontName || first.FontSize);
}

TEST(Settings, TheTextsOfSwitches) {
  struct Case {
    const char* text;
    bool pin;   ///< KeepOnTop
    bool flag;  ///< The four check boxes.
  };
  for (const auto& [text, pin, flag] : std::vector<Case>{{"1", true, true},
                                                         {"-1", false, true},
                                                         {"0", false, false},
                                                         {"", false, true},
                                                         {"True", false, true},
                                                         {"False", false, true},
                                                         {"no", false, true},
                                                         {"00", false, true}}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(Read({{"Settings\\KeepOnTop", text}}).KeepOnTop, pin);
    for (const auto& [which, name] : {std::pair(Switch::SnippetTips, "SnippetTips"),
                                      {Switch::MinimizeOnView, "MinimizeOnView"},
                                      {Switch::UseSounds, "UseSounds"},
                                      {Switch::AllowMenuDrag, "AllowMenuDrag"}}) {
      EXPECT_EQ(Read({{std::string("Settings\\") + name, text}}).switches[which], flag) << name;
    }
  }
  EXPECT_EQ(FlagText(true), "-1");
  EXPECT_EQ(FlagText(false), "0");
}

TEST(Settings, TheTextsOfNumbers) {
  struct Case {
    const char* text;
    double value;
  };
  for (const auto& [text, value] : std::vector<Case>{
           {"10", 10}, {"9.75", 9.75}, {"  12x", 12}, {"-3.5 ", -3.5}, {"+4", 4},  {".5", 0.5},
           {"5.", 5},  {"abc", 0},     {"", 0},       {"   ", 0},      {"-", 0},   {"--1", 0},
           {"- 1", 0}, {"inf", 0},     {"nan", 0},    {"1e2", 100},    {"1e", 1},  {"1.2.3", 1.2},
           {"+-1", 0}, {"1+1", 1},     {"1e999", 0},  {"1,5", 1},      {"0x10", 0}}) {
    EXPECT_EQ(Val(text), value) << text;
  }
  for (const auto& [value, rounded] :
       std::vector<std::pair<double, std::int32_t>>{{0.5, 0},
                                                    {1.5, 2},
                                                    {2.5, 2},
                                                    {-0.5, 0},
                                                    {-1.5, -2},
                                                    {7.49, 7},
                                                    {1e300, 2147483647},
                                                    {-1e300, -2147483647 - 1}}) {
    EXPECT_EQ(RoundHalfToEven(value), rounded) << value;
  }
  for (const auto& [value, text] : std::vector<std::pair<double, const char*>>{{10, "10"},
                                                                               {9.75, "9.75"},
                                                                               {0, "0"},
                                                                               {-45, "-45"},
                                                                               {0.1, "0.1"},
                                                                               {-0.015625, "-0.015625"},
                                                                               {16000000, "16000000"}}) {
    EXPECT_EQ(NumberText(value), text);
  }
}

TEST(Settings, NumbersThatAreStored) {
  EXPECT_EQ(Read({{"Settings\\ColorSyntax", "0"}}).ColorSyntax, 0);
  EXPECT_EQ(Read({{"Settings\\ColorSyntax", "x"}}).ColorSyntax, 0);
  EXPECT_EQ(Read({{"Settings\\ColorSyntax", "1.5"}}).ColorSyntax, 2);
  EXPECT_EQ(Read({{"Settings\\FontSize", "9.75"}}).FontSize, 9.75);
  EXPECT_EQ(Read({{"Settings\\FontSize", "large"}}).FontSize, 0.0);
  EXPECT_EQ(Read({{"Settings\\FontName", "Arial"}}).FontName, "Arial");
  EXPECT_EQ(Read({{"Position\\Top", "-600.5"}}).Top, -600.5);
  EXPECT_EQ(Read({{"Position\\Left", "there"}}).Left, 0);
  EXPECT_LT(Read({{"Position\\Left", "1e30"}}).Left, 1e6);
  for (const char* extent : {"Width", "Height"}) {
    const auto size = [&](const char* text) {
      const Settings settings = Read({{std::string("Position\\") + extent, text}});
      return extent == std::string("Width") ? settings.Width : settings.Height;
    };
    EXPECT_EQ(size("150"), std::nullopt);
    EXPECT_EQ(size("150.5"), std::nullopt);
    EXPECT_EQ(size("151"), 151);
    EXPECT_EQ(size("-800"), std::nullopt);
    EXPECT_EQ(size("abc"), std::nullopt);
  }
}

TEST(Settings, WhatTheWindowStoresReadsBack) {
  std::vector<std::string> order;
  Values values;
  SaveWindowSettings({.KeepOnTop = 1,
                      .ColorSyntax = 0,
                      .Top = -150,
                      .Left = 7.5,
                      .Width = 10800,
                      .Height = 7200,
                      .LeftPaneWidth = 3000,
                      .DescriptionHeight = 800},
                     [&](const char* section, const char* name, const std::string& text) {
                       order.emplace_back(name);
                       values[std::string(section) + "\\" + name] = text;
                     });
  EXPECT_EQ(order, (std::vector<std::string>{"KeepOnTop", "ColorSyntax", "Top", "Left", "Width", "Height",
                                             "LeftPane", "Description"}));
  Settings expected;
  expected.KeepOnTop = true;
  expected.ColorSyntax = 0;
  expected.Top = -150;
  expected.Left = 7.5;
  expected.Width = 10800;
  expected.Height = 7200;
  expected.LeftPaneWidth = 3000;
  expected.DescriptionHeight = 800;
  EXPECT_EQ(Read(values), expected);
}

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
  SettingsChoices choices;
  choices.switches.Set(Switch::SnippetTips, false);
  ApplySettings(choices, target, save);
  EXPECT_EQ(target.log, (std::vector<std::string>{"font", "FontName=Courier New", "FontSize=9.75", "switch 3",
                                                  "AllowMenuDrag=-1", "switch 2", "UseSounds=-1", "switch 1",
                                                  "MinimizeOnView=-1", "switch 0", "SnippetTips=0"}));
  EXPECT_EQ(target.font, (FontProperty{.Name = "Courier New", .Size = 9.75}));
  EXPECT_EQ(target.switches, choices.switches);
}

/// Keys as they are stored, on a keyboard that types characters with all or none of them.
struct ScriptedKeyboard {
  explicit ScriptedKeyboard(const std::string& what) : types(what == "types") {}
  bool types;
  std::string operator()(const std::string& stored) const {
    const HotKey key = HotKey::FromText(stored);
    const std::string refusal = RefusalOf(key, types);
    EXPECT_TRUE(key.empty() || key.Text() == stored);
    return key.empty() ? "none" + refusal : refusal.empty() ? "free" : refusal;
  }
};

TEST(HotKeyTest, KeysThatWindowsOrKeyboardsNeedAreRefused) {
  PlayScripts<ScriptedKeyboard>("hot-keys.txt");
}

}  // namespace
}  // namespace snip::test
