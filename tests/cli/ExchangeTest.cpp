#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "cli/system/Failure.h"
#include "cli/exchange/BasFolder.h"
#include "cli/exchange/VisualStudioSnippets.h"
#include "cli/exchange/VsCodeSnippets.h"
#include "tests/unit/GeneratedLibrary.h"
#include "tests/unit/Printing.h"

namespace snip::test {
namespace {

using Snippets = std::vector<Snippet>;

const CodePage kPage = CodePage::Windows1252();

Imported VsRoundTrip(const Snippets& library, ConversionReport& report) {
  return ReadVisualStudioSnippets(WriteVisualStudioSnippets(library, false, kPage, report), {}, kPage);
}

Imported VsCodeRoundTrip(const Snippets& library, ConversionReport& report) {
  const VsCodeFiles files = WriteVsCodeSnippets(library, false, kPage, report);
  return ReadVsCodeSnippets(files.snippets, files.attachments, {}, kPage);
}

Imported BasRoundTrip(const Snippets& library, ConversionReport& report) {
  auto files = WriteBasFolder(library, kPage, report);
  // Folders are listed in any order; file names have to differ where capitals and small letters do not.
  std::set<std::string> names;
  for (const FolderFile& file : files) names.insert(kPage.Lower(kPage.FromUtf8(file.name).text));
  EXPECT_EQ(names.size(), library.size() + 1);
  std::reverse(files.begin(), files.end());
  return ReadBasFolder(files, Encoding::AnsiUnlessMarked, kPage);
}

TEST(ExchangeTest, LibrariesComeBackAsTheyWereButForWhatIsCounted) {
  std::size_t snippets = 0;
  std::size_t renamed = 0;
  for (unsigned seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    const Snippets library = GeneratedLibrary(seed);
    snippets += library.size();
    for (const auto& roundTrip : {VsRoundTrip, VsCodeRoundTrip, BasRoundTrip}) {
      ConversionReport report;
      const Imported back = roundTrip(library, report);
      EXPECT_EQ(report.carried, library.size());
      Snippets expected = library;
      for (const LossNote& note : report.notes()) {
        const auto byName = [&](const Snippet& each) { return kPage.ToUtf8(each.Name) == note.snippet; };
        if (note.loss == Loss::Renamed) {
          // The last of the name gets the last number.
          ++renamed;
          const auto again = std::find_if(std::next(std::find_if(expected.begin(), expected.end(), byName)),
                                          expected.end(), byName);
          ASSERT_NE(again, expected.end());
          again->Name = kPage.FromUtf8(note.detail).text;
        } else {
          ASSERT_EQ(note.loss, Loss::Attachment);
          for (Snippet& each : expected) {
            if (each.Attachment.find("://") != std::string::npos) each.Attachment.clear();
          }
        }
      }
      EXPECT_EQ(back.snippets, expected);
      EXPECT_EQ(back.report.leftOut(), 0U);
    }
  }
  EXPECT_GT(snippets, 600U);
  EXPECT_GT(renamed, 50U);
}

TEST(ExchangeTest, WhatAFormatCannotHoldIsCounted) {
  const Snippets library = {
      {.Name = "n", .Attachment = "", .Code = "a\x01\rb\nc\r\nd", .Description = "\x02"}};
  ConversionReport vs;
  EXPECT_EQ(VsRoundTrip(library, vs).snippets,
            (Snippets{{.Name = "n", .Attachment = "", .Code = "a?\r\nb\r\nc\r\nd", .Description = "?"}}));
  EXPECT_EQ(vs.CountOf(Loss::Characters), 2U);
  EXPECT_EQ(vs.CountOf(Loss::LineEndings), 2U);
  ConversionReport code;
  EXPECT_EQ(
      VsCodeRoundTrip(library, code).snippets,
      (Snippets{{.Name = "n", .Attachment = "", .Code = "a\x01\r\nb\r\nc\r\nd", .Description = "\x02"}}));
  EXPECT_EQ(code.CountOf(Loss::LineEndings), 2U);
  EXPECT_FALSE(code.CountOf(Loss::Characters) > 0);
  ConversionReport bas;
  EXPECT_EQ(BasRoundTrip(library, bas).snippets, library);
  EXPECT_TRUE(bas.notes().empty());
}

// A file as Visual Studio's documentation describes them: prefixed and default name spaces, several snippets,
// declarations, and another delimiter.
constexpr std::string_view kVisualStudioFile = R"(<?xml version="1.0" encoding="utf-8"?>
<!-- A comment -->
<CodeSnippets xmlns="http://schemas.microsoft.com/VisualStudio/2005/CodeSnippet">
  <CodeSnippet Format="1.0.0">
    <Header><Title>Hello</Title><Description>Says &quot;Hi&quot; &#233;</Description>
      <Shortcut>hi</Shortcut><Author>A</Author><HelpUrl>https://example.com/</HelpUrl></Header>
    <Snippet><Code Language="VB" Delimiter="~"><![CDATA[s$ = Left$(t$, 1)
MsgBox "Hi"]]></Code></Snippet>
  </CodeSnippet>
  <CodeSnippet Format="1.0">
    <Header><Title>Loop</Title></Header>
    <Snippet>
      <Declarations>
        <Literal><ID>i</ID><Default>nIndex</Default></Literal>
        <Object><ID>c</ID><Type>System.Object</Type><Default>oAll</Default></Object>
      </Declarations>
      <Code Language="vb"><![CDATA[For Each $i$ In $c$ : $selected$$end$ : Next $i$ ' $other$]]></Code>
    </Snippet>
  </CodeSnippet>
  <CodeSnippet Format="1.0.0"><Header><Title>Other</Title></Header>
    <Snippet><Code Language="CSharp">var x;</Code></Snippet></CodeSnippet>
  <CodeSnippet Format="1.0.0"><Header><Title>Empty</Title></Header><Snippet/></CodeSnippet>
</CodeSnippets>
)";

constexpr std::string_view kVsCodeFile = R"({
  // A comment
  "Hello": { "prefix": ["hi", "hello"], "scope": "basic, vb",
    "body": "s\\$ = Left$(t$, 1\\}\n$ \\\\ \\x", "description": ["Says", "\"Hi\" \u00e9"], },
  /* "Not": {"body": ""}, */
  "Loop": {
    "body": ["For ${1:nIndex} = 1 To ${2|10,20|}", "  $0 $TM_SELECTED_TEXT${3:a ${4:b}}", "Next $1 ${CLIPBOARD:c}",
      "${5/(.*)/${1:/upcase}/}",],
  },
  "Other": { "scope": "csharp,cpp", "body": "var x;" },
  "Empty": { "prefix": "e" },
  "Loop ": { "body": "" }
}
)";

struct Reading {
  Templates templates;
  std::string loop;  ///< The code of "Loop"; empty when it is left out.
};

TEST(ExchangeTest, ReadsFilesOfVisualStudio) {
  const Snippet hello{.Name = "Hello",
                      .Attachment = "",
                      .Code = "s$ = Left$(t$, 1)\r\nMsgBox \"Hi\"",
                      .Description = "Says \"Hi\" \xE9"};
  for (const Reading& reading :
       {Reading{Templates::Skip, ""},
        Reading{Templates::Fields,
                "For Each <<i=nIndex>> In <<c=oAll>> : <<selection>><<end>> : Next <<i>> ' $other$"},
        Reading{Templates::Fill, "For Each nIndex In oAll :  : Next nIndex ' $other$"},
        Reading{Templates::AsText, "For Each $i$ In $c$ : $selected$$end$ : Next $i$ ' $other$"}}) {
    SCOPED_TRACE(reading.loop);
    const Imported read =
        ReadVisualStudioSnippets(kVisualStudioFile, {.templates = reading.templates}, kPage);
    ASSERT_EQ(read.snippets.size(), reading.loop.empty() ? 1U : 2U);
    EXPECT_EQ(read.snippets.front(), hello);
    EXPECT_EQ(read.snippets.back().Code, reading.loop.empty() ? hello.Code : reading.loop);
    EXPECT_EQ(read.report.CountOf(Loss::Template), reading.loop.empty() ? 1U : 0U);
    EXPECT_EQ(read.report.CountOf(Loss::Placeholders), reading.templates == Templates::Fill ? 5U : 0U);
    EXPECT_EQ(read.report.CountOf(Loss::OtherLanguage), 1U);
    EXPECT_EQ(read.report.CountOf(Loss::NoCode), 1U);
    EXPECT_EQ(read.report.CountOf(Loss::OtherFields), 3U);  // shortcut, author and the address
  }
}

TEST(ExchangeTest, ReadsFilesOfVsCode) {
  const Snippet hello{.Name = "Hello",
                      .Attachment = "",
                      .Code = "s$ = Left$(t$, 1}\r\n$ \\ \\x",
                      .Description = "Says\r\n\"Hi\" \xE9"};
  for (const Reading& reading :
       {Reading{Templates::Skip, ""},
        Reading{Templates::Fields,
                "For <<nIndex>> = 1 To <<2=10|20>>\r\n  <<end>> <<selection>><<a b>>\r\nNext <<nIndex>> c\r\n"
                "<<5=>>"},
        Reading{Templates::Fill, "For nIndex = 1 To 10\r\n   a b\r\nNext nIndex c\r\n"},
        Reading{Templates::AsText,
                "For ${1:nIndex} = 1 To ${2|10,20|}\r\n  $0 $TM_SELECTED_TEXT${3:a ${4:b}}\r\n"
                "Next $1 ${CLIPBOARD:c}\r\n${5/(.*)/${1:/upcase}/}"}}) {
    SCOPED_TRACE(reading.loop);
    const Imported read =
        ReadVsCodeSnippets(kVsCodeFile, R"({"Hello": "C:\\a.txt"})", {.templates = reading.templates}, kPage);
    ASSERT_EQ(read.snippets.size(), reading.loop.empty() ? 2U : 3U);
    Snippet expected = hello;
    expected.Attachment = "C:\\a.txt";
    if (reading.templates == Templates::AsText) expected.Code = "s\\$ = Left$(t$, 1\\}\r\n$ \\\\ \\x";
    EXPECT_EQ(read.snippets.front(), expected);
    EXPECT_EQ(read.snippets[1].Code, reading.loop);
    EXPECT_EQ(read.snippets.back().Name, "Loop ");
    EXPECT_EQ(read.report.CountOf(Loss::OtherLanguage), 1U);
    EXPECT_EQ(read.report.CountOf(Loss::NoCode), 1U);
    EXPECT_EQ(read.report.CountOf(Loss::OtherFields), 1U);  // the prefixes
  }
}

TEST(ExchangeTest, ReadsModulesOfOthers) {
  const Imported read =
      ReadBasFolder({{.name = "b.BAS", .bytes = "Attribute VB_Name = \"b\"\r\n'one\r\n' two\r\nSub"},
                     {.name = "a.bas", .bytes = "\xEF\xBB\xBF\xC3\xA9\nx \n\xE2\x98\x83"},
                     {.name = "c.txt", .bytes = "no module"}},
                    Encoding::AnsiUnlessMarked, kPage);
  EXPECT_EQ(read.snippets,
            (Snippets{{.Name = "a", .Attachment = "", .Code = "\xE9\r\nx\r\n?", .Description = ""},
                      {.Name = "b", .Attachment = "", .Code = "Sub", .Description = "one\r\ntwo"}}));
  EXPECT_EQ(read.report.CountOf(Loss::Characters), 1U);
  EXPECT_EQ(read.report.CountOf(Loss::TrailingSpaces), 1U);
}

TEST(ExchangeTest, FieldsGoToPlaceholdersAndBack) {
  const std::string code =
      "<<end>>Dim <<My var>> ' $ } <<type=Long|a,b>>\r\n<<My var>> <<x=1>> <<date>> <<module>><<selection>> "
      "<<procedure>> <<project>>";
  const Snippets library = {{.Name = "n", .Attachment = "", .Code = code, .Description = ""}};
  ConversionReport report;
  EXPECT_EQ(
      VsCodeRoundTrip(library, report).snippets.at(0).Code,
      "<<end>>Dim <<My var>> ' $ } <<Long=Long|a,b>>\r\n<<My var>> <<3=1>> <<date>> <<module>><<selection>> "
      "<<procedure>> <<project>>")
      << "a placeholder has no name but its text";
  EXPECT_EQ(VsRoundTrip(library, report).snippets.at(0).Code,
            "<<end>>Dim <<My_var=My var>> ' $ } <<type=Long>>\r\n<<My_var>> <<x=1>> <<date>> "
            "<<module>><<selection>> <<procedure>> <<project>>")
      << "a literal has an id, and no choices";
  const Imported defaults =
      ReadVsCodeSnippets(R"({"n": {"body": "$1 ${2:date} ${3:end} $3 ${0:body}"}})", {}, {}, kPage);
  EXPECT_EQ(defaults.snippets.at(0).Code, "<<1=>> <<2=date>> <<3=end>> <<3>> <<body>>")
      << "a default text stays one";
}

TEST(ExchangeTest, CodeBecomesATemplateOnlyWhenTold) {
  const Snippets library = {{.Name = "n", .Attachment = "", .Code = "$a$ ${1:b}", .Description = ""}};
  ConversionReport report;
  const std::string vs = WriteVisualStudioSnippets(library, true, kPage, report);
  EXPECT_EQ(ReadVisualStudioSnippets(vs, {.templates = Templates::Fill}, kPage).snippets.at(0).Code,
            "a ${1:b}");
  const std::string code = WriteVsCodeSnippets(library, true, kPage, report).snippets;
  EXPECT_EQ(ReadVsCodeSnippets(code, {}, {.templates = Templates::Fill}, kPage).snippets.at(0).Code, "$ b");
}

struct Hostile {
  std::string bytes;
  std::size_t line;  ///< 0 for a file that reads, without snippets.
};

void ExpectRefused(const std::vector<Hostile>& files,
                   const std::function<Imported(const std::string&)>& read) {
  for (const Hostile& file : files) {
    SCOPED_TRACE(file.bytes.substr(0, 60));
    try {
      EXPECT_TRUE(read(file.bytes).snippets.empty());
      EXPECT_EQ(file.line, 0U);
    } catch (const Malformed& malformed) {
      EXPECT_EQ(malformed.line(), file.line) << malformed.what();
    }
  }
}

TEST(ExchangeTest, HostileFilesAreRefusedWithTheirLine) {
  std::string deep;
  std::string hidden;  // a "/>" that ends no tag
  for (int i = 0; i < 200000; ++i) {
    deep += "<a>";
    hidden += "<a b=\"/>\">";
  }
  const std::string start = "<CodeSnippets>\n";
  ExpectRefused({{"", 1},
                 {"<", 1},
                 {"{}", 1},
                 {"<a/>", 1},
                 {start + deep, 2},
                 {start + "<a></b>", 2},
                 {start + "\n<CodeSnippet/></CodeSnippets>", 3},
                 {start + "\xFF</CodeSnippets>", 2},
                 {start + std::string(1, '\0') + "</CodeSnippets>", 2},
                 {std::string("\xFF\xFE<\0", 4), 1},  // UTF-16
                 {start + "<!--", 2},
                 {"<!DOCTYPE a [<!ENTITY b \"bbbb\">]>\n<CodeSnippets>&b;</CodeSnippets>", 1},
                 {start + hidden, 2},
                 {start + ("<!--><a>-->" + hidden), 2},
                 {start + "<!-- <a> --><b c='>'/><![CDATA[<a>]]>&#xD800;&#0;</CodeSnippets>", 0}},
                [](const std::string& bytes) { return ReadVisualStudioSnippets(bytes, {}, kPage); });
  std::string laughs = "${1:ha}";
  for (int i = 2; i < 60; ++i) {
    const std::string last = "$" + std::to_string(i - 1);
    laughs += "${" + std::to_string(i) + ":" + last + last + "}";
  }
  std::string unclosed;
  for (int i = 0; i < 3000; ++i) unclosed += i % 3 == 0 ? "${1:" : i % 3 == 1 ? "${1|" : "${1/";
  ExpectRefused({{"", 1},
                 {"[]", 1},
                 {"{\n\"a\": 1}", 2},
                 {"{\n\"a\": {\"body\": [1]}}", 2},
                 {"{\n\n,}", 3},
                 {"{\"a\":\n[,]}", 2},
                 {"{\"a\": {}\n\"b\"}", 2},
                 {"{\"a\": \"\xFF\"}", 1},
                 {"{/*", 1},
                 {std::string(200000, '['), 1},
                 {"{\n\"a\": {\"body\": \"x\", \"scope\": 1}}", 2},
                 {"{\"a\": 1e999}", 1},
                 {"{\n\"a\": {\"body\": \"" + laughs + "\"}}", 2},
                 {"{\"a\": {\"body\": \"" + unclosed + "$1\"}}", 0},
                 {"{\"a\": {},}", 0},
                 {"// c\n{}", 0}},
                [](const std::string& bytes) {
                  return ReadVsCodeSnippets(bytes, {}, {.templates = Templates::Skip}, kPage);
                });
  EXPECT_THROW(ReadBasFolder({{.name = "snippets.json", .bytes = "{}"}}, Encoding::Ansi, kPage), Malformed);
  const Imported twice = ReadVsCodeSnippets(R"({"a": {"body": "1"}, "a": {"body": "2"}})", {}, {}, kPage);
  EXPECT_EQ(twice.snippets.at(0).Code, "2");
  EXPECT_EQ(twice.report.CountOf(Loss::RepeatedKey), 1U);
}

TEST(ExchangeTest, SnippetsThatALibraryCannotHoldAreLeftOut) {
  const Imported read = ReadVsCodeSnippets(
      R"json({"a": {"body": " (.) "}, "b": {"description": "x\n(,)", "body": ""}, "...": {"body": ""}, "c\nd": {"body": ""},
          "e": {"body": "(,)"}})json",
      {}, {}, kPage);
  EXPECT_EQ(read.report.CountOf(Loss::NotHeld), 4U);
  ASSERT_EQ(read.snippets.size(), 1U);
  EXPECT_EQ(read.snippets.front().Name, "e");
}

}  // namespace
}  // namespace snip::test
