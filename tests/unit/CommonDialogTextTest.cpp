#include "ui/dialogs/CommonDialogText.h"

#include <gtest/gtest.h>

namespace snip::test {
namespace {

using namespace std::string_literals;

TEST(CommonDialogTextTest, BuffersAreLaidOutAsTheSystemWantsThem) {
  EXPECT_EQ(FilterText("Snippets|*.bns"), "Snippets\0*.bns\0\0"s);
  EXPECT_EQ(FilterText("A|*.a|B|*.b;*.c|"), "A\0*.a\0B\0*.b;*.c\0\0\0"s);
  EXPECT_EQ(FilterText(""), "\0\0"s);

  for (const std::size_t length : {0U, 1U, 254U, 255U, 256U, 400U}) {
    const std::string name(length, 'n');
    EXPECT_EQ(SaveNameBuffer(name), name + std::string(length < 255 ? 255 - length : 0, '\0'));
    const FaceNameField field = FaceNameFieldOf(name);
    EXPECT_EQ(std::string(field.begin(), field.end()),
              length < 32 ? name + std::string(32 - length, '\0') : name.substr(0, 32));
  }
}

TEST(CommonDialogTextTest, NamesAreReadFromBuffersAndPaths) {
  EXPECT_EQ(TextBeforeNul("abc\0def\0"s), "abc");
  EXPECT_EQ(TextBeforeNul("\0abc"s), "");
  EXPECT_EQ(TextBeforeNul("abc"), std::nullopt);
  EXPECT_EQ(NamePart("C:\\a.b\\c.d"), "c.d");
  EXPECT_EQ(NamePart("c.d"), "c.d");
  EXPECT_EQ(NamePart("C:\\"), "");
  for (const char* name : {"*", "a*.txt", "?x"}) EXPECT_TRUE(HasWildcards(name)) << name;
  for (const char* name : {"", "a.txt", "[a]"}) EXPECT_FALSE(HasWildcards(name)) << name;
}

}  // namespace
}  // namespace snip::test
