#include "library/CodeFields.h"

#include <algorithm>
#include <array>

#include "library/LineEndings.h"
#include "platform/Text.h"

namespace snip {
namespace {

constexpr std::string_view kOpen = "<<";
constexpr std::string_view kClose = ">>";
constexpr std::string_view kBlanks = " \t";

bool InName(char c) {
  const bool letter =
      (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
  return letter || (c >= '0' && c <= '9') || c == '_';
}

/// The field with this text between its marks; nothing if that is not a field. `text` is one line.
std::optional<CodeField> FieldOf(std::string_view text) {
  const auto* const nameEnd =
      std::find_if_not(text.begin(), text.end(), [](char c) { return InName(c) || c == ' ' || c == '-'; });
  const std::string_view name = text.substr(0, static_cast<std::size_t>(nameEnd - text.begin()));
  if (name.empty() || !InName(name.front()) || name.back() == ' ') return std::nullopt;
  CodeField field;
  field.name = name;
  text.remove_prefix(name.size());
  if (text.empty()) return field;
  if (text.front() != '=') return std::nullopt;
  text.remove_prefix(1);
  for (;;) {
    const std::size_t bar = text.find('|');
    field.choices.emplace_back(text.substr(0, bar));
    if (bar == std::string_view::npos) return field;
    text.remove_prefix(bar + 1);
  }
}

/// The text before `place` in its line if it is only blanks and tabs, else empty.
std::string_view IndentationBefore(std::string_view text, std::size_t place) {
  const std::size_t end = text.substr(0, place).rfind('\n');
  const std::string_view before = text.substr(0, place).substr(end == std::string_view::npos ? 0 : end + 1);
  return IsBlank(before) ? before : std::string_view{};
}

/// Removes the next word from `line` and returns it.
std::string_view TakeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  const auto end = std::find_if_not(line.begin(), line.end(), InName);
  const std::string_view word = line.substr(0, static_cast<std::size_t>(end - line.begin()));
  line.remove_prefix(word.size());
  return word;
}

bool IsOneOf(std::string_view word, const auto& words) {
  return std::any_of(words.begin(), words.end(),
                     [word](std::string_view each) { return EqualsIgnoringAsciiCase(word, each); });
}

/// The name of the procedure, type or enumeration that a line declares; empty if it declares none.
std::string_view DeclaredName(std::string_view line) {
  constexpr std::array<std::string_view, 4> before{"Public", "Private", "Friend", "Static"};
  constexpr std::array<std::string_view, 5> kinds{"Sub", "Function", "Property", "Type", "Enum"};
  constexpr std::array<std::string_view, 3> accessors{"Get", "Let", "Set"};
  std::string_view word = TakeWord(line);
  while (IsOneOf(word, before)) word = TakeWord(line);
  if (!IsOneOf(word, kinds)) return {};
  const bool property = EqualsIgnoringAsciiCase(word, "Property");
  if (property && !IsOneOf(TakeWord(line), accessors)) return {};
  return TakeWord(line);
}

}  // namespace

bool IsAnswered(std::string_view name) {
  constexpr std::array answered{kSelectionField, kEndField,       kDateField,
                                kModuleField,    kProcedureField, kProjectField};
  return IsOneOf(name, answered);
}

std::vector<CodeField> FieldsIn(std::string_view code) {
  std::vector<CodeField> fields;
  // The next closing mark and the next end of a line. Each is searched for only once, because code may
  // consist of nothing but marks.
  std::size_t close = 0;
  std::size_t lineEnding = 0;
  for (std::size_t at = code.find(kOpen); at != std::string_view::npos; at = code.find(kOpen, at)) {
    // Of several opening marks in a row the last counts.
    const std::size_t inside = at + kOpen.size();
    if (close < inside) close = code.find(kClose, inside);
    if (lineEnding < inside) lineEnding = code.find_first_of(kCrLf, inside);
    if (close == std::string_view::npos) break;
    auto field = lineEnding < close ? std::nullopt : FieldOf(code.substr(inside, close - inside));
    if (!field) {
      ++at;
      continue;
    }
    field->begin = at;
    at = field->end = close + kClose.size();
    fields.push_back(std::move(*field));
  }
  return fields;
}

std::optional<std::string> WrittenField(const std::string& name, const std::vector<std::string>& choices) {
  std::string text(kOpen);
  text += name;
  for (std::size_t i = 0; i < choices.size(); ++i) text.append(i == 0 ? "=" : "|").append(choices[i]);
  text += kClose;
  const std::vector<CodeField> read = FieldsIn(text);
  const bool same = read.size() == 1 && read[0].begin == 0 && read[0].end == text.size() &&
                    read[0].name == name && read[0].choices == choices;
  return same ? std::optional(std::move(text)) : std::nullopt;
}

std::vector<CodeField> AskedFields(std::string_view code) {
  std::vector<CodeField> asked;
  for (CodeField& field : FieldsIn(code)) {
    if (IsAnswered(field.name)) continue;
    const auto same = std::find_if(asked.begin(), asked.end(), [&field](const CodeField& earlier) {
      return EqualsIgnoringAsciiCase(earlier.name, field.name);
    });
    if (same == asked.end()) {
      asked.push_back(std::move(field));
    } else if (same->choices.empty()) {
      same->choices = std::move(field.choices);
    }
  }
  return asked;
}

FilledCode FillFields(std::string_view code,
                      const std::function<std::string(const std::string& name)>& textOf) {
  FilledCode filled;
  std::size_t done = 0;
  for (const CodeField& field : FieldsIn(code)) {
    filled.text.append(code.substr(done, field.begin - done));
    done = field.end;
    if (EqualsIgnoringAsciiCase(field.name, kEndField)) {
      if (!filled.caret) filled.caret = filled.text.size();
      continue;
    }
    const std::string indentation(IndentationBefore(filled.text, filled.text.size()));
    bool first = true;
    ForEachLine(textOf(field.name), [&](std::string_view line) {
      if (!first) filled.text.append(kCrLf).append(IsBlank(line) ? std::string_view{} : indentation);
      filled.text.append(line);
      first = false;
    });
  }
  filled.text.append(code.substr(done));
  return filled;
}

std::string_view IndentationOf(std::string_view line) {
  return line.substr(0, line.find_first_not_of(kBlanks));
}

bool IsBlank(std::string_view line) {
  return IndentationOf(line).size() == line.size();
}

std::string Indented(std::string_view text, std::string_view indentation) {
  std::string indented;
  bool first = true;
  ForEachLine(text, [&](std::string_view line) {
    if (!first) indented.append(kCrLf);
    if (!line.empty()) indented.append(indentation).append(line);
    first = false;
  });
  return indented;
}

std::string WithoutCommonIndentation(std::string_view text) {
  std::optional<std::string_view> common;
  ForEachLine(text, [&common](std::string_view line) {
    if (IsBlank(line)) return;
    const std::string_view here = IndentationOf(line);
    const std::string_view so = common.value_or(here);
    const auto differ = std::mismatch(so.begin(), so.end(), here.begin(), here.end()).first;
    common = so.substr(0, static_cast<std::size_t>(differ - so.begin()));
  });
  std::string shorter;
  bool first = true;
  ForEachLine(text, [&](std::string_view line) {
    if (!first) shorter.append(kCrLf);
    shorter.append(line.substr(std::min(IsBlank(line) ? line.size() : common->size(), line.size())));
    first = false;
  });
  return shorter;
}

std::string NameFromCode(std::string_view code) {
  std::string_view declared;
  std::string_view firstLine;
  ForEachLine(code, [&](std::string_view line) {
    if (declared.empty()) declared = DeclaredName(line);
    if (firstLine.empty() && !IsBlank(line))
      firstLine = Trim(line.substr(std::min(line.find_first_not_of(" \t'"), line.size())));
  });
  return std::string(declared.empty() ? firstLine : declared);
}

}  // namespace snip
