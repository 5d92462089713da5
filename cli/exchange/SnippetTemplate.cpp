#include "cli/exchange/SnippetTemplate.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <stdexcept>
#include <unordered_set>
#include <utility>
#include <vector>

#include "library/CodeFields.h"
#include "platform/Text.h"

namespace snip {
namespace {

// Bodies may come from anywhere, so reading them has limits: what exceeds them is not a placeholder.
constexpr int kDeepest = 32;                 // placeholders in defaults of placeholders
constexpr std::size_t kLongest = 4096;       // choices and transformations, in bytes
constexpr std::size_t kLargest = 1U << 20U;  // of an expanded body, in bytes

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

/// The editor has the date in three variables only.
constexpr std::string_view kDateVariables = "$CURRENT_YEAR-$CURRENT_MONTH-$CURRENT_DATE";

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kVariables = {{
    {kSelectionField, "TM_SELECTED_TEXT"},
    {kModuleField, "TM_FILENAME_BASE"},
    {kProjectField, "WORKSPACE_NAME"},
    {kEndField, "0"},
}};

std::string Escaped(std::string_view text, std::string_view special) {
  std::string escaped;
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

class TemplateReader {
 public:
  TemplateReader(std::string_view body, bool asFields) : body_(body), asFields_(asFields) {}

  TemplateText Read() {
    // Twice, because a placeholder may be mentioned before its default is given.
    ReadText(0, false);
    at_ = 0;
    placeholders_ = 0;
    TemplateText result;
    result.text = ReadText(0, false);
    result.placeholders = placeholders_;
    return result;
  }

 private:
  bool AtEnd() const { return at_ >= body_.size(); }
  char Peek(std::size_t ahead = 0) const { return at_ + ahead < body_.size() ? body_[at_ + ahead] : '\0'; }
  bool Skip(char c) {
    if (AtEnd() || body_[at_] != c) return false;
    ++at_;
    return true;
  }

  /// Up to the end, or to the "}" that closes a default.
  std::string ReadText(int depth, bool isDefault) {
    std::string text;
    while (!AtEnd() && !(isDefault && Peek() == '}')) {
      const char c = body_[at_];
      if (c == '\\' && (Peek(1) == '$' || Peek(1) == '}' || Peek(1) == '\\')) {
        text += Peek(1);
        at_ += 2;
      } else if (asFields_ && !isDefault && body_.substr(at_).starts_with(kDateVariables)) {
        text += *WrittenField(std::string(kDateField));
        at_ += kDateVariables.size();
      } else if (const auto placeholder = c == '$' ? ReadPlaceholder(depth) : std::nullopt) {
        text += *placeholder;
      } else {
        text += c;
        ++at_;
      }
      if (text.size() > std::max(kLargest, body_.size()))
        throw std::length_error("expanded placeholders are longer than the limit");
    }
    return text;
  }

  /// The placeholder's text, or nullopt without advancing if there is none.
  std::optional<std::string> ReadPlaceholder(int depth) {
    const std::size_t start = at_;
    const std::size_t before = placeholders_;
    if (none_.contains(start)) return std::nullopt;
    ++at_;
    const bool braces = Skip('{');
    const std::string name = ReadName();
    std::optional<std::string> value;
    if (!name.empty()) value = braces ? ReadInBraces(name, depth) : ValueOf(name);
    if (!value) {
      none_.insert(start);
      at_ = start;
      placeholders_ = before;
      return std::nullopt;
    }
    if (auto field = asFields_ && depth == 0 ? FieldFor(name, at_ - start) : std::nullopt) return field;
    ++placeholders_;
    return value;
  }

  /// The field that represents a placeholder, which was written in `length` bytes; nothing if none can.
  std::optional<std::string> FieldFor(const std::string& name, std::size_t length) const {
    for (const auto& [field, variable] : kVariables) {
      // These fields have no place for a default text.
      if (name == variable && ValueOf(name).empty()) return WrittenField(std::string(field));
    }
    if (!IsDigit(name.front())) return std::nullopt;
    const auto known = choices_.find(name);
    const std::vector<std::string> choices =
        known != choices_.end() ? known->second : std::vector<std::string>{""};
    // A default that is a word is a better field name than the number, unless another placeholder has the
    // same one.
    const bool alone = std::none_of(choices_.begin(), choices_.end(), [&](const auto& other) {
      return other.first != name && EqualsIgnoringAsciiCase(other.second.front(), choices.front());
    });
    const bool named =
        alone && WrittenField(choices.front()).has_value() && !IsDigit(choices.front().front());
    // The editor has no variable for the procedure, so a placeholder represents that field.
    const bool answered = IsAnswered(choices.front());
    const bool procedure = EqualsIgnoringAsciiCase(choices.front(), kProcedureField);
    if (named && choices.size() == 1 && (!answered || procedure)) return WrittenField(choices.front());
    const std::string label = named && !answered ? choices.front() : name;
    // Every mention has to be a field, or the user would be asked for only some of them.
    auto whole = WrittenField(label, choices);
    const bool mention = known != choices_.end() && length <= name.size() + std::string_view("${}").size();
    return whole && mention ? WrittenField(label) : whole;
  }

  std::string ReadName() {
    const std::size_t start = at_;
    const bool number = IsDigit(Peek());
    while (!AtEnd() && (IsDigit(Peek()) || (!number && IsNameStart(Peek())))) ++at_;
    return std::string(body_.substr(start, at_ - start));
  }

  std::string ValueOf(const std::string& name) const {
    const auto known = defaults_.find(name);
    return known != defaults_.end() ? known->second : std::string();
  }

  std::optional<std::string> ReadInBraces(const std::string& name, int depth) {
    if (Skip('}')) return ValueOf(name);
    if (depth < kDeepest && Skip(':')) {
      std::string text = ReadText(depth + 1, true);
      if (!Skip('}')) return std::nullopt;
      if (defaults_.emplace(name, text).second) choices_[name] = {text};
      return text;
    }
    if (IsDigit(name.front()) && Skip('|')) return ReadChoice(name);
    if (Skip('/')) return SkipTransformation() ? std::optional(ValueOf(name)) : std::nullopt;
    return std::nullopt;
  }

  /// The first of the texts to choose from.
  std::optional<std::string> ReadChoice(const std::string& name) {
    std::vector<std::string> choices(1);
    const std::size_t end = std::min(body_.size(), at_ + kLongest);
    while (at_ < end) {
      if (Peek() == '|' && Peek(1) == '}') {
        at_ += 2;
        std::string first = choices.front();
        if (defaults_.emplace(name, first).second) choices_[name] = std::move(choices);
        return first;
      }
      const bool escape = Peek() == '\\' && (Peek(1) == ',' || Peek(1) == '|' || Peek(1) == '\\');
      if (escape) ++at_;
      if (!escape && Peek() == ',') {
        choices.emplace_back();
      } else {
        choices.back() += Peek();
      }
      ++at_;
    }
    return std::nullopt;
  }

  /// `expression/format/options}`: its result depends on the editor.
  bool SkipTransformation() {
    int slashes = 0;
    int braces = 0;
    const std::size_t end = std::min(body_.size(), at_ + kLongest);
    for (; at_ < end; ++at_) {
      const char c = Peek();
      if (c == '\\') {
        ++at_;
      } else if (c == '/' && braces == 0) {
        ++slashes;
      } else if (c == '{' && slashes == 1) {
        ++braces;
      } else if (c == '}' && braces > 0) {
        --braces;
      } else if (c == '}' && slashes == 2) {
        ++at_;
        return true;
      }
    }
    return false;
  }

  std::string_view body_;
  bool asFields_;
  std::size_t at_ = 0;
  std::size_t placeholders_ = 0;
  std::map<std::string, std::string> defaults_;
  std::map<std::string, std::vector<std::string>> choices_;  ///< The default first.
  std::unordered_set<std::size_t> none_;  ///< Places of a "$" that does not begin a placeholder.
};

}  // namespace

TemplateText ReadSnippetTemplate(std::string_view body, bool asFields) {
  return TemplateReader(body, asFields).Read();
}

std::string WriteSnippetTemplate(std::string_view code) {
  std::string body;
  std::vector<std::string> numbered;
  const auto asked = AskedFields(code);
  const auto write = [&](const CodeField& field) {
    if (EqualsIgnoringAsciiCase(field.name, kDateField)) return body.append(kDateVariables);
    for (const auto& [name, variable] : kVariables) {
      if (EqualsIgnoringAsciiCase(field.name, name)) return body.append("$").append(variable);
    }
    const auto same = [&field](const auto& name) { return EqualsIgnoringAsciiCase(name, field.name); };
    const auto earlier = std::find_if(numbered.begin(), numbered.end(), same);
    const std::string number = std::to_string(earlier - numbered.begin() + 1);
    if (earlier != numbered.end()) return body.append("$").append(number);
    numbered.push_back(field.name);
    const auto first =
        std::find_if(asked.begin(), asked.end(), [&](const CodeField& each) { return same(each.name); });
    const bool hasChoices = first != asked.end() && !first->choices.empty();
    const std::vector<std::string> choices = hasChoices ? first->choices : std::vector{field.name};
    body.append("${").append(number);
    if (choices.size() == 1) return body.append(":").append(Escaped(choices.front(), "$}\\")).append("}");
    for (std::size_t i = 0; i < choices.size(); ++i) {
      body.append(i == 0 ? "|" : ",").append(Escaped(choices[i], ",|\\"));
    }
    return body.append("|}");
  };
  std::size_t done = 0;
  for (const CodeField& field : FieldsIn(code)) {
    body += Escaped(code.substr(done, field.begin - done), "$}\\");
    write(field);
    done = field.end;
  }
  return body + Escaped(code.substr(done), "$}\\");
}

}  // namespace snip
