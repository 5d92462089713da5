#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

/// A place in a snippet's code that is filled when the code is pasted: `<<name>>`, whose default is its name,
/// `<<name=text>>` with another default, or `<<name=a|b>>` with texts to choose from. A name begins with a
/// letter, a digit or an underscore, and may hold these, blanks and hyphens. Anything else between the marks
/// is code, as is a line ending.
struct CodeField {
  std::size_t begin = 0;  ///< Of the first mark, in bytes of the code.
  std::size_t end = 0;    ///< After the last mark.
  std::string name;
  std::vector<std::string> choices;  ///< The first is the default; empty without "=".
};

/// Texts of fields by their names.
using FieldTexts = std::map<std::string, std::string>;

/// Fields that are filled without asking the user.
inline constexpr std::string_view kSelectionField = "selection";  ///< What is selected in the code window.
inline constexpr std::string_view kEndField = "end";              ///< Where the caret is put.
inline constexpr std::string_view kDateField = "date";
inline constexpr std::string_view kModuleField = "module";
inline constexpr std::string_view kProcedureField = "procedure";
inline constexpr std::string_view kProjectField = "project";

/// Whether a field of that name, in any letter case, is filled without asking the user.
bool IsAnswered(std::string_view name);

/// All fields in their order.
std::vector<CodeField> FieldsIn(std::string_view code);

/// The field as it is written in code; nothing if that would not be read as the same field.
std::optional<std::string> WrittenField(const std::string& name,
                                        const std::vector<std::string>& choices = {});

/// The fields that the user is asked for: each name once, ignoring case, with the choices of the first that
/// has any.
std::vector<CodeField> AskedFields(std::string_view code);

struct FilledCode {
  std::string text;
  std::optional<std::size_t> caret;  ///< Where the first `<<end>>` was, in bytes.
};

/// Replaces each field by what `textOf` returns for its name as it is written, and removes `<<end>>`. If only
/// blanks and tabs are before a field in its line, the further lines of its text also begin with them.
FilledCode FillFields(std::string_view code,
                      const std::function<std::string(const std::string& name)>& textOf);

/// The blanks and tabs that a line begins with.
std::string_view IndentationOf(std::string_view line);
/// Whether a line has nothing but these.
bool IsBlank(std::string_view line);

/// The text with `indentation` before each line that is not empty. Lines end with CR LF.
std::string Indented(std::string_view text, std::string_view indentation);

/// The text without the blanks and tabs that all its lines begin with; empty lines do not count.
std::string WithoutCommonIndentation(std::string_view text);

/// A name for a snippet with this code: that of its first procedure, type or enumeration, else its first line
/// that is not blank, without the apostrophe of a comment; empty if there is none.
std::string NameFromCode(std::string_view code);

}  // namespace snip
