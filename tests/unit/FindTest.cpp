#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "find/Finder.h"
#include "find/Tags.h"
#include "library/BnsFormat.h"
#include "tests/unit/Foldings.h"

namespace snip::test {
namespace {

using Names = std::vector<std::string>;

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
