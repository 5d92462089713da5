#include "ui/main/CodeOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/unit/FakeMainWindow.h"
#include "tests/unit/Script.h"

namespace snip::test {
namespace {

/// A fake environment, whose parts note the calls in their order.
struct FakeHost : HostEnvironment {
  explicit FakeHost(Calls& noted) : calls(noted) {}

  void Call(const std::string& call) {
    calls.push_back(call);
    during();
    for (const std::string& start : failing) {
      if (!call.starts_with(start)) continue;
      if (gone) throw HostGone("Gone.");
      throw HostError("No " + start + ".");
    }
  }
  std::unique_ptr<HostCodePane> ActiveCodePane() override;
  std::unique_ptr<HostModule> AddStandardModule() override;
  bool Lost() override {
    calls.emplace_back("lost");
    return reallyGone;
  }

  std::string ProjectName() override { return "Project1"; }

  Calls& calls;
  std::vector<std::string> lines{"Option Explicit", "  Sub Proc()", "    one", "", "      two", "  End Sub"};
  std::optional<HostSelection> selection;
  std::string module = "Module1";
  std::vector<std::string> failing;  ///< The starts of calls that fail.
  bool gone = false;                 ///< How they fail.
  bool reallyGone = false;
  std::function<void()> during = [] {};
};

struct FakePane : HostCodePane {
  FakePane(FakeHost& environment, int start) : host(environment), line(start) {}
  void InsertLines(int at, const std::string& text) override {
    host.Call("insert " + std::to_string(at) + " " + text);
    line += 10;  // the cursor moves with its line
  }
  void Show() override { host.Call("show"); }
  HostSelection Selection() override {
    host.Call("selection");
    return host.selection.value_or(HostSelection{line, 1, line, 1});
  }
  void SetCaret(int at, int column) override {
    host.Call("caret " + std::to_string(at) + " " + std::to_string(column));
  }
  std::string Lines(int first, int count) override {
    std::string text;
    for (int i = first; i < first + count; ++i)
      text.append(i == first ? "" : "\r\n").append(host.lines.at(static_cast<std::size_t>(i) - 1));
    return text;
  }
  int LineCount() override { return static_cast<int>(host.lines.size()) + line - 7; }
  void DeleteLines(int first, int count) override {
    host.Call("delete " + std::to_string(first) + " " + std::to_string(count));
  }
  std::string ProcedureAt(int at) override { return at > 1 ? "Proc" : ""; }
  std::string ProcedureCodeAt(int at) override { return at > 1 ? "\r\n  Sub Proc()\r\n  End Sub\r\n" : ""; }
  std::string ModuleName() override { return host.module; }

  FakeHost& host;
  int line;
};

struct FakeModule : HostModule {
  explicit FakeModule(FakeHost& environment) : host(environment) {}
  void SetName(const std::string& name) override { host.Call("name " + name); }
  void Remove() override { host.Call("remove"); }
  std::unique_ptr<HostCodePane> CodePane() override { return std::make_unique<FakePane>(host, 1); }

  FakeHost& host;
};

std::unique_ptr<HostCodePane> FakeHost::ActiveCodePane() {
  return Call("pane"), std::make_unique<FakePane>(*this, 7);
}
std::unique_ptr<HostModule> FakeHost::AddStandardModule() {
  return Call("add"), std::make_unique<FakeModule>(*this);
}

class CodeOutputTest : public testing::Test, protected FakeMainWindow {
 protected:
  void Run(bool all) {
    library.Snippets = {{"A", "", "one", ""}, {"B", "", "two", ""}};
    editing.ShowLibrary();
    output.SetHost(&host);
    calls.clear();
    all ? output.PasteToNewModule("My Lib") : output.PasteCode();
  }

  FakeHost host{calls};
  bool cancels = false;
  CodeOutput output{library, editing, view, showMessage};
};

TEST_F(CodeOutputTest, WhatFailsIsToldAndLeavesNothingHalfDone) {
  const std::string told = "64 [Brennic Snipstore 2.x] ";
  const std::string unnamed = told + "The new module could not be named 'modMyLib': No name.";
  const std::string unshown = "The new module holds every snippet, but its code window could not be shown.";
  struct Row {
    bool all;
    std::vector<std::string> failing;
    Calls after;  ///< The calls behind the first that fails.
  };
  const Row rows[] = {
      {false, {"pane"}, {told + "No code pane is currently active."}},
      {false, {"selection"}, {told + "No selection."}},
      {false, {"insert 7"}, {told + "No insert 7."}},
      {true, {"add"}, {told + "No add."}},
      {true, {"selection"}, {"remove", told + "No selection."}},
      {true, {"insert 11"}, {"remove", told + "No insert 11."}},
      {true, {"insert 11", "remove"}, {"remove", "show", told + "No insert 11."}},
      {true, {"insert 11", "remove", "show"}, {"remove", "show", told + "No insert 11."}},
      {true, {"name"}, {"selection", "insert 1 one", "selection", "insert 11 two", "show", unnamed}},
      {true, {"show"}, {told + unshown}},
      {true,
       {"name", "show"},
       {"selection", "insert 1 one", "selection", "insert 11 two", "show", unnamed + "\n" + unshown}},
  };
  for (const Row& row : rows) {
    host.failing = row.failing;
    host.gone = false;
    Run(row.all);
    const auto failed = std::find_if(calls.begin(), calls.end(), [&](const std::string& call) {
      return call.starts_with(row.failing.front());
    });
    ASSERT_NE(failed, calls.end());
    EXPECT_EQ(Calls(failed + 1, calls.end()), row.after);
    host.gone = true;
    for (const bool reallyGone : {false, true}) {
      host.reallyGone = reallyGone;
      Run(row.all);
      EXPECT_EQ(std::count(calls.begin(), calls.end(), "lost"), 1);
      EXPECT_EQ(calls.back(), reallyGone ? "lost" : told + "Gone.");
    }
  }
}

TEST_F(CodeOutputTest, WithoutRowsThereIsNothingToDeliver) {
  Run(false);
  calls.clear();
  editing.ShowNothing("");  // in place of a file that is no library; the one before is still in memory
  output.PasteCode();
  output.PasteToNewModule("Lib");
  output.PasteWithFields({});
  EXPECT_EQ(calls, Calls(3, "64 [Brennic Snipstore 2.x] No code snippet is currently selected."));
  output.PasteToNewModule("Lib", library.Snippets);  // what another library holds
  EXPECT_EQ(calls.back(), "show");
}

TEST_F(CodeOutputTest, PastedCodeHasItsFieldsFilledAndTheCaretsIndentation) {
  struct Row {
    const char* code;
    HostSelection selection;
    std::string asked, pasted;
  };
  const HostSelection caret{3, 2, 3, 2};
  const HostSelection lines{3, 3, 6, 1};
  std::function<void()> during = [] {};
  const auto ask = [&](const std::vector<CodeField>& fields, const auto& preview) {
    FieldTexts texts;
    for (const CodeField& field : fields) {
      calls.push_back("ask " + field.name);
      texts[field.name] = "[" + field.name + "]";
    }
    EXPECT_EQ(preview(texts).find("<<"), std::string::npos);
    during();
    return cancels ? std::nullopt : std::optional(texts);
  };
  const FieldServices services{.ask = ask,
                               .today = [] { return "today"; },
                               .copy = [this](const std::string& text) { calls.push_back("copy " + text); }};
  for (const Row& row : {
           Row{"a\r\n\r\n  b\r\n", caret, "", ", insert 3     a\r\n\r\n      b"},
           Row{"<<x>>", {7, 1, 7, 1}, ", ask x", ", insert 7 [x]"},  // behind the last line
           Row{"Dim <<n>>\r\n  <<N=1>><<end>> '", caret, ", ask n",
               ", insert 3     Dim [n]\r\n      [n] ', caret 4 10"},
           Row{"<<date>> <<Module>> <<procedure>> <<project>>", caret, "",
               ", insert 3     today Module1 Proc Project1"},
           Row{"If <<c>> Then\r\n  <<selection>>\r\nEnd If", lines, ", ask c",
               ", insert 3     If [c] Then\r\n      one\r\n\r\n        two\r\n    End If, delete 13 3"},
           Row{"<<selection>>x", caret, "", ", insert 3     x"},
           Row{"no field", lines, "", ", insert 3     no field"},
           Row{"last", {6, 1, 6, 1}, "", ", insert 6   last"},
       }) {
    Run(false);
    view.code = row.code;
    host.selection = row.selection;
    for (const bool cancelled : {true, false}) {
      calls.clear();
      cancels = cancelled;
      output.PasteWithFields(services);
      // The code window may have changed while the user was asked.
      const std::string seen = "pane, selection", again = row.asked.empty() ? "" : ", " + seen;
      const bool stops = cancelled && !row.asked.empty();
      EXPECT_EQ(Joined(calls), seen + row.asked + (stops ? "" : again + row.pasted)) << row.code;
    }
  }
  view.code = "<<x>>";
  FakeHost other{calls};
  const std::vector<std::function<void()>> changes = {
      [&] { ++host.selection->startLine; }, [&] { host.module += "x"; }, [&] { output.SetHost(&other); },
      [&] { output.SetHost(nullptr); }};
  for (const auto& change : changes) {
    during = change;
    output.PasteWithFields(services);
    EXPECT_EQ(calls.back(), output.connected() ? "64 [Brennic Snipstore 2.x] The code window has changed in "
                                                 "the meantime. Please try again."
                                               : "ask x");
  }
  view.code = "<<module>><<x>> <<date>>";
  output.PasteWithFields(services);
  EXPECT_EQ(calls.back(), "copy [x] today") << "without an environment";
}

TEST_F(CodeOutputTest, CodeIsTakenWithoutItsIndentation) {
  Run(false);
  using Row = std::pair<HostSelection, std::string>;
  for (const auto& [selection, code] :
       {Row{{3, 5, 3, 8}, "one"}, Row{{3, 6, 3, 8}, "ne"}, Row{{3, 3, 6, 1}, "one\r\n\r\n  two"},
        Row{{2, 1, 3, 6}, "Sub Proc()\r\n  o"}, Row{{6, 1, 6, 1}, "Sub Proc()\r\nEnd Sub"},
        Row{{1, 1, 1, 1}, ""}, Row{{9, 1, 9, 1}, ""}}) {
    host.selection = selection;
    EXPECT_EQ(output.TakeCode().value_or(""), code);
    EXPECT_EQ(calls.back().ends_with("Nothing is selected, and the caret is in no procedure."), code.empty());
  }
  EXPECT_EQ(SnippetOfCode("Sub A()").Name, "A");
  EXPECT_EQ(SnippetOfCode("' ...\r\nx").Name, DefaultSnippet().Name) << "the name that ends a library's list";
}

TEST_F(CodeOutputTest, ADisconnectionOrAnotherRequestMayComeMeanwhile) {
  for (const bool all : {false, true}) {
    host.failing = {all ? "name" : "pane"};
    host.during = [&] {
      if (calls.size() > 1) return;
      output.PasteToNewModule("Other");
      output.SetHost(nullptr);
      library = {};
    };
    Run(all);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "add"), all);
    // What goes on is what was asked for, and nothing is told.
    EXPECT_EQ(calls.back(), all ? "show" : "pane");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "insert 11 two"), all);
  }
}

}  // namespace
}  // namespace snip::test
