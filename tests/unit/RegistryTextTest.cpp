#include "platform/RegistryText.h"

#include <gtest/gtest.h>

#include <limits>

namespace snip::test {
namespace {

using namespace std::string_literals;

TEST(RegistryTextTest, ErrorsHaveTheirMessagesAndSuccessAndNotFoundNone) {
  EXPECT_EQ(RegistryErrorMessage(0), std::nullopt);
  EXPECT_EQ(RegistryErrorMessage(2), std::nullopt);

  const std::vector<std::pair<std::int32_t, std::string>> cases = {
      {5, "Access to Registry Denied"},
      {14, "Out of memory"},
      {87, "Invalid Parameter"},
      {1009, "Corrupt Registry Database!"},
      {1010, "Key name is bad"},
      {1011, "Cannot Open Key"},
      {1012, "Cannot Read Key"},
      {1013, "Cannot Write Key"},
      {1, "Undefined key error code! -- 1"},
      {6, "Undefined key error code! -- 6"},
      {234, "Undefined key error code! -- 234"},
      {1014, "Undefined key error code! -- 1014"},
      {-1, "Undefined key error code! -- -1"},
      {std::numeric_limits<std::int32_t>::min(), "Undefined key error code! -- -2147483648"},
  };
  for (const auto& [code, message] : cases) EXPECT_EQ(RegistryErrorMessage(code), message) << code;
}

TEST(RegistryTextTest, HexadecimalHasTwoUpperCaseDigitsForEveryByte) {
  EXPECT_EQ(StrToHex(""), "");
  EXPECT_EQ(StrToHex("\x00\x01\x0F\x10\x7F\x80\xAB\xFF"s), "00010F107F80ABFF");
}

TEST(RegistryTextTest, SettingsPathsAreJoinedAsTheyAre) {
  EXPECT_EQ(SettingsKeyPath("Brennic", "BnSnipstore", "2.0"), "Software\\Brennic\\BnSnipstore\\2.0");
  EXPECT_EQ(SettingsKeyPath("Brennic", "BnSnipstore\\2.0", "Settings"),
            "Software\\Brennic\\BnSnipstore\\2.0\\Settings");
  EXPECT_EQ(SettingsKeyPath(" a ", "", "b\\"), "Software\\ a \\\\b\\");
}

TEST(RegistryTextTest, NumbersAreStoredAsTheirFirstFourCharacters) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"1234", "1234"},        {"123456", "1234"},        {"7", "7\0\0\0"s},
      {"42", "42\0\0"s},       {"123", "123\0"s},         {"0", "0\0\0\0"s},
      {"-1", "-1\0\0"s},       {"-12345", "-123"},        {"  15  ", "15\0\0"s},
      {"007", "7\0\0\0"s},     {"2.4", "2\0\0\0"s},       {"0.5", "0\0\0\0"s},  // halves to even
      {"1.5", "2\0\0\0"s},     {"2.5", "2\0\0\0"s},       {"-1.5", "-2\0\0"s},
      {"1e3", "1000"},         {"2147483647", "2147"},    {"2147483647.4", "2147"},
      {"-2147483648", "-214"}, {"-2147483648.5", "-214"},
  };
  for (const auto& [text, data] : cases) EXPECT_EQ(NumberValueData(text), data) << text;

  for (const std::string& text :
       {""s, "   "s, "abc"s, "12abc"s, "1 2"s, "--1"s, "2147483648"s, "2147483647.5"s, "-2147483649"s,
        "1e300"s, "inf"s, "nan"s, "12\0"s, "12\0003"s}) {
    EXPECT_EQ(NumberValueData(text), std::nullopt) << testing::PrintToString(text);
  }
}

TEST(RegistryTextTest, MultiStringsEndInTwoZeroBytesAndLeaveOutWhatWouldEndThemEarly) {
  using Strings = std::vector<std::string>;
  EXPECT_EQ(MultiStringData("a", {}), "a\0\0"s);
  EXPECT_EQ(MultiStringData("", {}), "\0\0"s);
  EXPECT_EQ(MultiStringData("a", Strings{"bc", "d"}), "a\0bc\0d\0\0"s);
  EXPECT_EQ(MultiStringData("a", Strings{"", "b", "\0"s, "c", ""}), "a\0b\0c\0\0"s);
  EXPECT_EQ(MultiStringData("a", Strings{" ", "\0\0"s}), "a\0 \0\0\0\0\0"s);  // not empty, not a lone zero
}

TEST(RegistryTextTest, MultiStringsAreTakenApartUpToTheFirstEmptyOne) {
  using Strings = std::vector<std::string>;
  EXPECT_EQ(SplitMultiString(""), Strings{});
  EXPECT_EQ(SplitMultiString("\0\0"s), Strings{});
  EXPECT_EQ(SplitMultiString("\0a\0\0"s), Strings{});
  EXPECT_EQ(SplitMultiString("a\0bc\0\0"s), (Strings{"a", "bc"}));
  EXPECT_EQ(SplitMultiString("a\0\0b\0\0"s), Strings{"a"});
  // Data that was cut or written without its zero bytes.
  EXPECT_EQ(SplitMultiString("a\0bc\0"s), (Strings{"a", "bc"}));
  EXPECT_EQ(SplitMultiString("a\0bc"s), (Strings{"a", "bc"}));
  EXPECT_EQ(SplitMultiString("abc"), Strings{"abc"});
}

}  // namespace
}  // namespace snip::test
