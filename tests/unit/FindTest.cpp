#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <numeric>
#include <random>

#include "find/Finder.h"
#include "find/Tags.h"
#include "library/BnsFormat.h"
#include "tests/unit/WesternLetters.h"

namespace snip::test {
namespace {

using Names = std::vector<std::string>;

Folding Latin1() {
  std::array<char32_t, 256> characters{};
  std::iota(characters.begin(), characters.end(), U'\0');
  return {WesternLetters(), characters};
}

Folding ShiftJis() {
  std::array<bool, 256> lead{};
  std::fill(lead.begin() + 0x81, lead.begin() + 0xA0, true);
  std::fill(lead.begin() + 0xE0, lead.begin() + 0xFD, true);
  return Folding::DoubleByte(lead);
}

SearchedLibraryPtr MakeLibrary(const std::string& name, const std::vector<Snippet>& snippets,
                               const Folding& folding) {
  const auto library = std::make_shared<SearchedLibrary>(name, name);
  for (const Snippet& snippet : snippets) library->Add(snippet, folding);
  return library;
}

/// The names of what is found, at most so many.
Names FoundNames(Finder& finder, const std::string& query, std::size_t most) {
  Names names;
  for (const Found& found : finder.Search(query)) {
    if (names.size() < most) names.emplace_back(finder.SnippetOf(found).Name);
  }
  return names;
}

/// Procedures of a made library: each verb with each object.
std::vector<Snippet> Procedures() {
  std::vector<Snippet> snippets;
  for (const std::string verb : {"Read", "Write", "Delete"}) {
    for (const std::string object :
         {"StringFromRegistry", "IniFile", "HTTPServerName", "window_text", "Caf\xE9"}) {
      snippets.push_back({.Name = verb + object,
                          .Attachment = "",
                          .Code = "Call " + verb + "It(\"" + object + "\", 42)",
                          .Description = verb + "s it. #" + object + " #C-" + verb + " C#no #1"});
    }
  }
  return snippets;
}

class FindTest : public testing::Test {
 protected:
  Folding folding = Latin1();
  Finder finder{folding};
};

TEST_F(FindTest, TheBestComesFirst) {
  std::vector<SearchedLibraryPtr> libraries;
  for (const std::string name : {"API Declarations", "Controls and Forms", "Dates and Times",
                                 "Error Handling", "Files and Folders", "Strings"}) {
    std::ifstream file(SNIPSTORE_STARTER_LIBRARIES "/" + name + ".bns", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    libraries.push_back(MakeLibrary(name, std::get<BnsContents>(ReadBns(bytes)).snippets, folding));
  }
  libraries.push_back(MakeLibrary("Procedures", Procedures(), folding));
  finder.SetLibraries(libraries);
  std::ifstream table(SNIPSTORE_SCRIPTS "/find.txt");
  int queries = 0;
  for (std::string line; std::getline(table, line);) {
    const auto arrow = line.find(" => ");
    if (arrow == std::string::npos) continue;
    ++queries;
    std::string found;
    for (const std::string& name : FoundNames(finder, line.substr(0, arrow), 3)) found += " | " + name;
    EXPECT_EQ(line.substr(0, arrow) + " => " + (found.empty() ? "nothing" : found.substr(3)), line);
  }
  EXPECT_GE(queries, 60);
}

TEST_F(FindTest, CaseAndAccentsAreFoldedAndCharactersStayWhole) {
  const Folding shiftJis = ShiftJis();
  const Folding utf8 = Folding::Utf8();
  struct Case {
    const Folding& folding;
    std::string text, word;
    std::optional<std::size_t> at;
  };
  const Case cases[] = {
      {folding, "un CAF\xC9 noir", "cafe", 3},
      {folding, "un cafe noir", "Caf\xE9", 3},
      {folding, "\xC5\xE7\xFF", "acy", 0},
      {folding, "[x]", "{x}", std::nullopt},
      {folding, "", "a", std::nullopt},
      {shiftJis, "\x83\x41 a", "A", 3},  // the first character's second byte looks like an A
      {shiftJis, "\x83\x61\x83\x41", "\x83\x41", 2},
      {shiftJis, "\x83\x83\x41", "\x83\x41", std::nullopt},
      {shiftJis, "TEXT\x83\x41", "text\x83\x41", 0},
      {utf8, "x\xC3\xA9Y", "\xC3\xA9y", 1},
      {utf8, "\xC3\xA9", "\xA9", std::nullopt},
  };
  for (const Case& one : cases) {
    for (const std::size_t blanks :
         {0U, 1U, 15U, 16U, 40U}) {  // in and behind the blocks that are read at once
      const auto found = Needle(one.word, one.folding).Find(std::string(blanks, ' ') + one.text);
      EXPECT_EQ(found, one.at ? std::optional(*one.at + blanks) : std::nullopt)
          << one.text << " " << one.word;
    }
  }
}

/// Texts of few characters, so that they have much in common.
class RandomTexts {
 public:
  std::string Text(std::size_t most) {
    std::string text(random_() % (most + 1), ' ');
    for (char& byte : text) byte = kBytes[random_() % kBytes.size()];
    return text;
  }
  std::string Query() {
    const std::string_view parts[] = {"", "-", "\"", "#", "name:", "code:", "in:", "-in:", "-\"", "name:\""};
    std::string query;
    for (auto terms = 1 + random_() % 3; terms > 0; --terms)
      query += std::string(parts[random_() % std::size(parts)]) + Text(3) + " ";
    return query;
  }

 private:
  static constexpr std::string_view kBytes = "aAbB_ x#\"-\xE9\xC9\x83";
  std::mt19937 random_{22};
};

TEST_F(FindTest, RandomQueriesFindWhatASimpleSearchFinds) {
  RandomTexts random;
  const Folding foldings[] = {Latin1(), ShiftJis(), Folding::Utf8()};
  for (int round = 0; round < 300; ++round) {
    const Folding& all = foldings[round % 3];
    const std::string text = random.Text(60);
    const Needle needle(random.Text(3), all);
    const std::size_t length = needle.folded().size();
    std::optional<std::size_t> expected;
    for (std::size_t at = 0; at + length <= text.size() && length > 0 && !expected; ++at) {
      const bool whole = all.BeginsCharacter(text, at) && all.BeginsCharacter(text, at + length);
      if (whole && all.Fold(text.substr(at, length)) == needle.folded()) expected = at;
    }
    ASSERT_EQ(needle.Find(text), expected) << text << " " << needle.folded();

    std::vector<SearchedLibraryPtr> libraries;
    for (const std::string name : {"a", "xb", ""}) {
      std::vector<Snippet> snippets(10);
      for (Snippet& snippet : snippets) snippet = {random.Text(8), "", random.Text(40), random.Text(20)};
      libraries.push_back(MakeLibrary(name, std::move(snippets), all));
    }
    Finder typing(all);
    typing.SetLibraries(libraries);
    const std::string query = random.Query();
    for (std::size_t typed = 0; typed <= query.size(); ++typed) {
      Finder fresh(all);
      fresh.SetLibraries(libraries);
      ASSERT_EQ(typing.Search(query.substr(0, typed)), fresh.Search(query.substr(0, typed))) << query;
    }
    for (const Found& found : typing.found()) {
      const SearchedSnippet snippet = typing.SnippetOf(found);
      const std::pair<std::string_view, std::vector<TextRange>> marked[] = {
          {snippet.Name, typing.PlacesInName(snippet.Name)},
          {snippet.Description, typing.PlacesInDescription(snippet.Description)},
          {snippet.Code, typing.PlacesInCode(snippet.Code)}};
      for (const auto& [whole, places] : marked) {
        std::size_t end = 0;
        for (const TextRange& place : places) {
          ASSERT_TRUE(place.begin >= end && place.begin < place.end && place.end <= whole.size()) << query;
          end = place.end;
        }
      }
    }
  }
}

TEST_F(FindTest, EqualNamesKeepTheirOrderAndWhatWasUsedLatelyComesFirst) {
  std::vector<Snippet> equal(Library::kMaxSnippets, Snippet{"ReadIt", "", "code", ""});
  equal[7].Code = "special";
  finder.SetLibraries({MakeLibrary("Many", equal, folding), MakeLibrary("More", Procedures(), folding)});
  const auto& found = finder.Search("in:many readit");
  ASSERT_EQ(found.size(), Library::kMaxSnippets);
  for (std::uint32_t i = 0; i < found.size(); ++i) ASSERT_EQ(found[i].snippet, i);
  EXPECT_EQ(finder.Search("read special").size(), 1U);
  EXPECT_TRUE(finder.Search("read special -code").size() == 1U &&
              finder.Search("in:many readit -code:code").size() == 1U);

  EXPECT_EQ(FoundNames(finder, "in:more write", 2), (Names{"WriteStringFromRegistry", "WriteIniFile"}));
  finder.Use(finder.found()[2]);
  finder.SetLibraries({finder.libraries()[1]});
  EXPECT_EQ(FoundNames(finder, "write", 2), (Names{"WriteHTTPServerName", "WriteStringFromRegistry"}));
}

TEST_F(FindTest, TagsAreWordsBehindANumberSign) {
  const auto tags = CountTags({MakeLibrary("Procedures", Procedures(), folding)}, folding);
  Names names;
  for (const TagCount& tag : tags) names.push_back(tag.tag + " " + std::to_string(tag.count));
  EXPECT_EQ(names, (Names{"C-Delete 5", "C-Read 5", "C-Write 5", "Caf\xE9 3", "HTTPServerName 3", "IniFile 3",
                          "StringFromRegistry 3", "window_text 3"}));
}

}  // namespace
}  // namespace snip::test
