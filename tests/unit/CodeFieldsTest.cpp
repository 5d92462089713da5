#include <gtest/gtest.h>

#include "library/CodeFields.h"

namespace snip {
namespace {

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

/// Each field by its name, and "^" where the caret is.
std::string Filled(std::string_view code) {
  FilledCode filled = FillFields(code, [](const std::string& name) {
    return name == kSelectionField ? "one\r\n\r\n  two" : "[" + name + "]";
  });
  return filled.caret ? filled.text.insert(*filled.caret, "^") : filled.text;
}

TEST(CodeFields, AreAskedForAndFilledAndNameCode) {
  struct Row {
    std::string (*made)(std::string_view);
    std::string_view code, expected;
  };
  for (const Row& row : {
           Row{Asked, "Dim <<name>> As <<type=Long|String>> ' <<Name>>", "name;type:Long|String"},
           {Asked, "<<a>><<a=1>><<A=2>>", "a:1"},
           {Asked, "<<a=>>", "a:"},
           {Asked, "<<first name>> <<zZ-0>> <<9>>", "first name;zZ-0;9"},
           {Asked, "<<selection>><<END>><<date>><<module>><<procedure>><<project>>", ""},
           {Asked, "<<>> << a>> <<a >> <<a\r\n>> <<a(>> a << b >> c <<open", ""},
           {Asked, "<<<a>> <<a=b>c>>", "a:b>c"},
           {Asked, "<<a = 1>> <<\x80=\xE9|>>", "\x80:\xE9|"},
           {Filled, "a <<x>> b <<X>>", "a [x] b [X]"},
           {Filled, "If <<x=1>> Then\r\n  <<selection>>\r\n<<end>>End If<<end>>",
            "If [x] Then\r\n  one\r\n\r\n    two\r\n^End If"},
           {Filled, "y <<selection>>", "y one\r\n\r\n  two"},
           {Filled, "<<x", "<<x"},
           {WithoutCommonIndentation, "    a\r\n \r\n      b\r\n\r\n", "a\r\n\r\n  b\r\n\r\n"},
           {WithoutCommonIndentation, "\ta\r\n  b", "\ta\r\n  b"},
           {WithoutCommonIndentation, " \r\n", "\r\n"},
           {NameFromCode, "' Opens it\r\nPrivate Static Sub Open_It(ByVal n%)\r\nEnd Sub", "Open_It"},
           {NameFromCode, "Public Property  Get Size() As Long", "Size"},
           {NameFromCode, "Function F$()", "F"},
           {NameFromCode, "\r\n  Dim a As Long  \r\nb", "Dim a As Long"},
           {NameFromCode, "Subs = 1", "Subs = 1"},
           {NameFromCode, "Exit Sub\r\nPrivate Type T", "T"},
           {NameFromCode, "  ' Notes\r\n", "Notes"},
           {NameFromCode, " \r\n", ""},
       }) {
    EXPECT_EQ(row.made(row.code), row.expected) << row.code;
  }
  EXPECT_EQ(Indented("a\r\n\r\n  b\r\n", "\t "), "\t a\r\n\r\n\t   b\r\n");
  std::string marks;  // which would take hours, were all that follows looked through for each
  for (int i = 0; i < 1 << 20; ++i) marks += i % 2 == 0 ? "<<a=" : "<<a\n";
  EXPECT_EQ(Asked(marks + ">>"), "");
}

TEST(CodeFields, AFieldIsWrittenIfItIsReadAsItself) {
  EXPECT_EQ(WrittenField("a", {}), "<<a>>");
  EXPECT_EQ(WrittenField("a", {"b", "c d"}), "<<a=b|c d>>");
  for (const char* choice : {"b>>", "b|c"}) EXPECT_EQ(WrittenField("a", {choice}), std::nullopt);
}

}  // namespace
}  // namespace snip
