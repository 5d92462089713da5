#include "platform/TextFieldBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace snip::test {
namespace {

using namespace std::string_literals;

/// Every byte value from `first` to `last`.
std::string Bytes(int first, int last) {
  std::string bytes;
  for (int i = first; i <= last; ++i) bytes += static_cast<char>(i);
  return bytes;
}

TEST(TextFieldBytesTest, TextsWithoutZeroBytesAreShownAsTheyAre) {
  for (const std::string& text : {""s, "Dim x\r\n\tx = 1"s, Bytes(1, 9) + Bytes(14, 255)}) {
    const TextFieldBytes bytes(text);
    EXPECT_EQ(bytes.shown(), text);
    EXPECT_EQ(bytes.Restore(text), text);
    EXPECT_EQ(bytes.Restore("\x01\x02"), "\x01\x02");
  }
}

TEST(TextFieldBytesTest, EveryLineEndIsShownAsCrLf) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a\rb", "a\r\nb"},   {"a\nb", "a\r\nb"}, {"a\r\nb", "a\r\nb"}, {"a\r\r\nb", "a\r\n\r\nb"},
      {"\n\r", "\r\n\r\n"}, {"a\r", "a\r\n"},   {"\n", "\r\n"},
  };
  for (const auto& [text, shown] : cases) EXPECT_EQ(TextFieldBytes(text).shown(), shown);
}

TEST(TextFieldBytesTest, ZeroBytesAreShownAsSomethingElseAndComeBack) {
  for (const std::string& text : {
           "\0"s,
           "a\0b\r\n\0\0c"s,
           "\x01\x02\0\x03"s,                               // the first candidates occur in the text
           Bytes(0, 9),                                     // the next ones are line endings
           Bytes(0, 9) + Bytes(14, 31),                     // all other control characters
           Bytes(0, 9) + Bytes(14, 126) + Bytes(128, 255),  // a single byte is free
           Bytes(0, 9) + Bytes(14, 254),
           Bytes(0, 0) + Bytes(2, 9) + Bytes(14, 255),
       }) {
    SCOPED_TRACE(testing::PrintToString(text));
    const TextFieldBytes bytes(text);
    EXPECT_EQ(bytes.shown().size(), text.size());
    EXPECT_EQ(bytes.shown().find('\0'), std::string::npos);
    EXPECT_EQ(bytes.Restore(bytes.shown()), text);
    for (const char c : "\t\n\v\f\r"s) {
      EXPECT_EQ(std::count(bytes.shown().begin(), bytes.shown().end(), c),
                std::count(text.begin(), text.end(), c))
          << "a zero byte would look like white space";
    }
  }
}

TEST(TextFieldBytesTest, EditedTextGetsItsZeroBytesBack) {
  const TextFieldBytes bytes("a\0b"s);
  const std::string& shown = bytes.shown();
  EXPECT_EQ(bytes.Restore("new " + shown + "\r\n" + shown.substr(1)), "new a\0b\r\n\0b"s);
}

TEST(TextFieldBytesTest, ATextOfAllByteValuesIsAtLeastShownInFull) {
  const TextFieldBytes bytes(Bytes(0, 255));
  EXPECT_EQ(bytes.shown().size(), 258U);
  EXPECT_EQ(bytes.shown().find('\0'), std::string::npos);
  EXPECT_EQ(bytes.shown().substr(1), Bytes(1, 9) + "\r\n\v\f\r\n" + Bytes(14, 255));
}

}  // namespace
}  // namespace snip::test
