#include "ui/editor/WordRange.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/editor/UnitSelection.h"

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
      {"\x80\xFC\xDF!", 0, "\x80\xFC\xDF"},
      {"a$", 1, "a"},
      {"= $", 2, "$"},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.line + " at " + std::to_string(expected.column));
    const ColumnRange range = WordAt(expected.line, expected.column);
    EXPECT_EQ(expected.line.substr(range.begin, range.end - range.begin), expected.selected);
  }
}

TEST(UnitSelection, ExtendsByWholeUnitsFromTheOneThatWasPressed) {
  const std::string text = "Dim a\r\rn = 12\rEnd";
  constexpr auto word = SelectionUnit::Word, line = SelectionUnit::Line;
  struct Case {
    SelectionUnit unit;
    std::size_t pressed, dragged;
    UnitSelection::Range selected;
  };
  const std::vector<Case> cases = {
      {word, 1, 1, {0, 3}},     {word, 1, 4, {0, 5}},   {word, 1, 12, {0, 13}}, {word, 12, 1, {13, 0}},
      {word, 1, 6, {0, 6}},     {word, 12, 6, {13, 6}}, {word, 6, 6, {6, 6}},   {word, 12, 99, {11, 17}},
      {line, 1, 3, {0, 6}},     {line, 5, 5, {0, 6}},   {line, 6, 6, {6, 7}},   {line, 8, 99, {7, 17}},
      {line, 15, 15, {14, 17}}, {line, 15, 8, {17, 7}}, {line, 8, 5, {14, 0}},  {line, 99, 99, {14, 17}},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(std::to_string(expected.pressed) + " to " + std::to_string(expected.dragged));
    EXPECT_EQ(UnitSelection(text, expected.unit, expected.pressed).To(expected.dragged), expected.selected);
  }
  EXPECT_EQ(UnitSelection("", line, 0).To(3), (UnitSelection::Range{0, 0}));
}

}  // namespace
}  // namespace snip::test
