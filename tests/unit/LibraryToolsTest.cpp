#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "library/BnsCheck.h"
#include "library/BnsFormat.h"
#include "library/BnsSearch.h"
#include "tests/unit/GeneratedLibrary.h"
#include "tests/unit/WesternLetters.h"

namespace snip::test {
namespace {

const LetterTable kLetters = WesternLetters();

/// Files made of the lines that the format is about, in an order that it is mostly not about.
std::string RandomFile(std::mt19937& random) {
  static const std::vector<std::string> lines = {"(,)",  "(.)",  "...",   " (,)", "(.)  ", "  ...",
                                                 ".",    "..",   "",      "name", "x  ",   "\t(.)",
                                                 "a\rb", "a\nb", "(.)\r", "(,)x", "....",  "\n"};
  const std::string lineEnding = random() % 3 == 0 ? "\n" : "\r\n";
  std::string file = random() % 4 == 0 ? "bns1.0" : "BNS2.0";
  for (auto count = random() % 20; count > 0; --count) file += lineEnding + lines[random() % lines.size()];
  return random() % 3 == 0 ? file : file + lineEnding;
}

/// Takes a file's lines one by one.
struct Lines : BnsEvents {
  std::string file;
  std::vector<std::string> names;

  void OnLine(BnsSection section, std::string_view line, std::string_view lineInFile) override {
    file += lineInFile;
    if (section == BnsSection::Name) names.emplace_back(line);
  }
};

TEST(BnsScannerTest, ReportsAllLinesOfAFile) {
  std::mt19937 random(1);
  std::size_t harmless = 0;
  for (int i = 0; i < 4000; ++i) {
    const std::string file = RandomFile(random);
    SCOPED_TRACE(testing::PrintToString(file));
    const auto contents = std::get<BnsContents>(ReadBns(file));
    BytesInMemory bytes(file);
    BnsScanner scanner(bytes);
    ASSERT_EQ(scanner.version(), contents.version);
    Lines lines;
    scanner.Scan(lines);
    ASSERT_EQ(lines.file, scanner.HasMore() ? file.substr(0, lines.file.size()) : file);
    for (std::size_t n = 0; n < lines.names.size(); ++n) {
      ASSERT_EQ(lines.names[n], contents.snippets[n].Name);
    }

    // A file of which saving loses nothing has the same text when it is saved.
    const auto problems = CheckLibrary(file, kLetters);
    const auto isLost = [](const Problem& problem) { return problem.lostOnSave; };
    if (std::any_of(problems.begin(), problems.end(), isLost)) continue;
    if (contents.version == BnsVersion::Version1) continue;
    ++harmless;
    const auto letters = [](std::string text) {
      std::erase_if(text, [](char c) { return c == ' ' || c == '\r' || c == '\n'; });
      return text.ends_with("...") ? text.substr(0, text.size() - 3) : text;
    };
    ASSERT_EQ(letters(WriteBns(contents.snippets)).substr(6), letters(file).substr(6));
  }
  EXPECT_GT(harmless, 50U);
}

TEST(BnsCheckTest, SavedLibrariesHaveNoErrors) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    const auto library = GeneratedLibrary(seed);
    for (const Problem& problem : CheckLibrary(WriteBns(library), kLetters)) {
      EXPECT_FALSE(problem.lostOnSave) << seed << ": " << problem.line << ": " << problem.message;
    }
    EXPECT_EQ(std::get<BnsContents>(ReadBns(WriteBns(library))).snippets, library);
  }
}

struct Checked {
  std::string file;  ///< With LF for CR LF.
  std::vector<std::size_t> lines;
  const char* says;  ///< In the first message.
  const char* lineEnding = "\r\n";
};

TEST(BnsCheckTest, ProblemsHaveTheirLines) {
  for (const Checked& checked :
       std::vector<Checked>{{"BNS2.0\na\n\nd\n(,)\nc\n...\n", {}, ""},
                            {"BNS2.0\n...\n", {}, ""},
                            {"BNS2.0\na\n\nd\n(,)\nc\n...\n", {1}, "LF instead of CR LF", "\n"},
                            {"", {1}, "empty"},
                            {"x\n", {1}, "neither"},
                            {"\xEF\xBB\xBF"
                             "BNS2.0\n",
                             {1},
                             "byte order mark"},
                            {"BNS1.0\na\nd\nc\n..\n", {1}, "version 1"},
                            {"BNS2.0\n", {1}, "ends without"},
                            {"BNS2.0\na\n\nd\n", {4}, "before the code"},
                            {"BNS2.0\na\n\nd\n(,)\nc\n", {6}, "inside code"},
                            {"BNS2.0\na\n\nd\n(,)\nc\n(.)\n", {7}, "as an empty one"},
                            {"BNS2.0\na\n\nd\n(,)\nc\n(.)\n...\n", {8}, "last two characters"},
                            {"BNS2.0\na\n\nd\n(,)\nc\n...\nmore\n", {8}, "never read"},
                            {"BNS2.0\na\n\nd\n...\n", {5}, "no code"},
                            {"BNS2.0\na\n\nd\n(,)\n\tc\n\t...\n...\n", {7}, "marker"},
                            {"BNS2.0\na\n\nd \n(,)\nc\t(.)\n\t(.)\n...\n", {4, 7}, "spaces"},
                            {"BNS2.0\na\n\n(.)\n(,)\n(,)\n(.)\nA\n\n\n(,)\n\n...\n", {4, 6, 8}, "missing"},
                            {"BNS2.0\na\n\nd\n(,)\n<<<<<<< HEAD\n>>>>>>> x\n...\n", {6, 7}, "conflict"},
                            {"BNS2.0\na\n(,)\nd\n(,)\nc\x01\n...", {3, 6, 7}, "belongs"}}) {
    std::string file;
    for (const char c : checked.file) file += c == '\n' ? checked.lineEnding : std::string(1, c);
    std::vector<std::size_t> lines;
    const auto problems = CheckLibrary(file, kLetters);
    lines.reserve(problems.size());
    for (const Problem& problem : problems) lines.push_back(problem.line);
    EXPECT_EQ(lines, checked.lines) << checked.file;
    const std::string first = problems.empty() ? "" : problems.front().message;
    EXPECT_NE(first.find(checked.says), std::string::npos) << checked.file << ": " << first;
  }
}

TEST(BnsCheckTest, ThereIsRoomForSoManySnippets) {
  const std::vector<Snippet> full(Library::kMaxSnippets);
  EXPECT_EQ(CheckLibrary(WriteBns(full), kLetters).back().severity, Problem::Severity::Warning);
  const std::vector<Snippet> tooMany(Library::kMaxSnippets + 1);
  const auto problems = CheckLibrary(WriteBns(tooMany), kLetters);
  EXPECT_TRUE(std::any_of(problems.begin(), problems.end(), [](const Problem& problem) {
    return problem.lostOnSave && problem.line == 2 + 6 * Library::kMaxSnippets;
  }));
}

std::vector<std::size_t> Places(const Pattern& pattern, const std::string& text) {
  const Matcher matcher(pattern, kLetters);
  std::string room;
  const std::string_view folded = matcher.Fold(text, room);
  std::vector<std::size_t> places;
  for (auto match = matcher.Find(folded, 0); match; match = matcher.Find(folded, match->at + 1))
    places.push_back(match->at);
  return places;
}

TEST(MatcherTest, FindsWhatPlainComparisonFinds) {
  std::mt19937 random(2);
  const std::string letters = "aAbB\xE9\xC9 _";
  const auto text = [&](std::size_t longest) {
    std::string made;
    for (std::size_t n = 1 + random() % longest; n > 0; --n) made += letters[random() % letters.size()];
    return made;
  };
  for (int i = 0; i < 2000; ++i) {
    const Pattern pattern{.text = text(3), .ignoreCase = random() % 2 == 0, .wholeWord = random() % 2 == 0};
    const std::string searched = text(40);
    std::vector<std::size_t> expected;
    for (std::size_t at = 0; at + pattern.text.size() <= searched.size(); ++at) {
      const std::string there = searched.substr(at, pattern.text.size());
      const std::size_t end = at + there.size();
      const bool alone = (at == 0 || !kLetters.IsWord(searched[at - 1])) &&
                         (end == searched.size() || !kLetters.IsWord(searched[end]));
      const bool same =
          pattern.ignoreCase ? kLetters.Lower(there) == kLetters.Lower(pattern.text) : there == pattern.text;
      if (same && (alone || !pattern.wholeWord)) expected.push_back(at);
    }
    ASSERT_EQ(Places(pattern, searched), expected) << pattern.text << " in " << searched;
  }
  EXPECT_EQ(Places({.text = "A", .ignoreCase = true}, "aa"), (std::vector<std::size_t>{0, 1}));
}

TEST(MatcherTest, ExpressionsMatchWithinLines) {
  struct Expression {
    Pattern pattern;
    std::vector<std::size_t> places;
  };
  const std::string text = "Dim \xC9t\xE9$\r\nab1\r\nAB 2";  // lines at 0, 11 and 16
  for (const auto& [pattern, places] : std::vector<Expression>{
           {{.text = "^[a-z]+\\d$", .regularExpression = true}, {10}},
           {{.text = "^ab", .ignoreCase = true, .regularExpression = true}, {10, 15}},
           {{.text = "\xE9T\xC9", .ignoreCase = true, .regularExpression = true}, {4}},
           {{.text = "\\w+", .wholeWord = true, .regularExpression = true}, {0, 4, 10, 15, 18}},
           {{.text = "b.*A", .regularExpression = true}, {}},
           {{.text = "[^x]{8,}", .regularExpression = true}, {0}},
           {{.text = "(?=ab)", .regularExpression = true}, {10}},
           {{.text = "(?<!\\n)ab", .regularExpression = true}, {10}},
           {{.text = "^(?!.)", .regularExpression = true}, {}},
           {{.text = "\\Aab", .regularExpression = true}, {10}}}) {
    std::vector<std::size_t> lines;  // one match a line, as a search has it
    const Matcher matcher(pattern, kLetters);
    for (std::size_t from = 0; const auto match = matcher.Find(text, from);) {
      lines.push_back(match->at);
      from = pattern.wholeWord ? match->at + std::max<std::size_t>(match->length, 1)
                               : std::min(text.find('\n', match->at), text.size() - 1) + 1;
    }
    EXPECT_EQ(lines, places) << pattern.text;
  }
  EXPECT_THROW(Matcher({.text = "(", .regularExpression = true}, kLetters), std::invalid_argument);
  EXPECT_THROW(
      Matcher({.text = "(a*)*b", .regularExpression = true}, kLetters).Find(std::string(200, 'a'), 0),
      ExpressionTooSlow);
}

TEST(BnsSearchTest, HitsTellTextAndLine) {
  for (const std::string lineEnding : {"\r\n", "\n"}) {
    std::string file;
    for (const char* line : {"BNS2.0", "one x", "x", "d", "x", "(,)", "", "x x", "x", "", "(.)", "two", "",
                             "", "(,)", "ax", "..."}) {
      file += line + lineEnding;
    }
    for (const auto& [pattern, hits] :
         {std::pair{Pattern{.text = "x"},
                    "0one x/1/1/one x/4;0one x/3/2/x/0;0one x/5/2/x x/0;0one x/5/3/x/0;1two/5/1/ax/1;"},
          {{.text = "^$", .regularExpression = true}, "0one x/5/1//0;0one x/5/4//0;1two/3/1//0;"},
          {{.text = "^(?!.)", .regularExpression = true}, "0one x/5/1//0;0one x/5/4//0;1two/3/1//0;"}}) {
      std::string found;
      const Matcher matcher(pattern, kLetters);
      BytesInMemory bytes(file);
      BnsScanner scanner(bytes);
      SearchLibrary(scanner, matcher, {}, [&](const Hit& hit) {
        found += std::to_string(hit.snippet) + std::string(hit.name) + "/" +
                 std::to_string(static_cast<int>(hit.section)) + "/" + std::to_string(hit.line) + "/" +
                 std::string(hit.text) + "/" + std::to_string(hit.match.at) + ";";
      });
      BytesInMemory again(file);
      EXPECT_TRUE(CanHaveHits(again, matcher));
      EXPECT_EQ(found, hits);
    }
  }
}

TEST(BnsSearchTest, FileWithoutHitsIsToldFromPieces) {
  for (std::size_t before = 65520; before < 65550; ++before) {
    const std::string file = std::string(before, '\n') + "at Needle\nend";
    for (const auto& [text, found] : {std::pair{"needle", true}, {"needles", false}, {"ND", true}}) {
      BytesInMemory bytes(file);
      EXPECT_EQ(CanHaveHits(bytes, Matcher({.text = text, .ignoreCase = true}, kLetters)), found) << before;
    }
  }
  const std::string longLine(300000, 'x');
  BytesInMemory bytes(longLine);
  EXPECT_TRUE(CanHaveHits(bytes, Matcher({.text = "y"}, kLetters)));
}

}  // namespace
}  // namespace snip::test
