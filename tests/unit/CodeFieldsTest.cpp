#include <gtest/gtest.h>

#include "library/CodeFields.h"

namespace snip {
namespace {

struct Row {
  std::string_view code, expected;
  int caret = -1;  ///< None.
};

/// "name:choice|choice;name", as they are asked for.
std::string Asked(std::string_view code) {
  std::string text;
  for (const CodeField& field : AskedFields(code)) {
    text.append(text.empty() ? "" : ";").append(field.name);
    for (std::size_t i = 0; i < field.choices.size(); ++i)
      text.append(i == 0 ? ":" : "|").append(field.choices[i]);
  }
  return text;
}

TEST(CodeFields, WhatIsAsked) {
  for (const Row& row : {
           Row{"Dim <<name>> As <<type=Long|String>> ' <<Name>>", "name;type:Long|String"},
           Row{"<<a>><<a=1>><<A=2>>", "a:1"},
           Row{"<<a=>>", "a:"},
           Row{"<<first name>> <<x-1>> <<2>>", "first name;x-1;2"},
           Row{"<<selection>><<END>><<date>><<module>><<procedure>><<project>>", ""},
           Row{"<<>> << a>> <<a >> <<a\r\n>> <<a(>> a << b >> c <<open", ""},
           Row{"<<<a>> <<a=b>c>>", "a:b>c"},
           Row{"<<a = 1>> <<\xE4=\xE9|>>", "\xE4:\xE9|"},
       }) {
    EXPECT_EQ(Asked(row.code), row.expected) << row.code;
  }
  std::string marks;  // which would take hours, were all that follows looked through for each
  for (int i = 0; i < 1 << 20; ++i) marks += i % 2 == 0 ? "<<a=" : "<<a\n";
  EXPECT_EQ(Asked(marks + ">>"), "");
}

TEST(CodeFields, AreFilled) {
  for (const Row& row : {
           Row{"a <<x>> b <<X>>", "a [x] b [X]"},
           Row{"If <<x=1>> Then\r\n  <<selection>>\r\n<<end>>End If<<end>>",
               "If [x] Then\r\n  one\r\n\r\n    two\r\nEnd If", 31},
           Row{"y <<selection>>", "y one\r\n\r\n  two"},
           Row{"<<x", "<<x"},
       }) {
    const FilledCode filled = FillFields(row.code, [](const std::string& name) {
      return name == kSelectionField ? "one\r\n\r\n  two" : "[" + name + "]";
    });
    EXPECT_EQ(filled.text, row.expected);
    EXPECT_EQ(filled.caret ? static_cast<int>(*filled.caret) : -1, row.caret);
  }
}

TEST(CodeFields, AFieldIsWrittenIfItIsReadAsItself) {
  EXPECT_EQ(WrittenField("a", {}), "<<a>>");
  EXPECT_EQ(WrittenField("a", {"b", "c d"}), "<<a=b|c d>>");
  EXPECT_EQ(WrittenField("a", {"b>>"}), std::nullopt);
}

TEST(CodeFields, IndentationIsTakenAndGiven) {
  EXPECT_EQ(Indented("a\r\n\r\n  b\r\n", "\t "), "\t a\r\n\r\n\t   b\r\n");
  EXPECT_EQ(WithoutCommonIndentation("    a\r\n \r\n      b\r\n\r\n"), "a\r\n\r\n  b\r\n\r\n");
  EXPECT_EQ(WithoutCommonIndentation("\ta\r\n  b"), "\ta\r\n  b");
  EXPECT_EQ(WithoutCommonIndentation(" \r\n"), "\r\n");
}

TEST(CodeFields, CodeNamesItself) {
  for (const Row& row : {
           Row{"' Opens it\r\nPrivate Static Sub Open_It(ByVal n%)\r\nEnd Sub", "Open_It"},
           Row{"Public Property  Get Size() As Long", "Size"},
           Row{"Function F$()", "F"},
           Row{"\r\n  Dim a As Long  \r\nb", "Dim a As Long"},
           Row{"Subs = 1", "Subs = 1"},
           Row{"Exit Sub\r\nPrivate Type T", "T"},
           Row{"  ' Notes\r\n", "Notes"},
           Row{" \r\n", ""},
       }) {
    EXPECT_EQ(NameFromCode(row.code), row.expected) << row.code;
  }
}

}  // namespace
}  // namespace snip
