#include "tests/fuzz/FuzzTargets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "app/StartMode.h"
#include "library/BnsFormat.h"
#include "platform/RegistryText.h"
#include "platform/Text.h"
#include "platform/TextFieldBytes.h"
#include "settings/Settings.h"
#include "settings/SettingsText.h"
#include "ui/commandbar/TextPropertyBag.h"
#include "ui/editor/WordRange.h"

namespace snip::test {
namespace {

void Require(bool holds, const char* what) {
  if (!holds) throw std::logic_error(what);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (;;) {
    const auto end = text.find(separator);
    parts.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + separator.size());
  }
}

// --- Libraries --------------------------------------------------------------------------------------------

/// Whether the format can hold a text of several lines: none of them ends its block or has blanks at its end.
bool FitsBlock(const std::string& text, std::string_view blockEnd) {
  const auto lines = Split(text, "\r\n");
  return std::none_of(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.ends_with(' ') || Trim(line) == blockEnd || Trim(line) == "...";
  });
}

bool FitsFormat(const Snippet& snippet) {
  return snippet.Name.find("\r\n") == std::string::npos &&
         snippet.Attachment.find("\r\n") == std::string::npos && !EndsSnippetList(snippet.Name) &&
         FitsBlock(snippet.Description, "(,)") && FitsBlock(snippet.Code, "(.)");
}

/// What the format can hold reads back as it was written.
void RequireRoundTrip(const std::vector<Snippet>& snippets) {
  if (snippets.empty() || !std::all_of(snippets.begin(), snippets.end(), FitsFormat)) return;
  const auto again = ReadBns(WriteBns(snippets));
  const auto& contents = std::get<BnsContents>(again);  // throws when it is no library
  Require(contents.version == BnsVersion::Version2 && contents.omitted == 0, "not all of it is read");
  Require(contents.snippets == snippets, "what was written reads otherwise");
}

void ReadLibrary(std::string_view input) {
  const auto result = ReadBns(input);
  const auto* contents = std::get_if<BnsContents>(&result);
  if (contents == nullptr) return;
  Require(contents->snippets.size() <= Library::kMaxSnippets, "more snippets than a library holds");
  std::size_t bytes = 0;
  for (const Snippet& snippet : contents->snippets) {
    for (const std::string* text :
         {&snippet.Name, &snippet.Attachment, &snippet.Code, &snippet.Description}) {
      bytes += text->size();
      for (std::string_view line : Split(*text, "\r\n")) {
        // Where a list ends twice, half a line end may be left.
        if (line.ends_with('\r')) line.remove_suffix(1);
        Require(input.find(line) != std::string_view::npos, "a line that is not in the file");
      }
    }
  }
  // A line end of one byte becomes one of two.
  Require(bytes <= 2 * input.size(), "more text than the file has");
  RequireRoundTrip(contents->snippets);
}

/// Any texts as snippets, four to each.
void WriteLibrary(std::string_view input) {
  const auto texts = Split(input, "|");
  std::vector<Snippet> snippets;
  for (std::size_t i = 0; i + 3 < texts.size(); i += 4) {
    snippets.push_back(
        {.Name = texts[i], .Attachment = texts[i + 1], .Code = texts[i + 2], .Description = texts[i + 3]});
  }
  RequireRoundTrip(snippets);
}

// --- Texts of the toolbar's properties --------------------------------------------------------------------

void ReadProperties(std::string_view input) {
  const std::array<NamedProperty, 5> known = {{{"Enabled", true},
                                               {"BorderStyle", std::int16_t{0}},
                                               {"MaskColor", ColorProperty{}},
                                               {"Font", FontProperty{}},
                                               {"MouseIcon", PictureProperty{}}}};
  const auto result = TextPropertyBag::Parse(input, known);
  if (const auto* error = std::get_if<PropertyTextError>(&result)) {
    const auto lines = 1 + std::count(input.begin(), input.end(), '\n');
    Require(error->line >= 1 && error->line <= lines && !error->message.empty(), "an error nowhere");
    return;
  }
  const auto& bag = std::get<TextPropertyBag>(result);
  const auto again = TextPropertyBag::Parse(bag.Text(), known);
  const auto* same = std::get_if<TextPropertyBag>(&again);
  Require(same != nullptr && same->Text() == bag.Text(), "properties that read otherwise once written");
  for (const NamedProperty& property : known) {
    Require(same->Read(property.name, property.value) == bag.Read(property.name, property.value),
            "a property that reads otherwise once written");
  }
}

// --- Settings and registry values -------------------------------------------------------------------------

void ReadStoredSettings(std::string_view input) {
  auto texts = Split(input, "\n");
  std::map<std::string, std::string> store;
  std::size_t next = 0;
  const ReadSetting read = [&](const char* section, const char* name) {
    const auto& [place, added] = store.try_emplace(std::string(section) + name, "");
    if (added && next < texts.size()) place->second = Trim(texts[next++]);
    return place->second;
  };
  const Settings settings = ReadSettings(read);
  constexpr double farthest = 32767.0 * 15;
  for (const double number :
       {settings.Top, settings.Left, settings.Width.value_or(151) * 1.0, settings.Height.value_or(151) * 1.0,
        settings.LeftPaneWidth.value_or(151) * 1.0}) {
    Require(std::abs(number) <= farthest, "a place that no screen has");
  }
  Require(!settings.FontSize || std::isfinite(*settings.FontSize), "a font size that is no number");

  SaveWindowSettings({.KeepOnTop = settings.KeepOnTop ? 1 : 0,
                      .ColorSyntax = settings.ColorSyntax,
                      .Top = settings.Top,
                      .Left = settings.Left,
                      .Width = settings.Width.value_or(0) * 1.0,
                      .Height = settings.Height.value_or(0) * 1.0,
                      .LeftPaneWidth = settings.LeftPaneWidth.value_or(0) * 1.0,
                      .DescriptionHeight = settings.DescriptionHeight.value_or(0) * 1.0},
                     [&](const char* section, const char* name, const std::string& text) {
                       store[std::string(section) + name] = text;
                     });
  Settings again = ReadSettings(read);
  // A place is kept in single precision.
  Require(static_cast<float>(again.Top) == static_cast<float>(settings.Top) &&
              static_cast<float>(again.Left) == static_cast<float>(settings.Left),
          "a place that reads otherwise once written");
  again.Top = settings.Top;
  again.Left = settings.Left;
  Require(again == settings, "settings that read otherwise once written");
}

void ReadRegistryValues(std::string_view input) {
  const std::string text(input);
  const auto number = NumberValueData(text);
  Require(!number || number->size() == 4, "a number of other than four bytes");
  Require(StrToHex(input).size() == 2 * input.size(), "hexadecimal text of another length");

  std::vector<std::string> strings = SplitMultiString(input);
  Require(
      std::none_of(strings.begin(), strings.end(),
                   [](const std::string& one) { return one.empty() || one.find('\0') != std::string::npos; }),
      "strings that are none");
  if (strings.empty()) return;
  const std::string data = MultiStringData(strings.front(), std::span(strings).subspan(1));
  Require(SplitMultiString(data) == strings, "strings that read otherwise once written");
}

// --- Fields, words and arguments --------------------------------------------------------------------------

void ShowInField(std::string_view input) {
  const TextFieldBytes field(input);
  const std::string& shown = field.shown();
  Require(shown.find('\0') == std::string::npos, "a text that ends early in its field");
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const bool pair = shown[i] == '\r' ? i + 1 < shown.size() && shown[i + 1] == '\n'
                                       : shown[i] != '\n' || (i > 0 && shown[i - 1] == '\r');
    Require(pair, "a line end that a field makes another of");
  }
  // A text of all byte values has nothing left to show its zero bytes as; white space is not taken for it.
  std::array<bool, 256> used{};
  std::fill(used.begin() + '\t', used.begin() + '\r' + 1, true);
  for (const char c : input) used[static_cast<unsigned char>(c)] = true;
  const bool allUsed = std::all_of(used.begin(), used.end(), [](bool one) { return one; });
  if (!allUsed) {
    std::string restored = field.Restore(shown);
    std::string expected(input);
    for (std::string* text : {&restored, &expected}) {
      std::erase_if(*text, [](char c) { return c == '\r' || c == '\n'; });
    }
    Require(restored == expected, "bytes that do not come back from the field");
  }

  const std::size_t column = input.empty() ? 0 : static_cast<unsigned char>(input.front());
  const ColumnRange word = WordAt(input, column);
  Require(word.begin <= word.end && word.end <= input.size(), "a word outside its line");
}

void ReadArguments(std::string_view input) {
  const auto arguments = Split(input, std::string_view("\0", 1));
  const bool embedding = std::any_of(arguments.begin(), arguments.end(), [](std::string argument) {
    std::transform(argument.begin(), argument.end(), argument.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return argument == "-embedding" || argument == "/embedding";
  });
  Require((StartModeFromArguments(arguments) == StartMode::Component) == embedding, "another way to start");
}

constexpr std::array<FuzzTarget, 7> kTargets = {{{"library", ReadLibrary},
                                                 {"writer", WriteLibrary},
                                                 {"properties", ReadProperties},
                                                 {"settings", ReadStoredSettings},
                                                 {"registry", ReadRegistryValues},
                                                 {"field", ShowInField},
                                                 {"arguments", ReadArguments}}};

}  // namespace

std::span<const FuzzTarget> FuzzTargets() {
  return kTargets;
}

}  // namespace snip::test
