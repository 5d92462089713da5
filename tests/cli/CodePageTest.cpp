#include "cli/system/CodePage.h"

#include <gtest/gtest.h>
#include <utf8cpp/utf8.h>

#include "cli/exchange/TextConversion.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

const CodePage kPage = CodePage::Windows1252();

TEST(CodePageTest, EveryByteComesBack) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::string utf8 = kPage.ToUtf8(all);
  EXPECT_TRUE(utf8::is_valid(utf8));
  EXPECT_EQ(kPage.FromUtf8(utf8).text, all);
  EXPECT_EQ(kPage.FromUtf8(utf8).lost, 0U);
  EXPECT_EQ(kPage.ToUtf8("\x80\x81\xE9"), "\xE2\x82\xAC\xC2\x81\xC3\xA9");
}

struct Input {
  std::string bytes;
  Encoding encoding;
  std::string text;
  std::size_t lost;
};

TEST(CodePageTest, InputIsReadInItsEncoding) {
  for (const Input& input :
       std::vector<Input>{{"\xC3\xA9", Encoding::Auto, "\xE9", 0},
                          {"\xE9", Encoding::Auto, "\xE9", 0},
                          {"\xE9", Encoding::Utf8, "?", 1},
                          {"\xC3\xA9", Encoding::Ansi, "\xC3\xA9", 0},
                          {"\xEF\xBB\xBF\xC3\xA9", Encoding::AnsiUnlessMarked, "\xE9", 0},
                          {"\xEF\xBB\xBF", Encoding::Ansi, "\xEF\xBB\xBF", 0},
                          {"\xFF\xFE\xE9\0"s, Encoding::Auto, "\xE9", 0},
                          {"\xFE\xFF\0\xE9\xD8\x3D\xDE\0"s, Encoding::Auto, "\xE9?", 1},
                          {"a\0\x03\x26x"s, Encoding::Utf16, "a??", 2},
                          {"\xE2\x98\x83 \xF0\x9F\x98\x80", Encoding::Utf8, "? ?", 2},
                          {"\xC0\x80\xED\xA0\x80\xF4\x90\x80\x80\xE2\x98", Encoding::Utf8, "????", 4}}) {
    const AnsiText read = ReadInputText(input.bytes, input.encoding, kPage);
    EXPECT_EQ(read.text, input.text) << testing::PrintToString(input.bytes);
    EXPECT_EQ(read.lost, input.lost) << testing::PrintToString(input.bytes);
  }
}

TEST(CodePageTest, LineEndsBecomeCrLf) {
  EXPECT_EQ(WithCrLf("a\nb\r\nc\rd\n").text, "a\r\nb\r\nc\r\nd\r\n");
  EXPECT_EQ(WithCrLf("a\nb\r\nc\rd\n").changed, 2U);
  EXPECT_EQ(WithCrLf("a\nb\n").changed, 0U);
}

TEST(CodePageTest, KnowsItsLetters) {
  EXPECT_EQ(kPage.Lower("AZ\xC9\xD7\xDE\x8A\x8C\x8E\x9F@["), "az\xE9\xD7\xFE\x9A\x9C\x9E\xFF@[");
  for (const char letter : "aZ_9\xE9\xDF\x83\x8C\xAA"s) EXPECT_TRUE(kPage.IsWord(letter)) << letter;
  for (const char other : " $.\xD7\xF7\x80\x99\xA0"s) EXPECT_FALSE(kPage.IsWord(other)) << other;
}

}  // namespace
}  // namespace snip::test
