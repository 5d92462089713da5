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
#include "find/Finder.h"
#include "library/BnsFormat.h"
#include "library/BnsRules.h"
#include "platform/RegistryText.h"
#include "platform/Text.h"
#include "platform/TextFieldBytes.h"
#include "settings/Settings.h"
#include "settings/SettingsText.h"
#include "tests/unit/Foldings.h"
#include "ui/editor/ColouredText.h"
#include "ui/editor/RtfText.h"
#include "ui/editor/VbTokens.h"
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

/// Whether the format can hold a text of several lines: none of them ends its block.
bool FitsBlock(const std::string& text, std::string_view blockEnd) {
  const auto lines = Split(text, "\r\n");
  return std::none_of(lines.begin(), lines.end(),
                      [&](const std::string& line) { return Trim(line) == blockEnd || Trim(line) == "..."; });
}

std::string WithoutTrailingBlanks(const std::string& text) {
  std::string kept;
  for (const std::string& line : Split(text, "\r\n")) kept += std::string(TrimRight(line)) + "\r\n";
  return kept.substr(0, kept.size() - 2);
}

bool FitsFormat(const Snippet& snippet) {
  return snippet.Name.find("\r\n") == std::string::npos &&
         snippet.Attachment.find("\r\n") == std::string::npos && !EndsSnippetList(snippet.Name) &&
         FitsBlock(snippet.Description, "(,)") && FitsBlock(snippet.Code, "(.)");
}

/// What the format can hold reads back as it was written, except trailing blanks of lines.
void RequireRoundTrip(std::vector<Snippet> snippets) {
  if (snippets.empty() || !std::all_of(snippets.begin(), snippets.end(), FitsFormat)) return;
  const auto again = ReadBns(WriteBns(snippets));
  const auto& contents = std::get<BnsContents>(again);  // throws when it is no library
  Require(contents.version == BnsVersion::Version2 && contents.omitted == 0, "not all of it is read");
  for (Snippet& snippet : snippets) {
    snippet.Description = WithoutTrailingBlanks(snippet.Description);
    snippet.Code = WithoutTrailingBlanks(snippet.Code);
  }
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
        // Where a list ends twice, half a line ending may be left.
        if (line.ends_with('\r')) line.remove_suffix(1);
        Require(input.find(line) != std::string_view::npos, "a line that is not in the file");
      }
    }
  }
  // A line ending of one byte becomes one of two.
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

// --- Code and its colours ---------------------------------------------------------------------------------

void RequireTokens(std::string_view line, LineState before, const LineTokens& result) {
  std::size_t place = 0;
  for (const VbToken& token : result.tokens) {
    Require(place <= token.begin && token.begin < token.end && token.end <= line.size(),
            "a token out of its place");
    place = token.end;
    const bool begun = token.kind != TokenKind::String || line[token.begin] == '"';
    const bool ended = token.kind != TokenKind::Comment || token.end == line.size();
    Require(begun && ended, "a string without a quote, or code behind a comment");
  }
  Require(StateAfterLine(line, before) == result.after, "a line that tells the next one two things");
}

/// What a control shows that is coloured only where it is told; a blank's colour is nobody's business.
struct CodeField {
  explicit CodeField(std::string shown) : text(std::move(shown)), hues(text.size(), Hue::Fore) {
    model.Load(text);
  }

  void Colour(std::size_t first, std::size_t end) {
    std::size_t place = 0;
    for (const HueRun& run : model.Finish(first, end)) {
      Require(place <= run.begin && run.begin < run.end && run.end <= text.size(), "a run out of its place");
      place = run.end;
      std::fill(Place(run.begin), Place(run.end), run.hue);
    }
  }

  /// Puts the text behind three bytes, which say how, in place of a part of the present one.
  void Edit(std::string_view edit) {
    const auto below = [&](std::size_t byte, std::size_t end) {
      return static_cast<unsigned char>(edit[byte]) * end / 256;
    };
    const std::size_t begin = below(0, text.size() + 1);
    const std::size_t end = begin + below(1, text.size() - begin + 1);
    const unsigned how = static_cast<unsigned char>(edit[2]);
    const auto hue = static_cast<Hue>(how % 5);
    const std::string_view inserted = edit.substr(3);
    text.replace(begin, end - begin, inserted);
    hues.insert(hues.erase(Place(begin), Place(end)), inserted.size(), hue);
    if (begin == end && hue == Hue::Unknown) {
      model.ReplaceAll(text);
    } else {
      model.Replace(begin, end, inserted, hue);
    }
    if (how / 5 % 4 == 1) model.SetColouring(!model.colouring());
    if (how / 5 % 4 == 2) model.ForgetHues(begin, begin + inserted.size());
    Require(model.text() == text, "a text that is not the one shown");
    const std::size_t line = model.LineAt(begin);
    Require(model.LineStart(line) <= begin, "a place in front of its line");
    Colour(line, line + 2);
  }

  void RequireColours(const CodeField& expected) const {
    for (std::size_t i = 0; i < text.size(); ++i) {
      Require(Blank(text[i]) || hues[i] == expected.hues[i], "a colour that a fresh text has not");
    }
  }

  static bool Blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
  std::vector<Hue>::iterator Place(std::size_t i) { return hues.begin() + static_cast<std::ptrdiff_t>(i); }

  std::string text;
  std::vector<Hue> hues;
  ColouredText model;
};

/// Reads RTF behind its header as a control does: what it shows, and the number of each character's colour.
struct ShownRtf {
  explicit ShownRtf(std::string_view rtf) {
    int color = 0;
    for (std::size_t i = 0; rtf.at(i) != '}'; ++i) {
      if (rtf[i] == '\n') continue;
      std::size_t end = i + 1;
      while (rtf[i] == '\\' && rtf.at(end) >= 'a' && rtf[end] <= 'z') ++end;
      if (end == i + 1) {
        if (rtf[i] == '\\') ++i;
        Add(static_cast<char16_t>(rtf[i]), color);
        continue;
      }
      const std::string_view word = rtf.substr(i + 1, end - i - 1);
      i = end;
      while (rtf.at(end) == '-' || (rtf[end] >= '0' && rtf[end] <= '9')) ++end;
      const int number = end > i ? std::stoi(std::string(rtf.substr(i, end - i))) : 0;
      // A blank belongs to the word, and a "u" stands in place of the character behind it.
      i = rtf[end] == ' ' || word == "u" ? end : end - 1;
      if (word == "cf") color = number;
      if (word == "u") Add(static_cast<char16_t>(number), color);
      if (word == "tab") Add(u'\t', color);
      if (word == "par") Add(u'\r', color);
    }
  }

  void Add(char16_t c, int color) {
    text += c;
    colors.push_back(color);
  }

  std::u16string text;
  std::vector<int> colors;
};

void RequireRtf(const CodeField& field) {
  std::u16string text;
  for (const char c : field.text) {
    const auto byte = static_cast<unsigned char>(c);
    // Letters from all over, those among them that RTF writes as negative numbers.
    text += static_cast<char16_t>(byte < 0x80 ? byte : byte * 0x101);
  }
  if (!FitsRtf(text)) return;
  ColouredText fresh;
  fresh.Load(field.text);
  const RtfLook look{.font = {.Name = "Courier New"}, .colours = {}};
  const std::string rtf = RtfOf(text, fresh.Finish(0, fresh.lineCount()), look);
  const ShownRtf shown(std::string_view(rtf).substr(rtf.find("\\cf")));
  Require(shown.text == text + u'\r', "RTF of another text");
  for (std::size_t i = 0; i < text.size(); ++i) {
    Require(CodeField::Blank(field.text[i]) || shown.colors[i] == static_cast<int>(field.hues[i]) + 1,
            "RTF in other colours");
  }
}

/// A text, and behind each zero byte an edit of it.
void ColourCode(std::string_view input) {
  LineState state = LineState::Fresh;
  for (const std::string& line : Split(input, "\r")) {
    const LineTokens tokens = TokensOfLine(line, state);
    RequireTokens(line, state, tokens);
    state = tokens.after;
  }
  const auto parts = Split(input, std::string_view("\0", 1));
  CodeField field(parts.front());
  for (const std::string& edit : std::span(parts).subspan(1)) {
    if (edit.size() >= 3) field.Edit(edit);
  }
  field.Colour(0, field.model.lineCount());
  Require(field.model.finished(), "lines that stay without colours");
  CodeField fresh(field.text);
  fresh.Colour(0, fresh.model.lineCount());
  RequireRtf(fresh);
  fresh.model.SetColouring(field.model.colouring());
  fresh.Colour(0, fresh.model.lineCount());
  field.RequireColours(fresh);
}

// --- Fields, words and arguments --------------------------------------------------------------------------

void ShowInField(std::string_view input) {
  const TextFieldBytes field(input);
  const std::string& shown = field.shown();
  Require(shown.find('\0') == std::string::npos, "a text that ends early in its field");
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const bool pair = shown[i] == '\r' ? i + 1 < shown.size() && shown[i + 1] == '\n'
                                       : shown[i] != '\n' || (i > 0 && shown[i - 1] == '\r');
    Require(pair, "a line ending that a field changes");
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

// --- Searching --------------------------------------------------------------------------------------------

void RequireSameAsSlowSearch(const Needle& needle, std::string_view text, const Folding& folding) {
  const std::string all(text);
  const std::size_t length = needle.folded().size();
  std::optional<std::size_t> expected;
  for (std::size_t at = 0; at + length <= all.size() && length > 0 && !expected; ++at) {
    const bool whole = folding.BeginsCharacter(all, at) && folding.BeginsCharacter(all, at + length);
    if (whole && folding.Fold(all.substr(at, length)) == needle.folded()) expected = at;
  }
  Require(needle.Find(text) == expected, "a word that is found elsewhere");
}

void RequireMarksIn(std::string_view text, const std::vector<TextRange>& marks) {
  std::size_t end = 0;
  for (const TextRange& mark : marks) {
    Require(mark.begin >= end && mark.begin < mark.end && mark.end <= text.size(), "a mark out of its place");
    end = mark.end;
  }
}

/// The number of a code page, a query and, after a line ending, a library.
void FindSnippets(std::string_view input) {
  static const Folding foldings[] = {Latin1(), ShiftJis(), Folding::Utf8()};
  const std::size_t end = input.find('\n');
  if (end == std::string_view::npos || end == 0) return;
  const auto read = ReadBns(input.substr(end + 1));
  const auto* contents = std::get_if<BnsContents>(&read);
  if (contents == nullptr) return;
  const Folding& folding = foldings[static_cast<unsigned char>(input.front()) % 3];
  const auto copied = std::make_shared<SearchedLibrary>("a", "a");
  for (const Snippet& snippet : contents->snippets) copied->Add(snippet, folding);
  const std::vector<SearchedLibraryPtr> libraries{
      copied, std::make_shared<SearchedLibrary>("xb", "xb", &contents->snippets, folding)};

  const std::string_view query = input.substr(1, end - 1);
  Finder typing(folding);
  typing.SetLibraries(libraries);
  constexpr std::size_t mostTyped = 12;
  for (std::size_t typed = query.size() - std::min(query.size(), mostTyped); typed <= query.size(); ++typed) {
    Finder fresh(folding);
    fresh.SetLibraries(libraries);
    Require(typing.Search(query.substr(0, typed)) == fresh.Search(query.substr(0, typed)),
            "other snippets while typing than at once");
  }
  for (const Found& one : typing.found()) {
    const SearchedSnippet texts = typing.SnippetOf(one);
    RequireMarksIn(texts.Name, typing.PlacesInName(texts.Name));
    RequireMarksIn(texts.Description, typing.PlacesInDescription(texts.Description));
    RequireMarksIn(texts.Code, typing.PlacesInCode(texts.Code));
  }
  for (const QueryTerm& term : typing.query().terms) {
    for (const Snippet& snippet : contents->snippets) {
      RequireSameAsSlowSearch(term.needle, snippet.Code, folding);
    }
  }
}

constexpr std::array<FuzzTarget, 8> kTargets = {{{"library", ReadLibrary},
                                                 {"find", FindSnippets},
                                                 {"writer", WriteLibrary},
                                                 {"settings", ReadStoredSettings},
                                                 {"registry", ReadRegistryValues},
                                                 {"code", ColourCode},
                                                 {"field", ShowInField},
                                                 {"arguments", ReadArguments}}};

}  // namespace

std::span<const FuzzTarget> FuzzTargets() {
  return kTargets;
}

}  // namespace snip::test
