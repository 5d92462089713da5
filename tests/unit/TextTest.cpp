#include "platform/Text.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

#include "ui/commandbar/SystemSounds.h"

namespace snip::test {
namespace {

using namespace std::string_view_literals;

TEST(TextTest, TrimmingTakesBlanksAndNothingElse) {
  struct Case {
    std::string_view text, trimmed, leftTrimmed, rightTrimmed;
  };
  for (const auto& [text, trimmed, leftTrimmed, rightTrimmed] : {
           Case{"", "", "", ""}, Case{"   ", "", "", ""}, Case{"a", "a", "a", "a"},
           Case{"  a b  ", "a b", "a b  ", "  a b"}, Case{"\t a \t", "\t a \t", "\t a \t", "\t a \t"},
           Case{" \t ", "\t", "\t ", " \t"}, Case{" \r\n ", "\r\n", "\r\n ", " \r\n"},
           Case{" \0 "sv, "\0"sv, "\0 "sv, " \0"sv},
           Case{" \xA0 ", "\xA0", "\xA0 ", " \xA0"},  // the no-break space is text
       }) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(Trim(text), trimmed);
    EXPECT_EQ(TrimLeft(text), leftTrimmed);
    EXPECT_EQ(TrimRight(text), rightTrimmed);
  }
}

TEST(TextTest, CaseIsIgnoredForTheLettersAToZOnly) {
  EXPECT_TRUE(EqualsIgnoringAsciiCase("", ""));
  EXPECT_TRUE(EqualsIgnoringAsciiCase("aBmYZ0.", "AbMyz0."));

  EXPECT_FALSE(EqualsIgnoringAsciiCase("ab", "abc"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase("abc", "ab"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase("", "a"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase("@", "`"));  // the neighbours of A and Z, 32 apart like the letters
  EXPECT_FALSE(EqualsIgnoringAsciiCase("[", "{"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase("\xC4", "\xE4"));
  EXPECT_FALSE(EqualsIgnoringAsciiCase("a\0b"sv, "a\0c"sv));
}

TEST(SystemSoundsTest, NumbersHaveTheirNamesAndNamesTheirKeys) {
  for (const auto& [number, name] :
       std::initializer_list<std::pair<int, const char*>>{{0, "Buddy In"},
                                                          {21, "You've Got Mail"},
                                                          {22, ""},
                                                          {32767, ""},
                                                          {-1, ""},
                                                          {-32768, ""},
                                                          {SystemSound::kMenuCommand, "MenuCommand"},
                                                          {SystemSound::kMenuPopup, "MenuPopup"},
                                                          {SystemSound::kAsterisk, "SystemAsterisk"},
                                                          {SystemSound::kExclamation, "SystemExclamation"},
                                                          {SystemSound::kHand, "SystemHand"},
                                                          {SystemSound::kQuestion, "SystemQuestion"}}) {
    EXPECT_EQ(SystemSoundEventName(static_cast<std::int16_t>(number)), name) << number;
  }
  EXPECT_EQ(DefaultSchemeSoundKey("MenuPopup"), "AppEvents\\Schemes\\Apps\\.Default\\MenuPopup\\.Current");
  EXPECT_EQ(OfficeSchemeSoundKey("ToolbarClick"),
            "AppEvents\\Schemes\\Apps\\Office97\\Office97-ToolbarClick\\.Current");
}

}  // namespace
}  // namespace snip::test
