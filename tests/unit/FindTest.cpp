#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <tuple>

#include "find/Finder.h"
#include "find/Tags.h"
#include "library/BnsFormat.h"
#include "tests/unit/Foldings.h"
#include "ui/find/FoundWalk.h"
#include "ui/find/PaletteRows.h"

namespace snip::test {
namespace {

using Names = std::vector<std::string>;

class FindTest : public testing::Test {
 protected:
  SearchedLibraryPtr MakeLibrary(const std::string& name, const std::vector<Snippet>& snippets) const {
    const auto library = std::make_shared<SearchedLibrary>(name, name);
    for (const Snippet& snippet : snippets) library->Add(snippet, folding);
    return library;
  }
  SearchedLibraryPtr ReadFile(const std::filesystem::path& path) const {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    return MakeLibrary(path.stem().string(), std::get<BnsContents>(ReadBns(bytes)).snippets);
  }
  /// The first three names that are found.
  std::string FoundNames(const std::string& query) {
    std::string names;
    for (std::size_t i = 0; i < 3 && i < finder.Search(query).size(); ++i)
      names += (i > 0 ? " | " : "") + std::string(finder.SnippetOf(finder.found()[i]).Name);
    return names.empty() ? "nothing" : names;
  }

  const std::filesystem::path procedures{SNIPSTORE_SCRIPTS "/Procedures.bns"};
  Folding folding = Latin1();
  Finder finder{folding};
};

TEST_F(FindTest, TheBestComesFirst) {
  std::vector<SearchedLibraryPtr> libraries;
  for (const std::string name : {"API Declarations", "Controls and Forms", "Dates and Times",
                                 "Error Handling", "Files and Folders", "Strings"}) {
    libraries.push_back(ReadFile(SNIPSTORE_STARTER_LIBRARIES "/" + name + ".bns"));
  }
  libraries.push_back(ReadFile(procedures));
  finder.SetLibraries(libraries);
  std::ifstream table(SNIPSTORE_SCRIPTS "/find.txt");
  int queries = 0;
  for (std::string line; std::getline(table, line);) {
    const auto arrow = line.find(" => ");
    if (arrow == std::string::npos) continue;
    ++queries;
    EXPECT_EQ(line.substr(0, arrow) + " => " + FoundNames(line.substr(0, arrow)), line);
  }
  EXPECT_GE(queries, 60);
}

TEST_F(FindTest, CaseAndAccentsAreFoldedAndCharactersStayWhole) {
  const Folding shiftJis = ShiftJis();
  const Folding utf8 = Folding::Utf8();
  const std::tuple<const Folding&, std::string, std::string, std::optional<std::size_t>> cases[] = {
      {folding, "un CAF\xC9 noir", "cafe", 3},
      {folding, "un cafe noir", "Caf\xE9", 3},
      {folding, "\xC5\xE7\xFF", "acy", 0},
      {folding, "[x]", "{x}", std::nullopt},
      {shiftJis, "\x83\x41 a", "A", 3},  // the first character's second byte looks like an A
      {shiftJis, "\x83\x61\x83\x41", "\x83\x41", 2},
      {shiftJis, "\x83\x83\x41", "\x83\x41", std::nullopt},
      {utf8, "x\xC3\xA9Y", "\xC3\xA9y", 1},
  };
  for (const auto& [characters, text, word, at] : cases) {
    // In and behind the blocks that are read at once.
    for (const std::size_t blanks : {0U, 1U, 15U, 16U, 40U}) {
      const auto found = Needle(word, characters).Find(std::string(blanks, ' ') + text);
      EXPECT_EQ(found, at ? std::optional(*at + blanks) : std::nullopt) << text << " " << word;
    }
  }
}

TEST_F(FindTest, EqualNamesKeepTheirOrderAndWhatWasUsedLatelyComesFirst) {
  const std::vector<Snippet> equal(Library::kMaxSnippets, Snippet{"ReadIt", "", "code", ""});
  finder.SetLibraries({MakeLibrary("Many", equal), ReadFile(procedures)});
  const auto& found = finder.Search("in:many readit");
  ASSERT_EQ(found.size(), Library::kMaxSnippets);
  for (std::uint32_t i = 0; i < found.size(); ++i) ASSERT_EQ(found[i].snippet, i);

  EXPECT_EQ(FoundNames("in:proc write"), "WriteStringFromRegistry | WriteIniFile | WriteHTTPServerName");
  finder.Use(finder.found()[2]);
  const std::string used = "WriteHTTPServerName | WriteStringFromRegistry | WriteIniFile";
  EXPECT_EQ(FoundNames("in:proc write"), used);
  finder.SetLibraries({finder.libraries()[1]});
  EXPECT_EQ(FoundNames("write"), used);
}

TEST_F(FindTest, ThePalettesRowsBeginWithThePlacesInTheCode) {
  PaletteRows rows(folding);
  rows.finder().SetLibraries(
      {MakeLibrary("Words", {{"Fill twice", "", "x", "a #tag"}, {"Other", "", "a\r\nfill", ""}})});
  rows.Search("fill", "Sub A\r\n  Fill a: Fill\r\n  Fill b");
  Names spoken;
  for (int row = 0; row < rows.count(); ++row) spoken.push_back(rows.Row(row).Spoken());
  EXPECT_EQ(spoken, (Names{"In this snippet", "Fill a: Fill - line 2, in this snippet",
                           "Fill b - line 3, in this snippet", "In all libraries",
                           "Fill twice - Words, in the name", "Other - Words, in the code, line 2"}));
  // From row to row, past the headings.
  EXPECT_EQ(rows.First(), 1);
  for (const auto& [row, step, next] : {std::tuple{2, 1, 4}, {4, -1, 2}, {1, -1, 1}, {5, 1, 5}}) {
    EXPECT_EQ(rows.Step(row, step), next) << row;
  }
  for (int row = -1; row < 7; ++row) {
    const bool isPlace = row == 1 || row == 2;
    const bool isFound = row == 4 || row == 5;
    EXPECT_TRUE(rows.PlaceAt(row).has_value() == isPlace && rows.FoundAt(row).has_value() == isFound) << row;
    EXPECT_EQ(rows.RowOf(rows.IdentityOf(row)), isPlace || isFound ? row : -1);
  }
  EXPECT_EQ(rows.PlaceAt(2)->begin, 25U);
  EXPECT_EQ(rows.RowOf({"Words", "Other", 7}), 5) << "moved";
  EXPECT_EQ(rows.RowOf({"Words", "None", 1}), -1);

  rows.Search("nothing", "nothing");
  EXPECT_EQ(rows.count(), 2) << "no heading of an empty group";
  rows.ListTags();
  EXPECT_TRUE(rows.count() == 1 && rows.RowOf({.text = "tag"}) == 0);
  EXPECT_EQ(rows.Row(0).Spoken() + ", " + rows.TagAt(0) + rows.TagAt(1), "#tag - 1 snippet, tag");
  EXPECT_FALSE(rows.FoundAt(0) || rows.PlaceAt(0));
}

TEST_F(FindTest, WhatMatchedInADescriptionAndAroundItInALongLineIsMarked) {
  PaletteRows rows(folding);
  const std::string x(500, 'x');
  rows.finder().SetLibraries({MakeLibrary("L", {{"n", "", x + "fill" + x, ""}})});
  rows.Search("fill", {});
  const PaletteRow row = rows.Row(0);
  EXPECT_EQ(row.context, "..." + x.substr(0, 20) + "fill" + x.substr(0, 376));
  EXPECT_EQ(row.contextMarks, (std::vector<TextRange>{{23, 27}}));
  const Folding utf8 = Folding::Utf8();
  EXPECT_EQ(MatchName(Needle("x", utf8), false, "a.xy", utf8), HitPlace::WordBegin);
  for (const auto& [query, end] : {std::pair("fill -see", 9U), {"name:see fill", 9U}, {"#fill", 11U}}) {
    finder.Search(query);
    const auto places = finder.PlacesInDescription("see #filled");
    ASSERT_EQ(places.size(), 1U) << query;
    EXPECT_EQ(places[0].end, end) << query;
  }
}

TEST_F(FindTest, AWalkGoesThroughThePlacesInTheCodeAndOnToTheNextSnippet) {
  struct Shown : WalkTarget {
    std::vector<Snippet> snippets{
        {"a", "", "fill, fill", ""}, {"b", "", "fill", ""}, {"c", "", "x fill", ""}};
    std::size_t at = 0;
    TextRange selected;
    Went answer = Went::There;
    std::optional<std::string> ShownCode() override { return snippets[at].Code; }
    Went GoTo(const FindDestination& destination) override {
      if (answer == Went::There) at = destination.snippet;
      return answer;
    }
    void SelectInCode(TextRange place) override { selected = place; }
    TextRange SelectedInCode() override { return selected; }
  } shown;
  finder.SetLibraries({MakeLibrary("L", shown.snippets)});
  FoundWalk walk(shown, finder);
  EXPECT_EQ(walk.GoOn(true), std::nullopt) << "nothing was looked for";
  finder.Search("fill");
  walk.BeginAt(finder.found()[0]);
  std::string places;
  for (const char step : std::string("0++++----")) {
    if ((step == '0' ? walk.Go() : walk.GoOn(step == '+')) == Went::There)
      places += shown.snippets[shown.at].Name + std::to_string(shown.selected.begin) + " ";
  }
  EXPECT_EQ(places, "a0 a6 b0 c2 b0 a6 a0 ");
  EXPECT_EQ(walk.GoOn(false), Went::Nowhere) << "the walk ends at the first";
  walk.GoOn(true);
  // A window that stays leaves the walk where it is; past a snippet that is missing it goes on.
  for (const auto& [answer, at] : {std::pair{Went::Nowhere, 0U}, {Went::Missing, 0U}, {Went::There, 2U}}) {
    shown.answer = answer;
    EXPECT_EQ(walk.GoOn(true), answer);
    EXPECT_EQ(shown.at, at);
  }
  walk.Forget();
  walk.BeginInCode();
  shown.at = 0;
  EXPECT_EQ(walk.GoOn(false), Went::There);
  EXPECT_EQ(shown.selected.begin, 6U) << "within the code a walk goes round";
  walk.Forget();
  finder.Search("x");
  EXPECT_TRUE(walk.GoOn(true) == Went::There && shown.at == 2) << "what is looked for next begins a new walk";
}

TEST_F(FindTest, TagsAreWordsBehindANumberSign) {
  std::string found;
  for (const TagCount& tag : CountTags({ReadFile(procedures)}, folding))
    found += tag.tag + " " + std::to_string(tag.count) + " ";
  EXPECT_EQ(found,
            "C-Delete 5 C-Read 5 C-Write 5 Caf\xE9 3 HTTPServerName 3 IniFile 3 StringFromRegistry 3 "
            "window_text 3 ");
  // Characters of which the second byte looks like a sign.
  const auto tags =
      CountTags({MakeLibrary("L", {{"", "", "", "\x83\x5B#no #x\x83\x5By\x83\x7Cz [#n["}})}, ShiftJis());
  EXPECT_TRUE(tags.size() == 2 && tags[0].tag == "n" && tags[1].tag == "x\x83\x5By\x83\x7Cz");
}

}  // namespace
}  // namespace snip::test
