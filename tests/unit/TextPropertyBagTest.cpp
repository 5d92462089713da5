#include "ui/commandbar/TextPropertyBag.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace snip::test {
namespace {

const FontProperty kArial{.Name = "Arial", .Size = 8.25};

/// Values of every type, none of which is ever stored.
const std::vector<PropertyValue> kDefaults = {false, std::int16_t{-7}, ColorProperty{0x123456},
                                              FontProperty{.Name = "none", .Size = 1},
                                              PictureProperty{"none"}};

TextPropertyBag Parsed(std::string_view text) {
  auto result = TextPropertyBag::Parse(text, {});
  if (const auto* error = std::get_if<PropertyTextError>(&result)) {
    ADD_FAILURE() << "line " << error->line << ": " << error->message << " in " << text;
    return {};
  }
  return std::get<TextPropertyBag>(std::move(result));
}

/// The value of the property `P` in a line of it.
PropertyValue ValueOf(const std::string& text) {
  const TextPropertyBag bag = Parsed("P = " + text);
  for (const PropertyValue& none : kDefaults) {
    PropertyValue value = bag.Read("P", none);
    if (value != none) return value;
  }
  // A stored "False" is told from a missing one by the other default.
  return bag.Read("P", true);
}

std::string Written(const PropertyValue& value) {
  TextPropertyBag bag;
  for (const PropertyValue& none : kDefaults) {
    if (none != value) {
      bag.Write("P", value, none);
      break;
    }
  }
  return bag.Text();
}

TEST(TextPropertyBagTest, ValuesOfAllTypesAreWrittenForPeople) {
  EXPECT_EQ(Written(true), "P = True\r\n");
  EXPECT_EQ(Written(false), "P = False\r\n");
  EXPECT_EQ(Written(std::int16_t{0}), "P = 0\r\n");
  EXPECT_EQ(Written(std::int16_t{-32768}), "P = -32768\r\n");
  EXPECT_EQ(Written(ColorProperty{0xC0C0C0}), "P = &HC0C0C0\r\n");
  EXPECT_EQ(Written(ColorProperty{0x8000000F}), "P = &H8000000F\r\n");
  EXPECT_EQ(Written(ColorProperty{0}), "P = &H0\r\n");
  EXPECT_EQ(Written(PictureProperty{"C:\\My \"icons\"\\a.cur"}),
            "P = \"C:\\\\My \\\"icons\\\"\\\\a.cur\"\r\n");
  EXPECT_EQ(Written(PictureProperty{std::string("\r\n\t\0\x1F\x7F\xE4", 7)}),
            "P = \"\\r\\n\\t\\x00\\x1F\\x7F\xE4\"\r\n");
  EXPECT_EQ(Written(kArial), "P = \"Arial\", 8.25\r\n");
  EXPECT_EQ(Written(FontProperty{.Name = "MS Sans Serif",
                                 .Size = 10,
                                 .Bold = true,
                                 .Italic = true,
                                 .Underline = true,
                                 .Strikethrough = true,
                                 .Charset = 204}),
            "P = \"MS Sans Serif\", 10, Bold, Italic, Underline, Strikethrough, Charset 204\r\n");
}

TEST(TextPropertyBagTest, WhatPeopleWriteIsRead) {
  EXPECT_EQ(ValueOf("true"), PropertyValue{true});
  EXPECT_EQ(ValueOf("FALSE"), PropertyValue{false});
  EXPECT_EQ(ValueOf("0"), PropertyValue{std::int16_t{0}});
  EXPECT_EQ(ValueOf("-32768"), PropertyValue{std::int16_t{-32768}});
  EXPECT_EQ(ValueOf("32767"), PropertyValue{std::int16_t{32767}});
  EXPECT_EQ(ValueOf("&hc0C0c0"), PropertyValue{ColorProperty{0xC0C0C0}});
  EXPECT_EQ(ValueOf("&H00000000"), PropertyValue{ColorProperty{0}});
  EXPECT_EQ(ValueOf("&HFFFFFFFF"), PropertyValue{ColorProperty{0xFFFFFFFF}});
  EXPECT_EQ(ValueOf("\"\""), PropertyValue{PictureProperty{""}});
  EXPECT_EQ(ValueOf("\"a = b, 'c' \\\\ \\\"d\\\"\""), PropertyValue{PictureProperty{"a = b, 'c' \\ \"d\""}});
  EXPECT_EQ(ValueOf("\"\\r\\n\\t\\x41\\x4a\\xE4\""), PropertyValue{PictureProperty{"\r\n\tAJ\xE4"}});
  EXPECT_EQ(ValueOf("\"Arial\", 8.25"), PropertyValue{kArial});
  EXPECT_EQ(ValueOf("\"Arial\",8.25"), PropertyValue{kArial});
  EXPECT_EQ(ValueOf("\"x\" , 0 , charset 0 , ITALIC,bold"),
            PropertyValue(FontProperty{.Name = "x", .Size = 0, .Bold = true, .Italic = true, .Charset = 0}));
  EXPECT_EQ(ValueOf("\"x\", 12, Underline"),
            PropertyValue(FontProperty{.Name = "x", .Size = 12, .Underline = true}));
  EXPECT_EQ(ValueOf("\"x\", 12, Strikethrough"),
            PropertyValue(FontProperty{.Name = "x", .Size = 12, .Strikethrough = true}));
}

TEST(TextPropertyBagTest, EveryValueReadsBackAsItWas) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  const std::vector<PropertyValue> values = {
      true,
      false,
      std::int16_t{1},
      std::numeric_limits<std::int16_t>::min(),
      std::numeric_limits<std::int16_t>::max(),
      ColorProperty{0},
      ColorProperty{0xFFFFFF},
      ColorProperty{0xFFFFFFFF},
      ColorProperty{0x80000000},
      PictureProperty{""},
      PictureProperty{everyByte},
      FontProperty{},
      kArial,
      FontProperty{.Name = everyByte, .Size = 1.0 / 3},
      FontProperty{.Name = "x", .Size = 1e300, .Charset = 0},
      FontProperty{.Name = "x", .Size = std::numeric_limits<double>::denorm_min(), .Charset = 255},
      FontProperty{.Name = "x", .Size = 8, .Italic = true, .Strikethrough = true},
  };
  for (const PropertyValue& value : values) {
    const std::string text = Written(value);
    EXPECT_EQ(ValueOf(text.substr(text.find('=') + 1)), value) << text;
    EXPECT_EQ(Parsed(text).Text(), text);
  }
}

TEST(TextPropertyBagTest, BlanksBlankLinesAndLineEndsMeanNothing) {
  const std::string text = "\r\n   A  =   1   \n\n  \r\nB=True\r\nC =  \"x\" ";
  EXPECT_EQ(Parsed(text).Text(), "A = 1\r\nB = True\r\nC = \"x\"\r\n");
  EXPECT_EQ(Parsed("").Text(), "");
  EXPECT_EQ(Parsed("  \r\n \n").Text(), "");
}

TEST(TextPropertyBagTest, NamesAreTheSameInAnyCase) {
  TextPropertyBag bag = Parsed("bOrDer_Style2 = 1\r\n");
  EXPECT_EQ(bag.Read("BORDER_STYLE2", std::int16_t{5}), PropertyValue{std::int16_t{1}});
  bag.Write("Border_Style2", std::int16_t{4}, std::int16_t{5});
  EXPECT_EQ(bag.Text(), "bOrDer_Style2 = 4\r\n");
}

TEST(TextPropertyBagTest, PropertiesThatNobodyAsksForAreKept) {
  TextPropertyBag bag = Parsed("Later = \"x\", 9\r\nDockable = True\r\nLater2 = &H1\r\n");
  bag.Write("Dockable", false, false);
  bag.Write("New", std::int16_t{1}, std::int16_t{0});
  EXPECT_EQ(bag.Text(), "Later = \"x\", 9\r\nLater2 = &H1\r\nNew = 1\r\n");
}

TEST(TextPropertyBagTest, ADefaultValueIsNotStored) {
  TextPropertyBag bag;
  bag.Write("A", true, true);
  EXPECT_EQ(bag.Text(), "");
  EXPECT_EQ(bag.Read("A", true), PropertyValue{true});
  EXPECT_EQ(bag.Read("A", false), PropertyValue{false});
  bag.Write("A", false, true);
  EXPECT_EQ(bag.Text(), "A = False\r\n");
  EXPECT_EQ(bag.Read("A", true), PropertyValue{false});
  bag.Write("A", true, true);
  EXPECT_EQ(bag.Text(), "");
}

TEST(TextPropertyBagTest, AValueOfAnotherTypeIsNoneOfTheWantedOnes) {
  const TextPropertyBag bag = Parsed("A = 1");
  EXPECT_EQ(bag.Read("A", false), PropertyValue{false});
  EXPECT_EQ(bag.Read("A", ColorProperty{5}), PropertyValue{ColorProperty{5}});
}

TEST(TextPropertyBagTest, WhatIsNoPropertyIsRefusedByLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      // The line, and a part of what is said about it.
      {"= 1", "name"},
      {"1A = 1", "name"},
      {"_A = 1", "name"},
      {"' comment", "name"},
      {"A", "\"=\""},
      {"A 1", "\"=\""},
      {"A-B = 1", "\"=\""},
      {"A : 1", "\"=\""},
      {"A =", "a value is expected"},
      {"A = 32768", "from -32768 to 32767"},
      {"A = -32769", "from -32768 to 32767"},
      {"A = 1.5", "from -32768 to 32767"},
      {"A = +1", "from -32768 to 32767"},
      {"A = 1x", "from -32768 to 32767"},
      {"A = 1,", "nothing may follow"},
      {"A = 1 2", "nothing may follow"},
      {"A = True x", "nothing may follow"},
      {"A = \"x\" y", "nothing may follow"},
      {"A = \"x\", 8 Bold", "nothing may follow"},
      {"A = &HFF FF", "nothing may follow"},
      {"A = Yes", "True or False"},
      {"A = Arial", "True or False"},
      {"A = &", "a colour is &H"},
      {"A = &C0C0C0", "a colour is &H"},
      {"A = &H", "a colour is &H"},
      {"A = &H ", "a colour is &H"},
      {"A = &HC0C0G0", "a colour is &H"},
      {"A = &H-1", "a colour is &H"},
      {"A = &H100000000", "a colour is &H"},
      {"A = &H000000000", "a colour is &H"},
      {"A = \"x", "closing"},
      {"A = \"", "closing"},
      {"A = \"x\\\"", "closing"},
      {"A = \"x\\q\"", "backslash"},
      {"A = \"x\\", "backslash"},
      {"A = \"\\x4\"", "backslash"},
      {"A = \"\\x4", "backslash"},
      {"A = \"\\x4g\"", "backslash"},
      {"A = \"\\x\"", "backslash"},
      {"A = \"x\",", "size"},
      {"A = \"x\", Bold", "size"},
      {"A = \"x\", -1", "size"},
      {"A = \"x\", nan", "size"},
      {"A = \"x\", inf", "size"},
      {"A = \"x\", 1e999", "size"},
      {"A = \"x\", 8pt", "size"},
      {"A = \"x\", 8,", "expected after the comma"},
      {"A = \"x\", 8, Bald", "expected after the comma"},
      {"A = \"x\", 8, 700", "expected after the comma"},
      {"A = \"x\", 8, Bold, bold", "Bold stands twice"},
      {"A = \"x\", 8, Charset 1, Charset 1", "Charset stands twice"},
      {"A = \"x\", 8, Charset", "from 0 to 255"},
      {"A = \"x\", 8, Charset 256", "from 0 to 255"},
      {"A = \"x\", 8, Charset -1", "from 0 to 255"},
      {"a = 5\r\nA = 1", "A stands twice"},
  };
  for (const auto& [text, complaint] : cases) {
    SCOPED_TRACE(text);
    const int lines = text.find('\n') == std::string::npos ? 1 : 2;
    for (const std::string before : {"", "Good = True\r\n\r\n"}) {
      for (const std::string after : {"", "\r\nGood2 = 1"}) {
        const auto result = TextPropertyBag::Parse(before + text + after, {});
        const auto* error = std::get_if<PropertyTextError>(&result);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->line, lines + (before.empty() ? 0 : 2));
        EXPECT_NE(error->message.find(complaint), std::string::npos) << error->message;
      }
    }
  }
}

TEST(TextPropertyBagTest, AKnownPropertyHasItsType) {
  const std::vector<NamedProperty> known = {{"Flag", true},
                                            {"Number", std::int16_t{0}},
                                            {"Color", ColorProperty{}},
                                            {"Font", FontProperty{}},
                                            {"Picture", PictureProperty{}}};
  const std::vector<std::string> values = {"True", "1", "&H1", "\"x\", 1", "\"x\""};
  const std::vector<std::string> complaints = {"is True or False", "is a number", "is a colour", "is a font",
                                               "is a picture file"};
  for (std::size_t i = 0; i < known.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) {
      SCOPED_TRACE(known[i].name + " = " + values[j]);
      const auto result = TextPropertyBag::Parse("Other = True\n" + known[i].name + " = " + values[j], known);
      const auto* error = std::get_if<PropertyTextError>(&result);
      ASSERT_EQ(error == nullptr, i == j);
      if (error == nullptr) continue;
      EXPECT_EQ(error->line, 2);
      EXPECT_EQ(error->message.find(known[i].name + " " + complaints[i]), 0U) << error->message;
    }
  }
  const auto anyCase = TextPropertyBag::Parse("FLAG = 1", known);
  EXPECT_TRUE(std::holds_alternative<PropertyTextError>(anyCase));
}

}  // namespace
}  // namespace snip::test
