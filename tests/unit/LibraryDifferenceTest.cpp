#include "library/LibraryDifference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <random>
#include <sstream>
#include <thread>
#include <string>
#include <utility>
#include <vector>

#include "library/BnsFormat.h"
#include "library/LibraryMerge.h"
#include "library/LineDifference.h"
#include "library/LineMerge.h"
#include "ui/history/HistoryReader.h"

namespace snip {
namespace {

using Lines = std::vector<std::string_view>;

TEST(LineDifferenceTest, IsRightAndAsSmallAsPossible) {
  EXPECT_EQ(SplitLines("a\r\n\r\nb\rc\n"), (Lines{"a", "", "b\rc\n"}));
  EXPECT_EQ(SplitLines(""), Lines{""});
  std::mt19937 random(1);
  for (int round = 0; round < 1000; ++round) {
    // The last texts are so long and so different that the search for the smallest difference is cut short;
    // the bits of those before fill their memory to its end.
    const std::size_t size = round < 990 ? random() % 20 : round < 998 ? 64 : 4000;
    const auto lines = [&, kinds = 1 + random() % 8] {
      Lines made(size);
      for (std::string_view& line : made) line = std::string_view("abcdefgh").substr(random() % kinds, 1);
      return made;
    };
    const Lines oldLines = lines();
    const Lines newLines = lines();
    Lines made;
    std::size_t old = 0;
    std::size_t changed = 0;
    const auto append = [&](const Lines& from, std::size_t first, std::size_t end) {
      for (; first < end; ++first) made.push_back(from[first]);
    };
    for (const LineChange& change : CompareLines(oldLines, newLines)) {
      append(oldLines, old, change.oldFirst);
      ASSERT_EQ(made.size(), change.newFirst);
      append(newLines, change.newFirst, change.newFirst + change.newCount);
      old = change.oldFirst + change.oldCount;
      ASSERT_LE(old, size);
      changed += change.oldCount + change.newCount;
    }
    append(oldLines, old, oldLines.size());
    ASSERT_EQ(made, newLines) << round;
    if (size > 20) continue;
    std::vector<std::size_t> common(size + 1);  // for the longest common subsequence
    for (const std::string_view line : oldLines) {
      for (std::size_t i = 0, diagonal = 0; i < size; ++i) {
        const std::size_t above = std::exchange(common[i + 1], std::max(common[i + 1], common[i]));
        if (line == newLines[i]) common[i + 1] = diagonal + 1;
        diagonal = above;
      }
    }
    ASSERT_EQ(changed, 2 * (size - common.back()));
  }
}

/// Lines of one letter each, as text.
std::string Text(const std::string& letters) {
  std::string text;
  for (const char letter : letters) text += (text.empty() ? "" : "\r\n") + std::string(1, letter);
  return text;
}

/// "a=xy,b=" is a library of the snippet "a" with the code lines x and y, and the snippet "b" without code.
std::vector<Snippet> LibraryOf(const std::string& text) {
  std::vector<Snippet> library;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    const auto sign = part.find('=');
    library.push_back({part.substr(0, sign), "", Text(part.substr(sign + 1)), ""});
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
    text += std::string(change.renamed, 'r') + std::string(change.moved, 'm');
    text += std::string(change.attachment, 'a') + std::string(change.description, 'd') +
            std::string(change.code, 'c');
  }
  return text;
}

TEST(LibraryDifferenceTest, TellsWhatBecameOfEachSnippet) {
  for (const auto& [older, newer, changes] : std::vector<std::array<std::string, 3>>{
           {"", "a=", "->0"},
           {"a=1,b=2,c=3,d=4", "a=1,d=4", "1>- 2>-"},
           {"a=1,b=2", "a=3,b=2", "0>0c"},
           {"a=1,b=2", "a=1,c=2", "1>1r"},
           {"a=1,b=2,c=3", "c=4,n=5,a=1,b=2", "2>0mc ->1"},
           {"a=1,b=234", "c=2345,a=1", "1>0rc 0>1m"},
           {"b=123", "c=3xy", "0>- ->0"},
           {"a=123", "b=x123,c=123", "->0 0>1r"},  // the most similar one is the renamed one
           {"b=1234", "c=1234x,d=123yz", "0>0rc ->1"},
           {"a=1234,b=1235", "c=1234x", "0>0rc 1>-"},
           {"a=1,a=2,a=3", "a=2,a=4", "2>- 0>1mc"},  // equal names: first equal texts, then by order
           {"a=,a=,a=", "a=,a=", "2>-"},
           {"b=1,b=2,a=1,a=2", "b=2,b=9,a=2,a=3", "0>1mc 2>3mc"},
       }) {
    EXPECT_EQ(Described(CompareLibraries(LibraryOf(older), LibraryOf(newer))), changes);
  }
  EXPECT_EQ(Described(CompareLibraries(LibraryOf("a="), std::vector<Snippet>{{"a", "x", "", "x"}})), "0>0ad");
}

TEST(LibraryDifferenceTest, AHistoryTellsWhatItsVersionsChangedAndHaveAndTheLibraryHasNoMore) {
  const std::vector<std::string> versions{"a=1,b=2,c=3", "d=4,b=1", "a=", "unreadable", "e=5", "too large"};
  HistoryReader reader;
  const auto begin = [&](std::size_t count, const char* now) {
    std::vector<Version> named(count);
    for (std::size_t i = 0; i < count; ++i) named[i].size = i;
    const auto read = [&](const Version& version) {
      const std::string& text = versions[static_cast<std::size_t>(version.size)];
      if (text == "too large") throw std::bad_alloc();
      return text == "unreadable" ? std::nullopt : std::optional(WriteBns(LibraryOf(text)));
    };
    reader.Begin(named, read, LibraryOf(now));
  };
  begin(2, "z=1");  // another takes its place
  reader.Compare(0, {});
  std::atomic<bool> allTooSoon = false;
  const auto whileReading = [&](const Version&) {
    allTooSoon = reader.Take().all;
    return std::nullopt;
  };
  reader.Begin(std::vector<Version>(1), whileReading, {});
  while (!reader.Take().all) std::this_thread::yield();
  EXPECT_FALSE(allTooSoon);
  for (const std::size_t unreadable : {3U, 5U}) {
    begin(6, "a=1");
    reader.Compare(unreadable, std::chrono::seconds(10));
    EXPECT_FALSE(reader.Take().compared.value().readable);
    while (!reader.Take().all) std::this_thread::yield();
  }
  begin(6, "a=1");
  reader.Compare(1, std::chrono::seconds(10));
  std::string rows, deleted, changes;
  for (HistoryReader::Found found; !found.all;) {
    found = reader.Take();
    for (const auto& row : found.deleted) deleted += row.snippet.Name + std::to_string(row.version) + " ";
    for (const auto& [version, change] : found.changes) changes += std::to_string(version) + change + " ";
    if (!found.compared) continue;
    EXPECT_EQ(found.compared->snippets, LibraryOf(versions[1]));
    for (const SnippetRow& row : found.compared->rows) rows += row.text + " ";
  }
  EXPECT_EQ(rows + "| " + deleted + "| " + changes, "+ d ~ b: now \"a\" | b0 c0 d1 e4 | 0+2 -1 ~1 1+2 -1 ");

  const Snippet now{"a", "", "1\r\n' 2 _\r\n3", "d"}, then{"a", "", "1\r\n3", "e"};
  std::string lines;
  for (const Snippet* old : {&then, static_cast<const Snippet*>(nullptr)}) {
    for (const DifferenceLine& line : DifferingLines(&now, old))
      lines += line.mark + line.text + (line.before == LineState::Fresh ? " " : "* ");
  }
  EXPECT_EQ(lines,
            "=Description -d +e =Code  1 -' 2 _  3* "
            "=Name -a =Attachment - =Description -d =Code -1 -' 2 _ -3* ");
}

TEST(LibraryMergeTest, MergesLinesOfBothSides) {
  for (const auto& [base, ours, theirs, mergedOurs, mergedTheirs] : std::vector<std::array<std::string, 5>>{
           {"abc", "xbc", "abz", "xbz", "xbz"},
           {"abc", "xbc", "ybc", "xbc", "ybc"},
           {"abcd", "axcd", "abyd", "axyd", "axyd"},  // changes beside each other
           {"abcd", "xabcd", "ycd", "xycd", "xycd"},  // added before replaced
           {"abc", "abcx", "abcy", "abcx", "abcy"},   // added at one place
           {"abcdefgh", "ABcdefGh", "aBcdefgH", "ABcdefGH", "aBcdefGH"},
           {"abcdef", "aXf", "aBcdEf", "aXf", "aBcdEf"},  // one change of ours reaches two of theirs
           {"abcdef", "aXf", "aBcdef", "aXf", "aBcdef"},
       }) {
    const MergedText merged = MergeLines(Text(base), Text(ours), Text(theirs));
    const MergedText swapped = MergeLines(Text(base), Text(theirs), Text(ours));
    EXPECT_EQ(merged.ours, Text(mergedOurs)) << base << ours << theirs;
    EXPECT_EQ(merged.theirs, Text(mergedTheirs)) << base << ours << theirs;
    EXPECT_TRUE(swapped.ours == merged.theirs && swapped.theirs == merged.ours);
  }
}

TEST(LibraryMergeTest, MergesSnippetBySnippet) {
  for (const auto& [base, ours, theirs, wanted, conflict] : std::vector<std::array<std::string, 5>>{
           {"a=1,b=2", "a=1x,b=2", "a=1,b=3,c=4", "a=1x,b=3,c=4", ""},
           {"a=1,b=2", "b=2", "a=1", "", ""},
           {"a=12345", "b=12345", "a=12x45", "b=12x45", ""},  // renamed, changed
           {"a=12345", "b=1234y", "a=x2345", "b=x234y", ""},  // renamed and changed, changed
           {"a=1,b=2,c=3", "c=3,a=1,b=2", "a=1,b=2,c=4", "c=4,a=1,b=2", ""},
           {"a=1,b=2,c=3", "a=1,b=2x,c=3", "c=3,a=1,b=2", "c=3,a=1,b=2x", ""},
           {"a=1,b=2,c=3,d=4,e=5", "a=x,b=2,c=3,d=4,e=5", "d=4,e=5,a=1,b=2,c=3", "d=4,e=5,a=x,b=2,c=3", ""},
           {"a=1,b=2,c=3,d=4,e=5", "a=1,b=2,c=3,d=4,e=5", "a=1,d=4,e=5,b=2,c=3", "a=1,d=4,e=5,b=2,c=3", ""},
           {"a=1,b=2", "a=1,o=3,b=2", "a=1,t=4,u=5,b=2", "a=1,o=3,t=4,u=5,b=2", ""},
           {"a=1", "a=1,n=2", "n=2,a=1", "a=1,n=2", ""},  // added by both
           {"a=1,a=1,a=2", "a=1,a=2", "a=1,a=1,a=2x", "a=1,a=2x", ""},
           {"a=1,b=2", "a=3,b=2", "a=4,b=2", "a=3,a (theirs)=4,b=2",
            "'a' and 'a (theirs)': both sides changed the code"},
           {"a=123,a (theirs)=9", "a=x23,a (theirs)=9", "a=y2z,a (theirs)=9",
            "a=x2z,a (theirs 2)=y2z,a (theirs)=9", "'a' and 'a (theirs 2)': both sides changed the code"},
           {"a=1", "b=1", "c=1", "b=1,c (theirs)=1", "'b' and 'c (theirs)': both sides changed the name"},
           {"a=1", "", "a=2", "a=2", "'a': ours removed it, theirs changed it; it is kept"},
           {"a=1", "a=2", "", "a=2", "'a': theirs removed it, ours changed it; it is kept"},
           {"", "a=1", "a=2", "a=1,a (theirs)=2",
            "'a' and 'a (theirs)': both sides added it, but differently: the code"},
           {"a=12", "a=12,n=3", "n=12", "n (theirs)=12,n=3", "'n (theirs)': both sides have another 'n'"},
       }) {
    MergedLibrary merged = MergeLibraries(LibraryOf(base), LibraryOf(ours), LibraryOf(theirs));
    EXPECT_EQ(merged.snippets, LibraryOf(wanted)) << base << " | " << ours << " | " << theirs;
    for (std::string& each : merged.conflicts) std::replace(each.begin(), each.end(), '"', '\'');
    EXPECT_EQ(merged.conflicts, conflict.empty() ? std::vector<std::string>{} : std::vector{conflict});
  }
  const auto described = [](const char* letters) {
    return std::vector<Snippet>{{.Name = "a", .Attachment = "", .Code = "", .Description = Text(letters)}};
  };
  EXPECT_EQ(MergeLibraries(described("abc"), described("xbc"), described("abz")).snippets, described("xbz"));
}

}  // namespace
}  // namespace snip
