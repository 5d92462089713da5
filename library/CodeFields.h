#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

/// A place in a snippet's code that is filled when the code is pasted: `<<name>>`, whose default is its name,
/// `<<name=text>>` with another default, or `<<name=a|b>>` with texts to choose from. A name begins with a
/// letter, a digit or an underscore, and may hold these, blanks and hyphens. Anything else between the marks
/// is code, as is a line end.
struct CodeField {
  std::size_t begin = 0;  ///< Of the first mark, in bytes of the code.
  std::size_t end = 0;    ///< Behind the last mark.
  std::string name;
  std::vector<std::string> choices;  ///< The first is the default; empty without "=".
};

/// Fields that nobody is asked for.
inline constexpr std::string_view kSelectionField = "selection";  ///< What is selected in the code window.
inline constexpr std::string_view kEndField = "end";              ///< Where the caret is put.
inline constexpr std::string_view kDateField = "date";
inline constexpr std::string_view kModuleField = "module";
inline constexpr std::string_view kProcedureField = "procedure";
inline constexpr std::string_view kProjectField = "project";

/// Whether a field of that name, in whatever case, is filled without a question.
bool IsAnswered(std::string_view name);

/// All fields in their order.
std::vector<CodeField> FieldsIn(std::string_view code);

/// The field as it is written; nothing where that would not be read as this field.
std::optional<std::string> WrittenField(const std::string& name,
                                        const std::vector<std::string>& choices = {});

/// Those that the user is asked for: each name once, whatever its case, with the choices of the first that
/// has any.
std::vector<CodeField> AskedFields(std::string_view code);

struct FilledCode {
  std::string text;
  std::optional<std::size_t> caret;  ///< Where the first `<<end>>` was, in bytes.
};

/// Exchanges each field for what `textOf` tells for its name as it is written; `<<end>>` becomes nothing.
/// Further lines of a text begin with the blanks and tabs before the field when its line has nothing else
/// before it.
FilledCode FillFields(std::string_view code,
                      const std::function<std::string(const std::string& name)>& textOf);

/// The blanks and tabs that a line begins with.
std::string_view IndentationOf(std::string_view line);
/// Whether a line has nothing but these.
bool IsBlank(std::string_view line);

/// The text with `indentation` before each line but those that are empty. Lines end with CR LF.
std::string Indented(std::string_view text, std::string_view indentation);

/// The text without the blanks and tabs that all its lines begin with; empty lines do not count.
std::string WithoutCommonIndentation(std::string_view text);

/// What a snippet made of this code may be called: the name of its first procedure, type or enumeration, else
/// its first line with something in it; empty when there is none.
std::string NameFromCode(std::string_view code);

}  // namespace snip
