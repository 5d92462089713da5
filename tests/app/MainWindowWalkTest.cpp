#include <functional>
#include <string>
#include <vector>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/MainWindowUser.h"
#include "ui/main/frmAddIn.h"

// Every command of the main window by every way that leads to it.

namespace snip::test {
namespace {

constexpr const char* kNoEnvironment = "No development environment is connected.";
constexpr const char* kNameTaken =
    "A snippet in this library already has this name. Please use a different name for this snippet.";

class MainWindowWalk : public MainWindowUser {
 protected:
  using Way = std::function<void()>;
  struct NamedWay {
    const char* name;
    Way go;
  };
  struct Command {
    const char* name;
    std::vector<NamedWay> ways;
    std::function<bool()> effect;
    std::function<HWND()> focus = {};  ///< Where the focus is afterwards; anywhere when empty.
    Way before = {};
  };

  Way Press(int bar, const char* button) {
    return [=, this] { ClickButton(bar, button); };
  }
  Way Key(WORD key, std::initializer_list<WORD> held = {}) {
    const std::vector<WORD> modifiers(held);
    return [=] {
      if (modifiers.empty()) PressKey(key);
      if (modifiers.size() == 1) PressKey(key, {modifiers[0]});
      if (modifiers.size() == 2) PressKey(key, {modifiers[0], modifiers[1]});
    };
  }
  Way SnippetsItem(const char* item) {
    return [=, this] { ClickRow(0, 1, MouseButton::Right), ClickItem("Snippets", item); };
  }
  Way OutputItem(const char* item) {
    return [=, this] { ClickArrow(), ClickItem("Output", item); };
  }
  Way EditItem(const char* item) {
    return [=, this] { ClickAt(Code(), {60, 40}, 1, MouseButton::Right), ClickItem("Edit", item); };
  }

  void Check(const std::vector<Command>& commands) {
    for (const Command& command : commands) {
      for (const NamedWay& way : command.ways) {
        SCOPED_TRACE(std::string(command.name) + " by " + way.name);
        WriteLibrary("Numbers", {"one", "two", "three"});
        Open();
        if (HasFatalFailure()) return;
        if (command.before) command.before();
        try {
          way.go();
        } catch (const std::exception& error) {
          ADD_FAILURE() << error.what();
        }
        EXPECT_TRUE(WaitUntil(command.effect));
        if (command.focus) {
          const HWND wanted = command.focus();
          EXPECT_TRUE(FocusComes(wanted)) << GetDlgCtrlID(Focus());
        }
        program_.Kill();
      }
    }
  }

  static constexpr int kBar = frmAddIn::kMainBarId;
  static constexpr int kEditBar = frmAddIn::kEditBarId;
};

TEST_F(MainWindowWalk, EveryWayToEveryCommandOfTheLibrary) {
  const std::string file = "Numbers.bns";
  const auto editing = [&] { return !CodeLocked(); };
  const auto rows = [&](std::size_t count) { return [=, this] { return Rows().size() == count; }; };
  const auto names = [&](const char* name) {
    return [=, this] { return IsWindowVisible(NameBox()) != 0 && WindowText(NameBox()) == name; };
  };
  const auto list = [&] { return List(); };
  const auto code = [&] { return Code(); };
  const auto nameBox = [&] { return NameBox(); };
  Check({
      {"New Library",
       {{"button", Press(kBar, "New Library")}, {"key", Key('N', {VK_CONTROL, VK_SHIFT})}},
       [] { return FindVisibleWindow("New Code Library") != nullptr; }},
      {"Save Library",
       {{"button", Press(kBar, "Save Library")}, {"key", Key('S', {VK_CONTROL})}},
       [&] { return program_.folder().Has(file); },
       list,
       [&] { DeleteFileA(program_.folder().File(file).c_str()); }},
      {"Rename Library",
       {{"button", Press(kBar, "Rename Library")}, {"key", Key(VK_F2, {VK_SHIFT})}},
       [&] { return IsWindowVisible(FileNameBox()) != 0 && WindowText(FileNameBox()) == "Numbers"; },
       [&] { return FileNameBox(); }},
      {"New Snippet",
       {{"button", Press(kBar, "New Snippet")}, {"key", Key('N', {VK_CONTROL})}},
       names("New Snippet"),
       nameBox},
      {"Edit Snippet",
       {{"button", Press(kBar, "Edit Snippet")},
        {"key", Key('E', {VK_CONTROL})},
        {"double click",
         [&] {
           ClickAt(Code(), {60, 40}, 2);
         }},
        {"list menu", SnippetsItem("Edit Snippet")},
        {"code menu", EditItem("Edit Snippet")}},
       editing,
       code},
      {"Commit",
       {{"button", Press(kEditBar, "Commit")},
        {"key", Key('K', {VK_CONTROL})},
        {"edit button", Press(kBar, "Edit Snippet")},
        {"edit key", Key('E', {VK_CONTROL})},
        {"code menu", EditItem("Edit Snippet")}},
       [&] { return CodeLocked(); },
       code,
       [&] {
         PressKey('E', {VK_CONTROL});
         EXPECT_TRUE(WaitUntil(editing));
       }},
      {"Delete Snippet",
       {{"button", Press(kBar, "Delete Snippet")},
        {"key", Key('D', {VK_CONTROL})},
        {"list key", Key(VK_DELETE)},
        {"list menu", SnippetsItem("Delete Snippet")}},
       rows(2),
       list},
      {"Rename Snippet",
       {{"key", Key(VK_F2)},
        {"double click", [&] { ClickRow(0, 2); }},
        {"list menu", SnippetsItem("Rename Snippet")}},
       names("one"),
       nameBox},
  });
}

TEST_F(MainWindowWalk, EveryWayToTheOtherCommands) {
  const auto box = [&](const char* prompt) { return [=, this] { return Prompt() == prompt; }; };
  const auto menu = [&](const char* title) { return [=] { return FindVisibleWindow(title) != nullptr; }; };
  const auto copied = [] { return ClipboardNow() == "'one"; };
  const auto emptyClipboard = [] {
    EXPECT_NE(OpenClipboard(nullptr), 0);
    EmptyClipboard();
    CloseClipboard();
  };
  const auto focusCode = [&] {
    ClickAt(Code(), {60, 40});
    EXPECT_TRUE(FocusComes(Code()));
  };
  const auto list = [&] { return List(); };
  Check({
      {"Paste to code window",
       {{"button", Press(kBar, "Paste to Current Code Window")},
        {"key", Key(VK_RETURN, {VK_CONTROL})},
        {"own key", Key('P', {VK_CONTROL, VK_SHIFT})},
        {"output menu", OutputItem("Paste to Current Code Window")},
        {"list menu", SnippetsItem("Paste to Code Window")}},
       box(kNoEnvironment)},
      {"Create new module",
       {{"output menu", OutputItem("Create New Module (All Snippets)")},
        {"key", Key('M', {VK_CONTROL, VK_SHIFT})}},
       [&] {
         return Prompt() == kNoEnvironment && !Button(kBar, "Create New Module (All Snippets)").name.empty();
       }},
      {"Copy",
       {{"list key", Key('C', {VK_CONTROL})},
        {"key", Key('C', {VK_CONTROL, VK_SHIFT})},
        {"output menu", OutputItem("Copy to Clipboard")},
        {"list menu", SnippetsItem("Copy to Clipboard")}},
       copied,
       list,
       emptyClipboard},
      {"Output menu",
       {{"arrow", [&] { ClickArrow(); }}, {"key", Key(VK_RETURN, {VK_CONTROL, VK_SHIFT})}},
       menu("Output"),
       list},
      {"Snippets menu",
       {{"right click", [&] { ClickRow(2, 1, MouseButton::Right); }},
        {"on nothing",
         [&] {
           ClickAt(List(), {30, 200}, 1, MouseButton::Right);
         }},
        {"menu key", Key(VK_APPS)},
        {"key", Key(VK_F10, {VK_SHIFT})}},
       menu("Snippets"),
       list},
      {"Attachment menu",
       {{"button", [&] { ClickCentre(Control(frmAddIn::kAttachId)); }},
        {"key", Key('A', {VK_CONTROL, VK_SHIFT})},
        {"space", [&] { PressKey(VK_TAB), PressKey(VK_TAB), PressKey(VK_SPACE); }}},
       menu("Attachment")},
      {"Set attachment", {{"key", Key('O', {VK_CONTROL, VK_SHIFT})}}, menu("Choose Attachment")},
      {"Code menu",
       {{"right click",
         [&] {
           ClickAt(Code(), {60, 40}, 1, MouseButton::Right);
         }}},
       menu("Edit"),
       [&] { return Code(); },
       focusCode},
      {"Keep on Top",
       {{"button", Press(kBar, "Keep on Top")}, {"key", Key('T', {VK_CONTROL})}},
       [&] {
         return (GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0 && Checked(kBar, "Keep on Top");
       },
       list},
      {"Syntax Highlighting off",
       {{"button", Press(kEditBar, "Syntax Highlighting")}, {"key", Key('H', {VK_CONTROL})}},
       [&] { return !Checked(kEditBar, "Syntax Highlighting"); },
       list,
       [&] { EXPECT_TRUE(Checked(kEditBar, "Syntax Highlighting")); }},
  });
}

TEST_F(MainWindowWalk, TheCodesMenuEditsAsItsKeysDo) {
  WriteLibrary("Numbers", {"one"});
  Open();
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(FocusComes(Code()));
  TypeText("ab ");
  ASSERT_TRUE(WaitUntil([&] { return WindowText(Code()) == "ab 'one"; }));
  const auto text = [&](const std::string& wanted) {
    return WaitUntil([&] { return WindowText(Code()) == wanted; });
  };
  EditItem("Select All")();
  EditItem("Cut")();
  EXPECT_TRUE(text("")) << WindowText(Code());
  EXPECT_EQ(ClipboardNow(), "ab 'one");
  EditItem("Paste")();
  EditItem("Paste")();
  EXPECT_TRUE(text("ab 'oneab 'one")) << WindowText(Code());
  EditItem("Undo")();
  EXPECT_TRUE(text("ab 'one")) << WindowText(Code());
  EditItem("Select All")();
  TypeText("x");
  ASSERT_TRUE(text("x"));
  EditItem("Select All")();
  EditItem("Copy")();
  EXPECT_TRUE(WaitUntil([] { return ClipboardNow() == "x"; }));
  EXPECT_TRUE(FocusComes(Code()));
  EXPECT_FALSE(CodeLocked()) << "a menu does not end the edit";
}

TEST_F(MainWindowWalk, NamesOfSnippets) {
  struct Case {
    const char* name;
    std::string typed;
    std::function<void()> end;
    std::string after;
    bool refused = false;
  };
  const std::vector<Case> cases = {
      {"Enter", "eins", [] { PressKey(VK_RETURN); }, "eins"},
      {"Escape", "eins", [] { PressKey(VK_ESCAPE); }, "one"},
      {"Tab", "eins", [] { PressKey(VK_TAB); }, "eins"},
      {"leaving for another row", "eins", [&] { ClickRow(2); }, "eins"},
      {"leaving for the code", "eins",
       [&] {
         ClickAt(Code(), {60, 40});
       },
       "eins"},
      {"leaving by saving", "eins", [] { PressKey('S', {VK_CONTROL}); }, "eins"},
      {"its own in other case", "ONE", [] { PressKey(VK_RETURN); }, "ONE"},
      {"taken", "two", [] { PressKey(VK_RETURN); }, "one", true},
      {"taken in other case", "TWO", [] { PressKey(VK_RETURN); }, "one", true},
      {"taken, leaving for the row of that name", "TWO", [&] { ClickRow(1); }, "one", true},
      {"taken, leaving for the library list", "two", [&] { ClickCentre(Files()); }, "one", true},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    WriteLibrary("Numbers", {"one", "two", "three"});
    Open();
    PressKey(VK_F2);
    ASSERT_TRUE(FocusComes(NameBox()));
    TypeOver(NameBox(), expected.typed);
    expected.end();
    if (expected.refused) {
      Answer(kNameTaken, IDOK);
      EXPECT_TRUE(FocusComes(NameBox()));
      EXPECT_EQ(WindowText(NameBox()), expected.typed);
      PressKey(VK_ESCAPE);
    }
    EXPECT_TRUE(WaitUntil([&] {
      return IsWindowVisible(NameBox()) == 0 && Rows() == Names{expected.after, "two", "three"};
    })) << testing::PrintToString(Rows());
    EXPECT_NE(Focus(), nullptr);
    program_.Kill();
  }
}

TEST_F(MainWindowWalk, NamesOfLibraries) {
  struct Case {
    const char* name;
    std::string typed;
    std::function<void()> end;
    std::string after;
  };
  const std::vector<Case> cases = {
      {"Enter", "Renamed 2", [] { PressKey(VK_RETURN); }, "Renamed 2"},
      {"other case", "MINE", [] { PressKey(VK_RETURN); }, "MINE"},
      {"Escape", "Renamed", [] { PressKey(VK_ESCAPE); }, "Mine"},
      {"leaving", "Renamed", [&] { ClickRow(0); }, "Mine"},
      {"leaving by Tab", "Renamed", [] { PressKey(VK_TAB); }, "Mine"},
      {"taken", "Other", [] { PressKey(VK_RETURN); }, "Mine"},
      {"blank", "", [] { PressKey(' '), PressKey(VK_RETURN); }, "Mine"},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    WriteLibrary("Mine", {"one"});
    WriteLibrary("Other", {"two"});
    Open();
    if (WindowText(Files()) != "Mine") ChooseLibrary("Mine");
    ASSERT_TRUE(WaitUntil([&] { return Rows() == Names{"one"}; }));
    ClickButton(kBar, "Rename Library");
    ASSERT_TRUE(FocusComes(FileNameBox()));
    if (expected.typed.empty()) {
      PressKey(VK_DELETE);
      EXPECT_TRUE(WaitUntil([&] { return WindowText(FileNameBox()) == "Mine"; }));
    } else {
      TypeOver(FileNameBox(), expected.typed);
    }
    expected.end();
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(FileNameBox()) == 0; }));
    EXPECT_EQ(WindowText(Files()), expected.after);
    EXPECT_NE(File(expected.after), "");
    EXPECT_EQ(File("Other").find("two") != std::string::npos, true);
    EXPECT_NE(Focus(), nullptr);
    Close();
    for (const std::string& name : {expected.after, std::string("Mine")}) {
      DeleteFileA(program_.folder().File(name + ".bns").c_str());
    }
  }
}

TEST_F(MainWindowWalk, ANewLibraryNeedsANameOfItsOwn) {
  WriteLibrary("Mine", {"one"});
  Open();
  ClickButton(kBar, "New Library");
  const auto enter = [](const std::string& name, WORD key) {
    const HWND dialog = WaitForWindow("New Code Library");
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(dialog); }));
    TypeText(name);
    PressKey(key);
    ASSERT_TRUE(WaitUntil([&] { return IsWindow(dialog) == 0; }));
  };
  enter("mine", VK_RETURN);
  Answer("This file already exists. Please choose another name.", IDOK);
  enter("Fresh", VK_RETURN);
  EXPECT_TRUE(WaitUntil([&] { return WindowText(Files()) == "Fresh" && Rows() == Names{"New Snippet"}; }));
  EXPECT_EQ(File("Fresh"), NewLibraryBns());
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  PressKey('N', {VK_CONTROL, VK_SHIFT});
  enter("Never", VK_ESCAPE);
  EXPECT_FALSE(program_.folder().Has("Never.bns"));
  EXPECT_EQ(WindowText(Files()), "Fresh");
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  Close();
}

}  // namespace
}  // namespace snip::test
