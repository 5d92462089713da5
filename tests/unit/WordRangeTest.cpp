#include "ui/editor/WordRange.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace snip::test {
namespace {

TEST(WordRange, ADoubleClickTakesTheWordUnderIt) {
  struct Case {
    std::string line;
    std::size_t column;
    std::string selected;
  };
  const std::vector<Case> cases = {
      {"", 0, ""},
      {"x", 0, "x"},
      {"x", 9, "x"},
      {"Dim nCount As Long", 4, "nCount"},
      {"Dim nCount As Long", 9, "nCount"},
      {"Dim nCount As Long", 10, "nCount"},  // the blank right behind it
      {"Dim nCount As Long", 17, "Long"},
      {"Dim nCount As Long", 18, "Long"},  // behind the line
      {"a    b", 3, "    "},
      {"\t  x", 0, "\t  "},
      {"f(x)", 1, "f"},
      {"f(x)", 2, "x"},
      {"((x", 0, "("},
      {"my_var2 = 1", 2, "my_var2"},
      {"Gr\xFC\xDF"
       "e!",
       0,
       "Gr\xFC\xDF"
       "e"},
      {"a$", 1, "a"},
      {"= $", 2, "$"},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.line + " at " + std::to_string(expected.column));
    const ColumnRange range = WordAt(expected.line, expected.column);
    EXPECT_EQ(expected.line.substr(range.begin, range.end - range.begin), expected.selected);
  }
}

}  // namespace
}  // namespace snip::test
