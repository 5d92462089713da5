#include "library/BnsFormat.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>

#include "library/BnsRules.h"
#include "library/LineEndings.h"
#include "platform/Text.h"
#include "tests/unit/Printing.h"

namespace snip::test {
namespace {

using namespace std::string_literals;
using Snippets = std::vector<Snippet>;

/// A snippet, its texts in the order in which the file has them.
Snippet Make(const std::string& name, const std::string& attachment, const std::string& description,
             const std::string& code) {
  return {.Name = name, .Attachment = attachment, .Code = code, .Description = description};
}

/// The bytes of a text file with these lines.
std::string Lines(std::initializer_list<std::string_view> lines) {
  std::string bytes;
  for (const std::string_view line : lines) bytes.append(line).append("\r\n");
  return bytes;
}

BnsContents Read(std::string_view bytes) {
  auto result = ReadBns(bytes);
  if (auto* contents = std::get_if<BnsContents>(&result)) return std::move(*contents);
  ADD_FAILURE() << "no library: " << testing::PrintToString(bytes.substr(0, 100));
  return {};
}

Snippets ReadSnippets(std::string_view bytes) {
  return Read(bytes).snippets;
}

/// The code of a snippet whose code lines in the file are these.
std::string CodeRead(const std::string& lines) {
  const Snippets snippets = ReadSnippets("BNS2.0\r\nname\r\n\r\ndesc\r\n(,)\r\n" + lines + "...\r\n");
  EXPECT_EQ(snippets.size(), 1U);
  return snippets.empty() ? "" : snippets.front().Code;
}

std::string DescriptionRead(const std::string& lines) {
  const Snippets snippets = ReadSnippets("BNS2.0\r\nname\r\n\r\n" + lines + "(,)\r\ncode\r\n...\r\n");
  EXPECT_EQ(snippets.size(), 1U);
  return snippets.empty() ? "" : snippets.front().Description;
}

const Snippets kTwo = {Make("first", "C:\\a b.txt", "one\r\n two", "Dim x\r\n\r\n\tx = 1"),
                       Make("second", "", "", "")};
const std::string kTwoFile = Lines({"BNS2.0", "first", "C:\\a b.txt", "one", " two", "(,)", "Dim x", "",
                                    "\tx = 1", "(.)", "second", "", "", "(,)", "", "..."});

TEST(BnsFormatTest, ANewLibraryIsSevenLinesWithADefaultSnippet) {
  EXPECT_EQ(NewLibraryBns(),
            "BNS2.0\r\nNew Snippet\r\n\r\n<description goes here>\r\n(,)\r\n'Insert code here.\r\n...\r\n");
  EXPECT_EQ(ReadSnippets(NewLibraryBns()),
            Snippets{Make("New Snippet", "", "<description goes here>", "'Insert code here.")});
}

TEST(BnsFormatTest, WritesAndReadsEveryItemOnItsLines) {
  EXPECT_EQ(WriteBns(kTwo), kTwoFile);
  EXPECT_EQ(WriteBns({}), "BNS2.0\r\n...\r\n");
  EXPECT_EQ(Read(kTwoFile).version, BnsVersion::Version2);
  EXPECT_EQ(Read(kTwoFile).snippets, kTwo);
  EXPECT_EQ(Read(kTwoFile).omitted, 0U);
}

TEST(BnsFormatTest, ReadsVersion1WithOneLineDescriptionsAndNoAttachments) {
  const BnsContents contents =
      Read(Lines({"BNS1.0", "first", "as is  ", "(,)", " code  ", "", "...", " . ", "b", "", "..", "x"}));
  EXPECT_EQ(contents.version, BnsVersion::Version1);
  EXPECT_EQ(contents.snippets,
            (Snippets{Make("first", "", "as is  ", "(,)\r\n code\r\n\r\n..."), Make("b", "", "", "")}));
}

TEST(BnsFormatTest, TheFirstLineNamesTheVersionInAnyCaseButExactly) {
  for (const std::string& bytes : {"BNS2.0\r\n"s, "bns2.0\r\n"s, "bNs2.0"s, "BNS2.0"s, "BNS2.0\n"s,
                                   "BNS2.0\r\n...\r\n"s, "BNS2.0\r\n...\r\nname\r\n"s}) {
    EXPECT_EQ(Read(bytes).version, BnsVersion::Version2);
    EXPECT_EQ(Read(bytes).snippets, Snippets{}) << bytes;
  }
  for (const std::string& bytes : {"BNS1.0\r\n"s, "bns1.0"s, "BNS1.0\n"s, "BNS1.0\r\n..\r\n"s}) {
    EXPECT_EQ(Read(bytes).version, BnsVersion::Version1);
    EXPECT_EQ(Read(bytes).snippets, Snippets{}) << bytes;
  }
  const auto whyNot = [](const std::string& bytes) { return std::get<NotALibrary>(ReadBns(bytes)); };
  EXPECT_EQ(whyNot(""), NotALibrary::NoFirstLine);
  for (const std::string& bytes :
       {"\r\n"s, "\n"s, "\r\nBNS2.0\r\n"s, " BNS2.0\r\n"s, "BNS2.0 \r\n"s, "BNS2.0\t\r\n"s, "BNS2.00\r\n"s,
        "BNS2\r\n"s, "BNS3.0\r\n"s,
        "\xEF\xBB\xBF"
        "BNS2.0\r\n"s,
        "BNS2.0\0\r\n"s, "[Settings]\r\nBNS2.0\r\n"s, "BNS2.0 name"s, "PK\x03\x04\0\0\0\0"s,
        "B\0N\0S\0"
        "2\0.\0"
        "0\0\r\0\n\0"s}) {
    SCOPED_TRACE(testing::PrintToString(bytes));
    EXPECT_EQ(whyNot(bytes), NotALibrary::UnknownFirstLine);
  }
}

TEST(BnsFormatTest, MarkersEndTheirBlockAlsoBetweenBlanks) {
  for (const std::string& before : {""s, " "s, "      "s}) {
    for (const std::string& after : {""s, " "s, "   "s}) {
      SCOPED_TRACE("'" + before + "', '" + after + "'");
      EXPECT_EQ(
          ReadSnippets(Lines({"BNS2.0", "a", "", "d", before + "(,)" + after, "c", before + "(.)" + after,
                              "b", "", "e", "(,)", "f", before + "..." + after, "g"})),
          (Snippets{Make("a", "", "d", "c"), Make("b", "", "e", "f")}));
    }
  }
}

TEST(BnsFormatTest, MarkersWithAnythingElseOnTheirLineAreText) {
  for (const std::string& line :
       {"(,)x"s, "x(,)"s, "(,) x"s, "\t(,)"s, "(,)\t"s, "( ,)"s, "(,"s, "(,)(,)"s, "(,)\r"s, "\n(,)"s,
        "(,)\0"s, "(.)"s, "...."s, "... x"s, "x ..."s, ". . ."s, ".."s, "."s, "..(,)"s}) {
    EXPECT_EQ(DescriptionRead(line + "\r\n"), line);
  }
  for (const std::string& line :
       {"(.)x"s,  "x(.)"s, "(.) x"s, "\t(.)"s, "(.)\t"s, "( .)"s,  "(."s, "(.)(.)"s, "(.)\r"s, "\n(.)"s,
        "(.)\0"s, "(,)"s,  "...."s,  "... x"s, "x ..."s, ". . ."s, ".."s, "."s,      "...\r"s, "...\t"s}) {
    EXPECT_EQ(CodeRead(line + "\r\n"), line);
  }
}

TEST(LineEndingsTest, AllBecomeTheSameAndTheUnusualOnesAreCounted) {
  const ConvertedLines lines = WithLineEndings("a\r\n\nb\rc", "\n", std::nullopt);
  EXPECT_EQ(lines.text, "a\n\nb\nc");
  EXPECT_EQ(lines.changed, 2U);
}

TEST(BnsRulesTest, TheFirstReservedLineIsTold) {
  EXPECT_EQ(WhyNotHeld(Make("n", "", "d", "a\r\n (.)\r\n...")),
            "line 2 of its code is \"(.)\", which the file format reserves");
  EXPECT_EQ(WhyNotHeld(Make("n", "", "(,)", "")),
            "line 1 of its description is \"(,)\", which the file format reserves");
}

TEST(BnsFormatTest, NameAndAttachmentAreTakenAsTheyStand) {
  for (const std::string& text :
       {"  blanks around  "s, "(,)"s, " (.) "s, "\ttab\t"s, "...."s, "BNS2.0"s, ""s}) {
    EXPECT_EQ(ReadSnippets(Lines({"BNS2.0", text, text, "d", "(,)", "c", "..."})),
              Snippets{Make(text, text, "d", "c")});
  }
  // Three dots end the list in the place of a name; as an attachment they are one.
  EXPECT_EQ(ReadSnippets(Lines({"BNS2.0", " ... ", "a", "d", "(,)", "c", "..."})), Snippets{});
  EXPECT_EQ(ReadSnippets(Lines({"BNS2.0", "n", "...", "d", "(,)", "c", "..."})),
            Snippets{Make("n", "...", "d", "c")});
}

TEST(BnsFormatTest, BlanksAreDroppedAtTheEndOfLinesOnly) {
  Snippet snippet = Make("n ", "a ", " d ", " a  \r\n\r\nb \r\n");
  EXPECT_EQ(DropTrailingSpaces(snippet), 3U);
  EXPECT_EQ(snippet, Make("n ", "a ", " d", " a\r\n\r\nb\r\n"));
  const std::string lines = "  both  \r\ntab\t\r\ntab and blank\t \r\n   \r\nin  side\r\n \r\n";
  const std::string expected = "  both\r\ntab\t\r\ntab and blank\t\r\n\r\nin  side\r\n";
  EXPECT_EQ(CodeRead(lines), expected);
  EXPECT_EQ(DescriptionRead(lines), expected);
}

TEST(BnsFormatTest, EmptyLinesBelongToTheText) {
  for (const std::string& text :
       {""s, "\r\n"s, "a\r\n"s, "\r\na"s, "a\r\n\r\n\r\n"s, "\r\n\r\n"s, "a\r\n\r\nb"s}) {
    EXPECT_EQ(CodeRead(text + "\r\n"), text);
    EXPECT_EQ(DescriptionRead(text + "\r\n"), text);
  }
  EXPECT_EQ(CodeRead(""), "");  // not even one line
  EXPECT_EQ(DescriptionRead(""), "");
}

TEST(BnsFormatTest, ListsEndWithTheirMarkerOrWithTheFile) {
  const std::string tail = "(.)\r\nmore\r\n\r\nd\r\n(,)\r\nc\r\n...\r\n"s + std::string(100, '\0');
  const std::string first = "BNS2.0\r\na\r\n\r\nfirst\r\n(,)\r\ncode\r\n";
  const Snippets firstAndEmpty = {Make("a", "", "first", "code"), {}};
  const std::vector<std::pair<std::string, Snippets>> cases = {
      {kTwoFile + tail, kTwo},
      {Lines({"BNS2.0", "a", "at", "d", "...", "(,)", "code", "..."}), {Make("a", "at", "d", "")}},
      // A list that ends where a snippet was promised takes two more characters off the last one.
      {Lines({"BNS2.0", "a", "at", "first", "(,)", "one", "(.)", "b", "at", "second", "(,)", "two  ", "(.)",
              " ... ", "c"}),
       {Make("a", "at", "first", "one"), Make("b", "at", "seco", "t")}},
      {Lines({"BNS2.0", "a", "", "x", "(,)", "yz", "(.)", "..."}), {Make("a", "", "x", "")}},
      {Lines({"BNS1.0", "a", "first", "code", ".", ".."}), {Make("a", "", "first", "co")}},
      // A file that ends there has an empty one.
      {first + "(.)\r\n", firstAndEmpty},
      {first + "(.)", firstAndEmpty},
      {first + " (.) \r\n", firstAndEmpty},
      {"BNS1.0\r\na\r\nfirst\r\ncode\r\n.\r\n", firstAndEmpty},
      // A lone carriage return or line feed belongs to its line.
      {"BNS2.0\r\nna\nme\r\r\nat\rtach\n\r\n\nd\r\n(,)\r\nc\r\n...",
       {Make("na\nme\r", "at\rtach\n", "\nd", "c")}}};
  for (const auto& [bytes, snippets] : cases) EXPECT_EQ(ReadSnippets(bytes), snippets) << bytes;
  EXPECT_EQ(CodeRead("a\rb\nc\r\n\nd\r\r\n\r\r\ne\n\r\n"), "a\rb\nc\r\n\nd\r\r\n\r\r\ne\n");
}

TEST(BnsFormatTest, FilesWithUnixLinesAreReadWithThemAndWrittenWithCrLf) {
  const Snippets snippets = {Make("a", "at", "one\r\ntwo", " x\r\n\r\ny\rz"), Make("b", "", "d", "c")};
  EXPECT_EQ(ReadSnippets("BNS2.0\na\nat\none  \ntwo\n(,)\n x\n\ny\rz\n (.) \nb\n\nd\n(,)\nc\n...\nrest\n"),
            snippets);
  // Some lines have been edited on a system that ends them with CR LF.
  EXPECT_EQ(ReadSnippets(
                "BNS2.0\na\r\nat\none  \r\ntwo\r\n(,)\r\n x\n\r\ny\rz\n(.)\r\nb\r\n\nd\r\n(,)\nc\r\n...\r\n"),
            snippets);
  EXPECT_EQ(ReadSnippets("BNS1.0\na\nfirst\nx\n\ny\n.\nb\nsecond\nz\n..\n"),
            (Snippets{Make("a", "", "first", "x\r\n\r\ny"), Make("b", "", "second", "z")}));
  EXPECT_EQ(WriteBns(ReadSnippets("BNS2.0\na\n\nd\n(,)\nx\ny")),
            "BNS2.0\r\na\r\n\r\nd\r\n(,)\r\nx\r\ny\r\n...\r\n");
}

TEST(BnsFormatTest, EveryByteSurvives) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) {
    if (i != '\r' && i != '\n') bytes += static_cast<char>(i);
  }
  const Snippets snippets = {Make(bytes, bytes, bytes + "\r\n" + bytes, bytes),
                             Make("\0"s, "\0\0"s, "\xFF\0"s, "\0"s)};
  const std::string file = Lines({"BNS2.0", bytes, bytes, bytes, bytes, "(,)", bytes, "(.)", "\0"s, "\0\0"s,
                                  "\xFF\0"s, "(,)", "\0"s, "..."});
  EXPECT_EQ(WriteBns(snippets), file);
  EXPECT_EQ(ReadSnippets(file), snippets);
}

TEST(BnsFormatTest, LinesMayBeAMegabyteLong) {
  constexpr std::size_t megabyte = std::size_t{1} << 20U;
  for (const std::string& line : {std::string(megabyte, 'x'), std::string(megabyte, ' ') + "x",
                                  std::string(megabyte, '\r') + "x", std::string(megabyte, '.')}) {
    const Snippets snippets = {Make(line, line, line, line + "\r\n" + line)};
    EXPECT_TRUE(ReadSnippets(WriteBns(snippets)) == snippets) << line[0] << line.back();
  }
  EXPECT_EQ(CodeRead("x" + std::string(megabyte, ' ') + "\r\n" + std::string(megabyte, ' ') + "\r\n"),
            "x\r\n");
}

/// A file of `count` snippets, named by their numbers from 1, up to the end of the last one's code.
std::string ManySnippets(std::size_t count, bool version1) {
  std::string bytes = version1 ? "BNS1.0\r\n" : "BNS2.0\r\n";
  for (std::size_t i = 1; i <= count; ++i) {
    if (i > 1) bytes += version1 ? ".\r\n" : "(.)\r\n";
    bytes += std::to_string(i) + (version1 ? "\r\ndesc\r\ncode\r\n" : "\r\n\r\ndesc\r\n(,)\r\ncode\r\n");
  }
  return bytes;
}

/// Gives its bytes in pieces of two, and fails where they end.
class FailingSource : public BytesInMemory {
 public:
  using BytesInMemory::BytesInMemory;
  std::size_t Read(std::span<char> room) override { return BytesInMemory::Read(room.first(2)); }
  bool Failed() const override { return true; }
};

TEST(BnsFormatTest, ALineEndMayLieAnywhereInTheFile) {
  for (std::size_t shift = 0; shift < 4; ++shift) {
    SCOPED_TRACE(shift);
    Snippet snippet{.Name = std::string(shift, 'n'), .Attachment = "", .Code = "", .Description = ""};
    for (int line = 0; line < 150000; ++line) snippet.Code += "ab\r\n";
    const std::string bytes = WriteBns({&snippet, 1});
    EXPECT_EQ(std::get<BnsContents>(ReadBns(bytes)).snippets, std::vector{snippet});
    std::string unixLines = bytes;
    std::erase(unixLines, '\r');
    EXPECT_EQ(std::get<BnsContents>(ReadBns(unixLines)).snippets, std::vector{snippet});
  }
}

TEST(BnsFormatTest, WhatCouldNotBeReadToTheEndIsNoLibrary) {
  for (const std::string& bytes : {std::string(), NewLibraryBns()}) {
    FailingSource source(bytes);
    const auto result = ReadBns(source);
    ASSERT_TRUE(std::holds_alternative<NotALibrary>(result));
    EXPECT_EQ(std::get<NotALibrary>(result), NotALibrary::Unreadable);
  }
}

TEST(BnsFormatTest, ALibraryHolds32767SnippetsAndTheRestIsCounted) {
  struct Case {
    std::size_t inFile, read, omitted;
  };
  for (const bool version1 : {false, true}) {
    for (const auto& [inFile, read, omitted] :
         {Case{32766, 32766, 0}, Case{32767, 32767, 0}, Case{32768, 32767, 1}, Case{40000, 32767, 7233}}) {
      SCOPED_TRACE(inFile);
      const BnsContents contents = Read(ManySnippets(inFile, version1) + (version1 ? ".." : "..."));
      ASSERT_EQ(contents.snippets.size(), read);
      EXPECT_EQ(contents.omitted, omitted);
      EXPECT_EQ(contents.snippets.front().Name, "1");
      EXPECT_EQ(contents.snippets.back(), Make(std::to_string(read), "", "desc", "code"));
    }
  }
  // What such a file's ending takes off its last snippet, it takes off none that was read before.
  const BnsContents full = Read(ManySnippets(32767, false) + "(.)\r\n...\r\n");
  EXPECT_EQ(full.omitted, 0U);
  EXPECT_EQ(full.snippets.back().Code, "co");
  const BnsContents overfull = Read(ManySnippets(32768, false) + "(.)\r\n...\r\n");
  EXPECT_EQ(overfull.omitted, 1U);
  EXPECT_EQ(overfull.snippets.back().Code, "code");
}

std::string WithoutCr(std::string text) {
  std::erase(text, '\r');
  return text;
}

/// The layout of version 1, which the program itself does not write.
std::string WriteVersion1(const Snippets& snippets) {
  std::string bytes = "BNS1.0\r\n";
  for (const Snippet& snippet : snippets) {
    bytes +=
        Lines({snippet.Name, snippet.Description, snippet.Code, &snippet != &snippets.back() ? "." : ".."});
  }
  return bytes;
}

/// Reads the file cut at every place: what is there has to be read, all of it, and in its place.
void ReadCutEverywhere(const std::string& file, const std::function<std::string(const Snippets&)>& write) {
  const Snippets whole = ReadSnippets(file);
  for (std::size_t length = 0; length < file.size(); ++length) {
    const std::string cut = file.substr(0, length);
    SCOPED_TRACE(testing::PrintToString(cut));
    const auto result = ReadBns(cut);
    const auto* contents = std::get_if<BnsContents>(&result);
    ASSERT_EQ(contents == nullptr, cut.size() < 6);
    if (contents == nullptr) continue;
    ASSERT_LE(contents->snippets.size(), whole.size() + 1) << "half an end marker may promise one more";
    for (std::size_t i = 0; i + 1 < contents->snippets.size(); ++i)
      ASSERT_EQ(contents->snippets[i], whole[i]);
    const std::string again = write(contents->snippets);
    ASSERT_TRUE(WithoutCr(again).starts_with(TrimRight(WithoutCr(cut)))) << testing::PrintToString(again);
  }
}

TEST(BnsFormatTest, AFileThatStopsShortIsReadAsFarAsItGoes) {
  const std::string file =
      WriteBns(Snippets{Make("first", "C:\\a.txt", "a\r\nb", "If x Then\r\n\r\n  y\r\nEnd If"),
                        Make("second", "", "", ""), Make("\xFCml\xE4ut", "x", "\t(\0)"s, "\r\n....\r\n")});
  const auto write = [](const Snippets& snippets) { return WriteBns(snippets); };
  ReadCutEverywhere(file, write);
  ReadCutEverywhere(WithoutCr(file), write);
  ReadCutEverywhere(
      "BNS1.0\r\na\r\nfirst\r\ncode\r\n\r\n  more\r\n.\r\nb\r\n\r\n\r\n.\r\nc\r\nthird\r\nx\r\n..\r\n",
      &WriteVersion1);
}

}  // namespace
}  // namespace snip::test
