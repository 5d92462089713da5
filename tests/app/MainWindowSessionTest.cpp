#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <richedit.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/MainWindowUser.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/frmAddIn.h"

// What lasts longer than one command: sizes, settings, attachments, libraries and days.

namespace snip::test {
namespace {

class MainWindowSession : public MainWindowUser {
 protected:
  static constexpr int kBar = frmAddIn::kMainBarId;
  static constexpr int kEditBar = frmAddIn::kEditBarId;

  HWND Columns() const { return FindWindowExA(window_, nullptr, "SnipstoreSplitter", nullptr); }
  HWND Halves() const {
    return FindWindowExA(GetParent(Description()), nullptr, "SnipstoreSplitter", nullptr);
  }
  static HWND Tip(const std::string& text) {
    const HWND tip = FindWindowA("frmTip", text.c_str());
    return IsWindowVisible(tip) != 0 ? tip : nullptr;
  }
  void Describe(const std::string& text) const {
    ClickCentre(Description());
    TypeOver(Description(), text);
  }
  static int ClientWidth(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return static_cast<int>(client.right);
  }
  static int ClientHeight(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return static_cast<int>(client.bottom);
  }
};

TEST_F(MainWindowSession, SplittersKeepTheirLimits) {
  WriteLibrary("Numbers", {"one"});
  Open();
  const int inner = ClientWidth(window_);
  const auto release = [] { ReleaseMouse(); };
  const auto rightButton = [] {
    PressMouse(MouseButton::Right), ReleaseMouse(MouseButton::Right), ReleaseMouse();
  };
  const auto escape = [] { PressKey(VK_ESCAPE), ReleaseMouse(); };
  struct Case {
    const char* name;
    bool columns;
    int by;          ///< Pixels.
    int afterwards;  ///< Twips of the part before the splitter.
    std::function<void()> end;
  };
  const std::vector<Case> cases = {
      {"in the middle", true, 60, 0, release},
      {"the right button ends it", true, -45, 0, rightButton},
      {"Escape is no part of it", true, 30, 0, escape},
      {"far left", true, -1000, 450, release},
      {"far right", true, 1000, twips_.ToTwipsX(inner) - 650, release},
      {"down", false, 40, 0, release},
      {"up by the right button", false, -20, 0, rightButton},
      {"to the top", false, -1000, 250, release},
      {"to the bottom", false, 1000, twips_.ToTwipsY(ClientHeight(GetParent(Description()))) - 250, release},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    const HWND splitter = expected.columns ? Columns() : Halves();
    const HWND part = expected.columns ? GetParent(List()) : Description();
    const auto size = [&] {
      return expected.columns ? twips_.ToTwipsX(Place(part).width) : twips_.ToTwipsY(Place(part).height);
    };
    const Rect frame = Place(window_);
    const Rect before = Place(splitter);
    const int sizeBefore = size();
    int by = expected.by;
    if (expected.columns) {
      by = std::clamp(by, frame.left + 8 - before.left, frame.right() - 12 - before.left);
    } else {
      by = std::clamp(by, frame.top + 55 - before.top, frame.bottom() - 12 - before.top);
    }
    Drag(splitter, expected.columns ? POINT{by, 0} : POINT{0, by}, expected.end);
    const int wanted = expected.afterwards != 0 ? expected.afterwards : sizeBefore + twips_.ToTwipsX(by);
    EXPECT_TRUE(WaitUntil([&] { return std::abs(size() - wanted) <= 15; })) << size() << " for " << wanted;
    SendMessageA(window_, WM_NULL, 0, 0);  // answered when the layout is done
  }
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  Close();
  EXPECT_EQ(Setting("Position", "LeftPane").empty(), false);
}

TEST_F(MainWindowSession, SettingsAreReadAtTheStartAndWrittenAtTheEnd) {
  WriteLibrary("Numbers", {"one"});
  SetSetting("Settings", "KeepOnTop", "1");
  SetSetting("Settings", "ColorSyntax", "0");
  SetSetting("Settings", "FontName", "Arial");
  SetSetting("Settings", "FontSize", "16");
  SetSetting("Position", "Left", "900");
  SetSetting("Position", "Top", "600");
  SetSetting("Position", "Width", "9000");
  SetSetting("Position", "Height", "150");
  Open();
  const auto topmost = [&] { return (GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
  EXPECT_TRUE(topmost());
  EXPECT_TRUE(Checked(kBar, "Keep on Top"));
  EXPECT_FALSE(Checked(kEditBar, "Syntax Highlighting"));
  const Rect place = Place(window_);
  EXPECT_EQ(place, (Rect{60, 40, 600, 480})) << "150 twips are no height";
  EXPECT_GT(SendMessageA(Description(), EM_GETLINECOUNT, 0, 0), 0);

  PressKey('T', {VK_CONTROL});
  PressKey('H', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return !topmost() && Checked(kEditBar, "Syntax Highlighting"); }));
  for (const auto command : {WPARAM{SC_MINIMIZE}, WPARAM{SC_MAXIMIZE}}) {
    PostMessageA(window_, WM_SYSCOMMAND, command, 0);
    ASSERT_TRUE(WaitUntil([&] { return IsIconic(window_) != 0 || IsZoomed(window_) != 0; }));
    Close();
    EXPECT_EQ(Setting("Position", "Left") + "," + Setting("Position", "Top") + "," +
                  Setting("Position", "Width") + "," + Setting("Position", "Height"),
              "900,600,9000,7200");
    Open();
    EXPECT_EQ(Place(window_), place);
  }
  EXPECT_EQ(Setting("Settings", "KeepOnTop") + Setting("Settings", "ColorSyntax"), "01");
  EXPECT_FALSE(topmost());
  Close();
}

/// What the system takes for the resolution of its screens in processes that start from now on.
class ScreenResolution {
 public:
  ~ScreenResolution() { SHDeleteValueA(HKEY_CURRENT_USER, kKey, "LogPixels"); }
  static void Set(DWORD dpi) {
    SHSetValueA(HKEY_CURRENT_USER, kKey, "LogPixels", REG_DWORD, &dpi, sizeof dpi);
  }

 private:
  static constexpr const char* kKey = "Control Panel\\Desktop";
};

TEST_F(MainWindowSession, AnotherResolutionAtTheNextStartKeepsEveryPlace) {
  WriteLibrary("Numbers", {"one"});
  const std::vector<std::pair<std::string, std::string>> places = {
      {"Left", "900"},    {"Top", "600"},       {"Width", "7200"},
      {"Height", "4500"}, {"LeftPane", "2400"}, {"Description", "1200"}};
  for (const auto& [name, text] : places) SetSetting("Position", name, text);
  const ScreenResolution resolution;
  for (const DWORD dpi : {144U, 120U, 192U, 96U}) {
    SCOPED_TRACE(dpi);
    ScreenResolution::Set(dpi);
    Open();
    EXPECT_EQ(Place(window_).width, 7200 * static_cast<int>(dpi) / 1440);
    EXPECT_EQ(Rows(), Names{"one"});
    Close();
    for (const auto& [name, text] : places) EXPECT_EQ(Setting("Position", name), text) << name;
  }
}

TEST_F(MainWindowSession, ANameTooLongForTheListIsTold) {
  const std::string longName(80, 'W');
  for (const bool tips : {true, false}) {
    SCOPED_TRACE(tips);
    WriteLibrary("Numbers", {"one", longName, "three"});
    SetSetting("Settings", "SnippetTips", tips ? "-1" : "0");
    Open();
    PointAt(List(), {30, 6});
    PointAt(List(), {30, 19});
    if (!tips) {
      // As long as a tip takes at most, and then some.
      EXPECT_FALSE(WaitUntil([&] { return Tip(longName) != nullptr; }, 500));
      Close();
      continue;
    }
    ASSERT_TRUE(WaitUntil([&] { return Tip(longName) != nullptr; }));
    const HWND tip = Tip(longName);
    RECT row{};
    SendMessageA(List(), LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&row));
    MapWindowPoints(List(), nullptr, reinterpret_cast<POINT*>(&row), 2);
    EXPECT_EQ(Place(tip).left, row.left - 2);
    EXPECT_EQ(Place(tip).top, row.top - 2);
    EXPECT_TRUE(IsForeground(window_));
    MovePointer({row.right + 100, (row.top + row.bottom) / 2});  // still over the tip
    EXPECT_FALSE(WaitUntil([&] { return Tip(longName) == nullptr; }, 300));
    MovePointer({row.right + 100, row.top + 150});
    EXPECT_TRUE(WaitUntil([&] { return Tip(longName) == nullptr; }));
    PointAt(List(), {30, 19});
    ASSERT_TRUE(WaitUntil([&] { return Tip(longName) != nullptr; }));
    ClickRow(1, 2);  // through the tip
    EXPECT_TRUE(WaitUntil([&] { return Selected() == 1 && IsWindowVisible(NameBox()) != 0; }));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(NameBox()) == 0; }));
    Close();
  }
}

TEST_F(MainWindowSession, AttachmentsAreSetThroughTheDialogAndViewed) {
  for (const bool minimises : {true, false}) {
    SCOPED_TRACE(minimises);
    WriteLibrary("Numbers", {"one", "two"});
    // Of a kind that the system has no program for.
    program_.folder().Write("seen.nothing", "");
    SetSetting("Settings", "MinimizeOnView", minimises ? "-1" : "0");
    Open();
    const auto open = [&] {
      ClickCentre(Control(frmAddIn::kAttachId));
      return AccessibleClient(Menu("Attachment")).Children()[0].Has(STATE_SYSTEM_UNAVAILABLE);
    };
    EXPECT_TRUE(open()) << "there is nothing to view";
    ClickItem("Attachment", "Set Attachment...");
    ChooseFile("Choose Attachment", "");
    EXPECT_TRUE(open());
    ClickItem("Attachment", "Set Attachment...");
    const std::string path = program_.folder().File("seen.nothing");
    ChooseFile("Choose Attachment", path);
    PressKey('S', {VK_CONTROL});
    EXPECT_TRUE(WaitUntil([&] {
      return File("Numbers").find("one\r\n" + path + "\r\n") != std::string::npos;
    })) << File("Numbers");
    EXPECT_FALSE(open());
    if (minimises) {
      ClickItem("Attachment", "View Attachment");
    } else {
      PressKey(VK_ESCAPE);
      ASSERT_TRUE(WaitUntil([&] { return FindVisibleWindow("Attachment") == nullptr; }));
      PressKey('O', {VK_CONTROL});
    }
    EXPECT_TRUE(WaitUntil([&] { return FindVisibleWindow("Attachment") == nullptr; }));
    EXPECT_TRUE(WaitUntil([&] { return (IsIconic(window_) != 0) == minimises; }));
    EXPECT_EQ(Prompt(), "") << "that it cannot be opened is not told";
    Close();
  }
}

TEST_F(MainWindowSession, SettingsAndAboutOpenByButtonAndKey) {
  WriteLibrary("Numbers", {"one"});
  Open();
  struct Way {
    const char* button;
    WORD key;
    const char* title;
  };
  for (const auto& [button, key, title] :
       {Way{"Settings...", VK_F9, "Settings"}, Way{"About...", VK_F1, "About Brennic Snipstore"}}) {
    for (const bool byKey : {false, true}) {
      if (byKey) {
        PressKey(key);
      } else {
        ClickButton(kBar, button);
      }
      const HWND dialog = WaitForWindow(title);
      ASSERT_NE(dialog, nullptr) << title;
      ASSERT_TRUE(WaitUntil([&] { return IsForeground(dialog); }));
      PressKey(VK_ESCAPE);
      EXPECT_TRUE(WaitUntil([&] { return IsWindow(dialog) == 0 && IsForeground(window_); })) << title;
    }
  }
  Close();
}

TEST_F(MainWindowSession, LibrariesFromElsewhere) {
  WriteLibrary("Home", {"one"});
  const TemporaryFolder elsewhere;
  elsewhere.Write("Far.bns", WriteBns(std::vector{Named("far")}));
  Open();
  const auto shows = [&](const std::string& file, const std::string& row) {
    return WaitUntil([&] { return WindowText(Files()) == file && Rows() == Names{row}; });
  };
  ChooseLibrary("(Browse...)");
  ChooseFile("Open Snippet File", "");
  EXPECT_TRUE(shows("Home", "one"));
  for (int time = 0; time < 2; ++time) {
    ChooseLibrary("(Browse...)");
    ChooseFile("Open Snippet File", elsewhere.File("Far.bns"));
    EXPECT_TRUE(shows(elsewhere.File("Far.bns"), "far")) << WindowText(Files());
    EXPECT_EQ(SendMessageA(Files(), CB_GETCOUNT, 0, 0), 3);
  }
  EXPECT_TRUE(IsForeground(window_));
  Describe("changed");
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return File("Far").find("changed") != std::string::npos; }))
      << "saved beside the program";
  EXPECT_TRUE(shows("Far", "far")) << "the file that was written";
  EXPECT_EQ(elsewhere.Read("Far.bns").find("changed"), std::string::npos);
  Close();
}

TEST_F(MainWindowSession, ADroppedLibraryIsOpenedAndADroppedFileAttached) {
  WriteLibrary("Home", {"one"});
  const TemporaryFolder elsewhere;
  elsewhere.Write("Far.bns", WriteBns(std::vector{Named("far")}));
  Open();
  DWORD id = 0;
  GetWindowThreadProcessId(window_, &id);
  const UniqueFile process(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, id));
  // The files' names are in the memory of the process that they are dropped on.
  const auto drop = [&](const std::string& path, POINT screen) {
    struct Dropped {
      DROPFILES header{};
      char names[MAX_PATH + 1]{};
    } dropped;
    ScreenToClient(window_, &screen);
    dropped.header = {.pFiles = sizeof(DROPFILES), .pt = screen, .fNC = FALSE, .fWide = FALSE};
    std::copy(path.begin(), path.end(), dropped.names);
    void* there = VirtualAllocEx(process.get(), nullptr, sizeof dropped, MEM_COMMIT, PAGE_READWRITE);
    WriteProcessMemory(process.get(), there, &dropped, sizeof dropped, nullptr);
    PostMessageA(window_, WM_DROPFILES, reinterpret_cast<WPARAM>(there), 0);
  };
  const Rect list = Place(List());
  drop(elsewhere.File("Far.bns"), {list.left + 20, list.top + 60});
  EXPECT_TRUE(WaitUntil([&] { return Rows() == Names{"far"}; })) << WindowText(Files());
  const Rect button = Place(Control(frmAddIn::kAttachId));
  drop(elsewhere.File("Far.bns"), {button.left + 5, button.top + 5});
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil(
      [&] { return File("Far").find("far\r\n" + elsewhere.File("Far.bns")) != std::string::npos; }));
  Close();
}

TEST_F(MainWindowSession, MenusAreTornOffOnlyWhenAllowed) {
  for (const char* allowed : {"-1", "0"}) {
    SCOPED_TRACE(allowed);
    WriteLibrary("Numbers", {"one", "two"});
    SetSetting("Settings", "AllowMenuDrag", allowed);
    Open();
    ClickRow(0, 1, MouseButton::Right);
    const HWND menu = Menu("Snippets");
    // It unfolds, and then takes the mouse; a press before that would not be held to its end.
    ASSERT_TRUE(WaitUntil([&] {
      GUITHREADINFO thread{};
      thread.cbSize = sizeof thread;
      return GetGUIThreadInfo(GetWindowThreadProcessId(menu, nullptr), &thread) != 0 &&
             thread.hwndCapture == menu;
    }));
    const Rect docked = Place(menu);
    PointAt(menu, {30, 3});
    PressMouse();
    const POINT to{docked.left + 330, docked.top + 103};
    MovePointer({to.x - 100, to.y - 50});
    MovePointer(to);
    const bool allows = *allowed != '0';
    if (allows) {
      EXPECT_TRUE(WaitUntil([&] { return Place(menu).left == docked.left + 300; }));
    }
    ReleaseMouse();
    if (!allows) {
      EXPECT_TRUE(WaitUntil([&] { return IsWindow(menu) == 0; })) << "a release outside closes it";
      Close();
      continue;
    }
    ClickItem("Snippets", "Delete Snippet");
    EXPECT_TRUE(WaitUntil([&] { return Rows() == Names{"two"}; }));
    EXPECT_NE(IsWindowVisible(menu), 0) << "it stays";
    ClickAt(menu, {ClientWidth(menu) - 8, 7});
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(menu) == 0; }));
    PostMessageA(window_, WM_CLOSE, 0, 0);
    Answer("Save changes to 'Numbers'?", IDNO);
    ASSERT_TRUE(program_.WaitForEnd());
  }
}

TEST_F(MainWindowSession, AnEmptyFolderAllowsANewLibraryOnly) {
  program_.Start();
  ASSERT_TRUE(WaitUntil([&] { return (window_ = FindWindowA("frmAddIn", nullptr)) != nullptr; }));
  Answer("There are no BNS files in the BnSnipstore directory.", IDOK);
  for (const char* name :
       {"Save Library", "Rename Library", "New Snippet", "Edit Snippet", "Delete Snippet"}) {
    EXPECT_TRUE(Button(kBar, name).Has(STATE_SYSTEM_UNAVAILABLE)) << name;
  }
  for (const auto key : {WORD{'N'}, WORD{'E'}, WORD{'D'}, WORD{'S'}}) PressKey(key, {VK_CONTROL});
  ClickAt(List(), {30, 60}, 2);
  ClickAt(List(), {30, 60}, 1, MouseButton::Right);
  ClickItem("Snippets", "Copy to Clipboard");
  ClickButton(kBar, "New Library");
  const HWND dialog = WaitForWindow("New Code Library");
  ASSERT_TRUE(WaitUntil([&] { return IsForeground(dialog); }));
  TypeText("First");
  PressKey(VK_RETURN);
  EXPECT_TRUE(WaitUntil([&] { return Rows() == Names{"New Snippet"}; }));
  EXPECT_FALSE(Button(kBar, "Edit Snippet").Has(STATE_SYSTEM_UNAVAILABLE));
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  Close();
}

TEST_F(MainWindowSession, OddOrders) {
  WriteLibrary("Numbers", {"one", "two", "three"});
  Open();
  // A menu is open and a key of the window is pressed; Escape closes the menu and nothing else.
  ClickRow(1, 1, MouseButton::Right);
  ASSERT_NE(Menu("Snippets"), nullptr);
  EXPECT_EQ(Selected(), 1) << "the row under the mouse";
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(WaitUntil([] { return FindVisibleWindow("Snippets") == nullptr; }));
  EXPECT_TRUE(FocusComes(List()));

  // Without a selection.
  ClickRow(2);
  ASSERT_TRUE(WaitUntil([&] { return Selected() == 2; }));
  PressKey(VK_DELETE);
  ASSERT_TRUE(WaitUntil([&] { return Rows().size() == 2 && Selected() == -1; }));
  PressKey('E', {VK_CONTROL});
  Answer("No snippet selected.", IDOK);
  PressKey(VK_DELETE);
  Answer("No snippet selected.", IDOK);
  PressKey(VK_F2);
  PressKey(VK_F2, {VK_SHIFT});
  ClickCentre(Control(frmAddIn::kAttachId));
  ASSERT_NE(Menu("Attachment"), nullptr);
  ClickItem("Attachment", "Set Attachment...");
  EXPECT_TRUE(WaitUntil([] { return FindVisibleWindow("Attachment") == nullptr; }));
  EXPECT_TRUE(CodeLocked());
  EXPECT_EQ(IsWindowVisible(FileNameBox()), 0);
  EXPECT_EQ(Rows(), (Names{"one", "two"}));

  // A rename and then the end: the new name is part of what is asked for.
  ClickRow(0);
  PressKey(VK_F2);
  ASSERT_TRUE(FocusComes(NameBox()));
  TypeOver(NameBox(), "eins");
  PressKey(VK_F4, {VK_MENU});
  Answer("Save changes to 'Numbers'?", IDYES);
  ASSERT_TRUE(program_.WaitForEnd());
  EXPECT_NE(File("Numbers").find("eins"), std::string::npos);

  // An edit and then another library.
  WriteLibrary("Other", {"far"});
  Open();
  const bool numbersFirst = WindowText(Files()) == "Numbers";
  const std::string first = numbersFirst ? "Numbers" : "Other";
  const std::string second = numbersFirst ? "Other" : "Numbers";
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(FocusComes(Code()));
  TypeText("x");
  ASSERT_TRUE(WaitUntil([&] { return WindowText(Code())[0] == 'x'; }));
  ChooseLibrary(second);
  Answer("Save changes to '" + first + "'?", IDYES);
  EXPECT_TRUE(WaitUntil([&] { return File(first).find("\r\nx'") != std::string::npos; }));
  EXPECT_TRUE(WaitUntil([&] { return CodeLocked() && Selected() == 0 && WindowText(Files()) == second; }));
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  Close();
}

TEST_F(MainWindowSession, TinyAndHugeWindows) {
  WriteLibrary("Numbers", {"one"});
  Open();
  for (const Size size : {Size{130, 30}, Size{300, 110}, Size{2000, 1600}, Size{720, 480}}) {
    SCOPED_TRACE(size.width);
    SetWindowPos(window_, nullptr, 0, 0, size.width, size.height, SWP_NOZORDER | SWP_NOMOVE);
    EXPECT_TRUE(WaitUntil([&] { return Place(window_).height >= std::min(size.height, 31); }));
    PressKey(VK_F2);
    EXPECT_TRUE(FocusComes(NameBox()));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(FocusComes(List()));
  }
  const Rect inside = Place(Control(frmAddIn::kCodeId));
  EXPECT_LT(inside.right(), Place(window_).right());
  EXPECT_GT(inside.height, 200);
  Close();
}

TEST_F(MainWindowSession, ADaysUse) {
  const Names libraries{"Alpha", "Beta", "Gamma"};
  Names all;
  for (int i = 0; i < 20; ++i) all.push_back("snippet " + std::to_string(i));
  for (const std::string& library : libraries) WriteLibrary(library, all);
  Open();
  for (const std::string& library : libraries) {
    if (WindowText(Files()) != library) ChooseLibrary(library);
    ASSERT_TRUE(WaitUntil([&] { return WindowText(Files()) == library && Rows() == all; }));
    ClickRow(3);
    PressKey(VK_F2);
    ASSERT_TRUE(FocusComes(NameBox()));
    TypeOver(NameBox(), "renamed");
    PressKey(VK_RETURN);
    ASSERT_TRUE(FocusComes(List()));
    ClickRow(5);
    PressKey(VK_DELETE);
    ASSERT_TRUE(WaitUntil([&] { return Rows().size() == 19; }));
    ClickButton(kBar, "New Snippet");
    ASSERT_TRUE(FocusComes(NameBox()));
    TypeOver(NameBox(), "added");
    ClickAt(Code(), {60, 40}, 2);
    ASSERT_TRUE(WaitUntil([&] { return !CodeLocked() && Focus() == Code(); }));
    TypeOver(Code(), "Beep");
    Describe("in " + library);
    if (library == "Alpha") ClickButton(kBar, "Save Library");
    if (library == "Beta") {
      ChooseLibrary("Gamma");
      Answer("Save changes to 'Beta'?", IDNO);
    }
    // Gamma's changes die with the program.
  }
  program_.Kill();

  Names changed = all;
  changed[3] = "renamed";
  changed.erase(changed.begin() + 5);
  changed.emplace_back("added");
  Open();
  for (const std::string& library : libraries) {
    SCOPED_TRACE(library);
    if (WindowText(Files()) != library) ChooseLibrary(library);
    EXPECT_TRUE(WaitUntil([&] { return WindowText(Files()) == library && Selected() == 0; }));
    EXPECT_EQ(Rows(), library == "Alpha" ? changed : all);
  }
  ChooseLibrary("Alpha");
  ASSERT_TRUE(WaitUntil([&] { return Rows() == changed; }));
  PressKey(VK_TAB);  // from the library list
  ASSERT_TRUE(FocusComes(List()));
  PressKey(VK_END);
  EXPECT_TRUE(
      WaitUntil([&] { return WindowText(Code()) == "Beep" && WindowText(Description()) == "in Alpha"; }));
  Close();
}

}  // namespace
}  // namespace snip::test
