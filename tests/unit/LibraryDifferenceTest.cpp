#include "library/LibraryDifference.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "library/LineDifference.h"

namespace snip {
namespace {

using Lines = std::vector<std::string_view>;

std::size_t ChangedLines(const std::vector<LineChange>& changes) {
  std::size_t count = 0;
  for (const LineChange& change : changes) count += change.oldCount + change.newCount;
  return count;
}

/// The new text, from the old one and the changes alone, but for the lines that these add.
Lines Apply(const std::vector<LineChange>& changes, const Lines& oldLines, const Lines& newLines) {
  Lines made;
  auto old = oldLines.begin();
  for (const LineChange& change : changes) {
    made.insert(made.end(), old, oldLines.begin() + static_cast<std::ptrdiff_t>(change.oldFirst));
    EXPECT_EQ(made.size(), change.newFirst);
    const auto first = newLines.begin() + static_cast<std::ptrdiff_t>(change.newFirst);
    made.insert(made.end(), first, first + static_cast<std::ptrdiff_t>(change.newCount));
    old = oldLines.begin() + static_cast<std::ptrdiff_t>(change.oldFirst + change.oldCount);
  }
  made.insert(made.end(), old, oldLines.end());
  return made;
}

std::size_t LongestCommonSubsequence(const Lines& a, const Lines& b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (const std::string_view line : a) {
    std::size_t diagonal = 0;
    for (std::size_t i = 0; i < b.size(); ++i) {
      const std::size_t above = row[i + 1];
      row[i + 1] = line == b[i] ? diagonal + 1 : std::max(above, row[i]);
      diagonal = above;
    }
  }
  return row.back();
}

TEST(LineDifferenceTest, HasAsFewLinesAsPossible) {
  EXPECT_EQ(SplitLines("a\r\n\r\nb\rc\n"), (Lines{"a", "", "b\rc\n"}));
  EXPECT_EQ(SplitLines(""), Lines{""});
  std::mt19937 random(1);
  for (int round = 0; round < 3000; ++round) {
    const auto lines = [&, kinds = 1 + random() % 8] {
      Lines made(random() % 20);
      for (std::string_view& line : made) line = std::string_view("abcdefgh").substr(random() % kinds, 1);
      return made;
    };
    const Lines oldLines = lines();
    const Lines newLines = lines();
    const auto changes = CompareLines(oldLines, newLines);
    ASSERT_EQ(Apply(changes, oldLines, newLines), newLines) << round;
    ASSERT_EQ(ChangedLines(changes),
              oldLines.size() + newLines.size() - 2 * LongestCommonSubsequence(oldLines, newLines))
        << round;
  }
}

TEST(LineDifferenceTest, IsRightWhereTheSearchIsCutShort) {
  std::mt19937 random(2);
  const auto lines = [&] {
    Lines made(4000);
    for (std::string_view& line : made) line = std::string_view("0123456789abcdef").substr(random() % 16, 1);
    return made;
  };
  const Lines oldLines = lines();
  const Lines newLines = lines();
  EXPECT_EQ(Apply(CompareLines(oldLines, newLines), oldLines, newLines), newLines);
}

/// A library of one letter a snippet: its name, which `name=text` separates from its code.
std::vector<Snippet> LibraryOf(const std::vector<std::string>& snippets) {
  std::vector<Snippet> library;
  for (const std::string& snippet : snippets) {
    const std::size_t sign = snippet.find('=');
    library.push_back({.Name = snippet.substr(0, sign),
                       .Attachment = "",
                       .Code = sign == std::string::npos ? "code of " + snippet : snippet.substr(sign + 1),
                       .Description = ""});
  }
  return library;
}

/// Each change as "old>new", with the letters of what changed.
std::string Described(const std::vector<SnippetChange>& changes) {
  const auto number = [](std::optional<std::size_t> position) {
    return position ? std::to_string(*position) : std::string("-");
  };
  std::string text;
  for (const SnippetChange& change : changes) {
    text += (text.empty() ? "" : " ") + number(change.oldPosition) + ">" + number(change.newPosition);
    text += change.renamed ? "r" : "";
    text += change.moved ? "m" : "";
    text += change.attachment ? "a" : "";
    text += change.description ? "d" : "";
    text += change.code ? "c" : "";
  }
  return text;
}

TEST(LibraryDifferenceTest, TellsWhatBecameOfEachSnippet) {
  const std::string lines = "first line\r\nsecond line\r\nthird line";
  struct Case {
    std::vector<std::string> older, newer;
    std::string changes;
  };
  for (const Case& c : std::vector<Case>{
           {{"a", "b"}, {"a", "b"}, ""},
           {{}, {"a"}, "->0"},
           {{"a", "b", "c", "d"}, {"a", "d"}, "1>- 2>-"},
           {{"a", "b"}, {"b"}, "0>-"},
           {{"a", "b"}, {"a=x", "b"}, "0>0c"},
           {{"a", "b=x"}, {"a", "c=x"}, "1>1r"},
           {{"a", "b", "c"}, {"c", "a", "b"}, "2>0m"},
           {{"a", "b", "c"}, {"c=x", "n", "a", "b"}, "2>0mc ->1"},
           {{"a", "b=" + lines}, {"c=" + lines + "\r\nfourth", "a"}, "1>0rc 0>1m"},
           {{"b=" + lines}, {"c=" + lines.substr(12)}, "0>0rc"},
           {{"b=" + lines}, {"c=third line\r\nanother"}, "0>- ->0"},
           // The most similar one is the renamed one.
           {{"a=" + lines}, {"b=x\r\n" + lines, "c=" + lines}, "->0 0>1r"},
           // Equal names: first those with equal texts, then by order.
           {{"a=1", "a=2", "a=3"}, {"a=2", "a=4"}, "2>- 0>1mc"},
           {{"a=", "a=", "a="}, {"a=", "a="}, "2>-"},
       }) {
    EXPECT_EQ(Described(CompareLibraries(LibraryOf(c.older), LibraryOf(c.newer))), c.changes);
  }
  auto other = LibraryOf({"a"});
  other[0].Attachment = "x";
  other[0].Description = "x";
  EXPECT_EQ(Described(CompareLibraries(LibraryOf({"a"}), other)), "0>0ad");
}

}  // namespace
}  // namespace snip
