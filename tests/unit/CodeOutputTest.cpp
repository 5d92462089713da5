#include "ui/main/CodeOutput.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

/// What every fake part of the environment shares: the calls in their order, and the one that fails.
struct Script {
  Calls& calls;
  std::string failing;  ///< The start of the call.
  bool gone = false;    ///< How it fails.
  std::function<void()> during = [] {};

  void Call(const std::string& call) {
    calls.push_back(call);
    during();
    if (failing.empty() || !call.starts_with(failing)) return;
    if (gone) throw HostGone("gone");
    throw HostError("No " + failing + ".");
  }
};

class FakePane : public HostCodePane {
 public:
  FakePane(Script& script, int line) : script_(script), line_(line) {}
  int SelectionStartLine() override {
    script_.Call("selection");
    return line_;
  }
  void InsertLines(int line, const std::string& text) override {
    script_.Call("insert " + std::to_string(line) + " " + text);
    line_ += 10;  // the cursor moves with its line
  }
  void Show() override { script_.Call("show"); }

 private:
  Script& script_;
  int line_;
};

class FakeModule : public HostModule {
 public:
  explicit FakeModule(Script& script) : script_(script) {}
  void SetName(const std::string& name) override { script_.Call("name " + name); }
  std::unique_ptr<HostCodePane> CodePane() override { return std::make_unique<FakePane>(script_, 1); }

 private:
  Script& script_;
};

class FakeHost : public HostEnvironment {
 public:
  explicit FakeHost(Script& script) : script_(script) {}
  bool hasPane = true;
  bool hasProject = true;
  std::unique_ptr<HostCodePane> ActiveCodePane() override {
    script_.Call("pane");
    return hasPane ? std::make_unique<FakePane>(script_, 7) : nullptr;
  }
  std::unique_ptr<HostModule> AddStandardModule() override {
    script_.Call("add");
    return hasProject ? std::make_unique<FakeModule>(script_) : nullptr;
  }
  void Activate() override { script_.calls.emplace_back("activate"); }
  void Lost() override { script_.calls.emplace_back("lost"); }

 private:
  Script& script_;
};

std::string Told(const std::string& prompt) {
  return "64 [Brennic Snipstore 2.x] " + prompt;
}

class CodeOutputTest : public FakeMainWindow {
 protected:
  CodeOutputTest() { Open(); }

  void Open() {
    library.Snippets = {{"A", "", "one\r\n  two", ""}, {"B", "", "", ""}, {"C", "", "three\r\n", ""}};
    view.FillRows(library.Snippets);
    view.SelectRow(0);
    view.SetCode("shown\r\n\r\n and edited");
    output.SetHost(&host);
  }

  void Run(bool all) { all ? output.PasteToNewModule("My Great Lib") : output.PasteCode(); }

  Script script{calls, "", false};
  FakeHost host{script};
  CodeOutput output{library, view, showMessage};
};

TEST_F(CodeOutputTest, TheShownCodeGoesBeforeTheSelectionAsItIs) {
  output.PasteCode();
  EXPECT_EQ(calls, (Calls{"pane", "selection", "insert 7 shown\r\n\r\n and edited", "activate"}));
}

TEST_F(CodeOutputTest, EverySnippetGoesToTheSelectionOfTheNewModuleInTurn) {
  output.PasteToNewModule(" My Great  Lib");
  EXPECT_EQ(calls, (Calls{"add", "name modMyGreatLib", "selection", "insert 1 one\r\n  two", "selection",
                          "insert 11 ", "selection", "insert 21 three\r\n", "show", "activate"}));
}

TEST_F(CodeOutputTest, OnlyBlanksLeaveTheName) {
  EXPECT_EQ(ModuleName("a-b\tc.d (Browse...)"), "moda-b\tc.d(Browse...)");
  EXPECT_EQ(ModuleName("   "), "mod");
}

TEST_F(CodeOutputTest, WhatIsMissingIsTold) {
  host.hasPane = host.hasProject = false;
  Run(false);
  Run(true);
  view.SelectRow(-1);
  Run(false);
  view.rows.clear();  // what is shown is no library, and the one before is still in memory
  Run(true);
  output.SetHost(nullptr);
  Run(false);
  Run(true);
  EXPECT_EQ(
      calls,
      (Calls{"pane", Told("No code pane is currently active."), "add", Told("No project is currently open."),
             Told("No code snippet is currently selected."), Told("No code snippet is currently selected."),
             Told("No development environment is connected."),
             Told("No development environment is connected.")}));
}

TEST_F(CodeOutputTest, WhatFailsIsToldAndEndsTheDelivery) {
  for (const auto& [failing, all] : std::initializer_list<std::pair<const char*, bool>>{{"pane", false},
                                                                                        {"selection", false},
                                                                                        {"insert 7", false},
                                                                                        {"add", true},
                                                                                        {"insert 11", true},
                                                                                        {"show", true}}) {
    for (const bool gone : {false, true}) {
      SCOPED_TRACE(failing);
      calls.clear();
      script.failing = failing;
      script.gone = gone;
      Run(all);
      ASSERT_GE(calls.size(), 2U);
      EXPECT_TRUE(calls[calls.size() - 2].starts_with(failing));
      EXPECT_EQ(calls.back(), gone ? "lost" : Told("No " + script.failing + "."));
    }
  }
}

TEST_F(CodeOutputTest, AModuleWhoseNameIsRefusedKeepsItsOwnAndIsFilled) {
  script.failing = "name";
  output.PasteToNewModule("Lib");
  EXPECT_EQ(calls.back(), Told("The new module could not be named 'modLib': No name."));
  EXPECT_EQ(calls[calls.size() - 2], "show");
}

TEST_F(CodeOutputTest, ADisconnectionOrAnotherRequestMayComeMeanwhile) {
  for (const bool all : {false, true}) {
    Open();
    calls.clear();
    script.during = [&] {
      Run(true);  // ignored
      output.SetHost(nullptr);
      library = {};
      view.FillRows({});
      view.SetCode("");
    };
    Run(all);
    EXPECT_EQ(
        std::count_if(calls.begin(), calls.end(), [](const auto& call) { return call.starts_with("add"); }),
        all);
    EXPECT_TRUE(std::count(calls.begin(), calls.end(), "insert 7 shown\r\n\r\n and edited") == 1 ||
                std::count(calls.begin(), calls.end(), "insert 21 three\r\n") == 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "activate"), 0);
  }
}

}  // namespace
}  // namespace snip::test
