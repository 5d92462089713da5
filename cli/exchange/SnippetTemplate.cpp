#include "cli/exchange/SnippetTemplate.h"

#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>
#include <unordered_set>

namespace snip {
namespace {

// Bodies come from anywhere, and reading them must end: what exceeds these limits is no placeholder.
constexpr int kDeepest = 32;                 // placeholders in defaults of placeholders
constexpr std::size_t kLongest = 4096;       // choices and transformations, in bytes
constexpr std::size_t kLargest = 1U << 20U;  // what a body may become, in bytes

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

class TemplateReader {
 public:
  explicit TemplateReader(std::string_view body) : body_(body) {}

  TemplateText Read() {
    // Twice, since a mention may come before the placeholder that has the default.
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
    ++placeholders_;
    return value;
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
      defaults_.emplace(name, text);
      return text;
    }
    if (IsDigit(name.front()) && Skip('|')) return ReadChoice(name);
    if (Skip('/')) return SkipTransformation() ? std::optional(ValueOf(name)) : std::nullopt;
    return std::nullopt;
  }

  /// The first of the texts to choose from.
  std::optional<std::string> ReadChoice(const std::string& name) {
    std::string text;
    const std::size_t end = std::min(body_.size(), at_ + kLongest);
    for (bool first = true; at_ < end;) {
      if (Peek() == '|' && Peek(1) == '}') {
        at_ += 2;
        defaults_.emplace(name, text);
        return text;
      }
      const bool escape = Peek() == '\\' && (Peek(1) == ',' || Peek(1) == '|' || Peek(1) == '\\');
      if (escape) ++at_;
      first = first && (escape || Peek() != ',');
      if (first) text += Peek();
      ++at_;
    }
    return std::nullopt;
  }

  /// `expression/format/options}`: what it would make of a default depends on the editor.
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
  std::size_t at_ = 0;
  std::size_t placeholders_ = 0;
  std::map<std::string, std::string> defaults_;
  std::unordered_set<std::size_t> none_;  ///< Where a "$" was found to begin no placeholder.
};

}  // namespace

TemplateText ReadSnippetTemplate(std::string_view body) {
  return TemplateReader(body).Read();
}

std::string EscapeForSnippetTemplate(std::string_view code) {
  std::string body;
  for (const char c : code) {
    if (c == '$' || c == '}' || c == '\\') body += '\\';
    body += c;
  }
  return body;
}

}  // namespace snip
