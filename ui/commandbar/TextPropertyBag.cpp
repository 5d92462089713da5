#include "ui/commandbar/TextPropertyBag.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/Numbers.h"
#include "platform/Text.h"

namespace snip {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

struct FontStyle {
  std::string_view word;
  bool FontProperty::*member;
};

constexpr std::array<FontStyle, 4> kFontStyles = {{{"Bold", &FontProperty::Bold},
                                                   {"Italic", &FontProperty::Italic},
                                                   {"Underline", &FontProperty::Underline},
                                                   {"Strikethrough", &FontProperty::Strikethrough}}};

struct Escape {
  char letter;
  char character;
};

constexpr std::array<Escape, 5> kEscapes = {
    {{'"', '"'}, {'\\', '\\'}, {'r', '\r'}, {'n', '\n'}, {'t', '\t'}}};

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// What the parser throws and `Parse` turns into its result.
struct Refused {
  std::string message;
};

/// Takes one line apart.
class LineParser {
 public:
  explicit LineParser(std::string_view line) : rest_(line) {}

  NamedProperty Property() {
    NamedProperty property;
    property.name = Word();
    if (property.name.empty()) throw Refused{"a property name is expected"};
    if (!Take('=')) throw Refused{"\"=\" is expected after the name"};
    property.value = Value();
    SkipBlanks();
    if (!rest_.empty()) throw Refused{"nothing may follow the value"};
    return property;
  }

 private:
  void SkipBlanks() { rest_ = TrimLeft(rest_); }

  bool Next(char c) {
    SkipBlanks();
    return rest_.starts_with(c);
  }

  bool Take(char c) {
    if (!Next(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view TakeFirst(std::size_t count) {
    const std::string_view first = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return first;
  }

  std::string_view Word() {
    SkipBlanks();
    const auto end = std::find_if_not(rest_.begin(), rest_.end(),
                                      [](char c) { return IsLetter(c) || IsDigit(c) || c == '_'; });
    if (rest_.empty() || !IsLetter(rest_.front())) return {};
    return TakeFirst(static_cast<std::size_t>(end - rest_.begin()));
  }

  PropertyValue Value() {
    if (Next('"')) return TextOrFont();
    if (Take('&')) return Color();
    if (const std::string_view word = Word(); !word.empty()) return Boolean(word);
    return WholeNumber<std::int16_t>(
        "a value is expected: True, False, a number from -32768 to 32767, &H "
        "with a colour, or a text in quotes");
  }

  static bool Boolean(std::string_view word) {
    if (EqualsIgnoringAsciiCase(word, "True")) return true;
    if (EqualsIgnoringAsciiCase(word, "False")) return false;
    throw Refused{"a word is True or False; a text is put in quotes"};
  }

  /// What a number must fill up: all before a comma or blank.
  std::string_view NumberPart() {
    SkipBlanks();
    return TakeFirst(std::min(rest_.find_first_of(", "), rest_.size()));
  }

  template <typename Type>
  Type WholeNumber(const char* complaint) {
    const std::string_view digits = NumberPart();
    Type number{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) throw Refused{complaint};
    return number;
  }

  ColorProperty Color() {
    constexpr const char* kComplaint = "a colour is &H with one to eight hexadecimal digits";
    if (rest_.empty() || (rest_.front() != 'H' && rest_.front() != 'h')) throw Refused{kComplaint};
    rest_.remove_prefix(1);
    const std::string_view digits = TakeFirst(std::min(rest_.find(' '), rest_.size()));
    ColorProperty color;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), color.value, 16);
    if (digits.size() > 8 || error != std::errc() || end != digits.data() + digits.size()) {
      throw Refused{kComplaint};
    }
    return color;
  }

  PropertyValue TextOrFont() {
    std::string text = QuotedText();
    if (!Take(',')) return PictureProperty{std::move(text)};

    FontProperty font;
    font.Name = std::move(text);
    constexpr const char* kComplaint = "a font size is a number of points";
    const std::string_view digits = NumberPart();
    const auto size = ReadNumber(digits);
    if (!size || size->length != digits.size() || size->value < 0) throw Refused{kComplaint};
    font.Size = size->value;
    bool hasCharset = false;
    while (Take(',')) FontAttribute(font, hasCharset);
    return font;
  }

  void FontAttribute(FontProperty& font, bool& hasCharset) {
    const std::string_view word = Word();
    if (EqualsIgnoringAsciiCase(word, "Charset")) {
      if (std::exchange(hasCharset, true)) throw Refused{"Charset stands twice"};
      font.Charset = WholeNumber<std::uint8_t>("a character set is a number from 0 to 255");
      return;
    }
    for (const auto& [name, member] : kFontStyles) {
      if (!EqualsIgnoringAsciiCase(word, name)) continue;
      if (std::exchange(font.*member, true)) throw Refused{std::string(name) + " stands twice"};
      return;
    }
    throw Refused{"Bold, Italic, Underline, Strikethrough or Charset is expected after the comma"};
  }

  std::string QuotedText() {
    std::string text;
    rest_.remove_prefix(1);
    for (;;) {
      if (rest_.empty()) throw Refused{"the closing quotation mark is missing"};
      const char c = TakeFirst(1).front();
      if (c == '"') return text;
      text += c == '\\' ? EscapedCharacter() : c;
    }
  }

  char EscapedCharacter() {
    const char letter = rest_.empty() ? '\0' : TakeFirst(1).front();
    for (const auto& [escape, character] : kEscapes) {
      if (letter == escape) return character;
    }
    const std::string_view digits = letter == 'x' ? TakeFirst(std::min<std::size_t>(2, rest_.size())) : "";
    std::uint8_t byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() != 2 || error != std::errc() || end != digits.data() + digits.size()) {
      throw Refused{"a backslash in quotes is followed by \\, \", r, n, t, or x and two hexadecimal digits"};
    }
    return static_cast<char>(byte);
  }

  std::string_view rest_;
};

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const auto* escape = std::find_if(kEscapes.begin(), kEscapes.end(),
                                      [c](const Escape& candidate) { return candidate.character == c; });
    if (escape != kEscapes.end()) {
      quoted.append({'\\', escape->letter});
    } else if (byte < ' ' || byte == 0x7F) {
      quoted.append({'\\', 'x', kHexDigits[byte >> 4], kHexDigits[byte & 0xF]});
    } else {
      quoted += c;
    }
  }
  return quoted += '"';
}

struct ValueText {
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(std::int16_t value) const { return std::to_string(value); }
  std::string operator()(const PictureProperty& value) const { return Quoted(value.file); }

  std::string operator()(ColorProperty color) const {
    std::string digits;
    do {
      digits.insert(digits.begin(), kHexDigits[color.value & 0xF]);
      color.value >>= 4;
    } while (color.value != 0);
    return "&H" + digits;
  }

  std::string operator()(const FontProperty& font) const {
    std::string text = Quoted(font.Name) + ", " + DoubleText(font.Size);
    for (const auto& [word, member] : kFontStyles) {
      if (font.*member) text.append(", ").append(word);
    }
    if (font.Charset != FontProperty{}.Charset) text += ", Charset " + std::to_string(font.Charset);
    return text;
  }
};

std::string_view TypeName(const PropertyValue& value) {
  constexpr std::array<std::string_view, std::variant_size_v<PropertyValue>> kNames = {
      "True or False", "a number", "a colour", "a font", "a picture file in quotes"};
  return kNames[value.index()];
}

auto HasName(std::string_view name) {
  return [name](const NamedProperty& property) { return EqualsIgnoringAsciiCase(property.name, name); };
}

}  // namespace

std::variant<TextPropertyBag, PropertyTextError> TextPropertyBag::Parse(
    std::string_view text, std::span<const NamedProperty> known) {
  TextPropertyBag bag;
  for (int line = 1; !text.empty(); ++line) {
    const auto lineFeed = text.find('\n');
    std::string_view content = text.substr(0, lineFeed);
    text.remove_prefix(lineFeed == std::string_view::npos ? text.size() : lineFeed + 1);
    if (content.ends_with('\r')) content.remove_suffix(1);
    if (Trim(content).empty()) continue;

    try {
      NamedProperty property = LineParser(content).Property();
      if (std::any_of(bag.properties_.begin(), bag.properties_.end(), HasName(property.name))) {
        throw Refused{property.name + " stands twice"};
      }
      const auto expected = std::find_if(known.begin(), known.end(), HasName(property.name));
      if (expected != known.end() && expected->value.index() != property.value.index()) {
        throw Refused{property.name + " is " + std::string(TypeName(expected->value))};
      }
      bag.properties_.push_back(std::move(property));
    } catch (const Refused& refused) {
      return PropertyTextError{line, refused.message};
    }
  }
  return bag;
}

std::string TextPropertyBag::Text() const {
  std::string text;
  for (const auto& [name, value] : properties_) {
    text.append(name).append(" = ").append(std::visit(ValueText{}, value)).append("\r\n");
  }
  return text;
}

PropertyValue TextPropertyBag::Read(std::string_view name, const PropertyValue& defaultValue) const {
  const auto found = std::find_if(properties_.begin(), properties_.end(), HasName(name));
  const bool usable = found != properties_.end() && found->value.index() == defaultValue.index();
  return usable ? found->value : defaultValue;
}

void TextPropertyBag::Write(std::string_view name, const PropertyValue& value,
                            const PropertyValue& defaultValue) {
  const auto found = std::find_if(properties_.begin(), properties_.end(), HasName(name));
  if (value == defaultValue) {
    if (found != properties_.end()) properties_.erase(found);
  } else if (found != properties_.end()) {
    found->value = value;
  } else {
    properties_.push_back({std::string(name), value});
  }
}

}  // namespace snip
