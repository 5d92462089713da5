#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <richedit.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "tests/app/MainWindowUser.h"
#include "ui/main/frmAddIn.h"

// What only the whole program shows and lasts longer than one command. Every command by every way that leads
// to it, and sequences of them, are in scripts/.

namespace snip::test {
namespace {

constexpr int kBar = frmAddIn::kMainBarId;
constexpr int kEditBar = frmAddIn::kEditBarId;

class MainWindowTest : public MainWindowFixture {
 protected:
  bool Topmost() const { return (GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; }
  static HWND Tip(const std::string& text) {
    const HWND tip = FindWindowA("frmTip", text.c_str());
    return IsWindowVisible(tip) != 0 ? tip : nullptr;
  }
};

TEST_F(MainWindowTest, SplittersMoveTheirPartsAndAreKept) {
  WriteLibrary("Numbers", {"one"});
  Open();
  const HWND columns = FindWindowExA(window_, nullptr, "SnipstoreSplitter", nullptr);
  const HWND rows = FindWindowExA(window_, columns, "SnipstoreSplitter", nullptr);
  const auto becomes = [&](HWND part, bool width, int wanted) {
    return WaitUntil([&] { return (width ? Place(part).width : Place(part).height) == wanted; });
  };
  const int width = Place(List()).width;
  const int right = Drag(columns, {60, 0}, [] {
    PressMouse(MouseButton::Right), ReleaseMouse(MouseButton::Right), ReleaseMouse();
  });
  EXPECT_NE(right, 0) << "the right button ends it";
  EXPECT_TRUE(becomes(List(), true, width + right));
  const int height = Place(Description()).height;
  const int down = Drag(rows, {0, 40}, [] { PressKey(VK_ESCAPE), ReleaseMouse(); });
  EXPECT_NE(down, 0) << "Escape is no part of it";
  EXPECT_TRUE(becomes(Description(), false, height + down));
  EXPECT_TRUE(WaitUntil([&] { return IsChild(window_, Focus()) != 0; }));
  Close();
  Open();
  EXPECT_TRUE(becomes(List(), true, width + right));
  EXPECT_TRUE(becomes(Description(), false, height + down));
  Close();
}

TEST_F(MainWindowTest, SettingsAreReadAtTheStartAndWrittenAtTheEnd) {
  WriteLibrary("Numbers", {"one"});
  SetSetting("Settings", "KeepOnTop", "1");
  SetSetting("Settings", "ColorSyntax", "0");
  const Names places{"Left", "Top", "Width", "Height"};
  const Names texts{"900", "600", "9000", "150"};
  for (std::size_t i = 0; i < places.size(); ++i) SetSetting("Position", places[i], texts[i]);
  Open();
  EXPECT_TRUE(Topmost());
  EXPECT_TRUE(Checked(kBar, "Keep on Top"));
  EXPECT_FALSE(Checked(kEditBar, "Syntax Highlighting"));
  const Rect place = Place(window_);
  EXPECT_EQ(place, (Rect{60, 40, 600, 480})) << "150 twips are no height";

  PressKey('T', {VK_CONTROL});
  PressKey('H', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return !Topmost() && Checked(kEditBar, "Syntax Highlighting"); }));
  for (const auto command : {WPARAM{SC_MINIMIZE}, WPARAM{SC_MAXIMIZE}}) {
    PostMessageA(window_, WM_SYSCOMMAND, command, 0);
    ASSERT_TRUE(WaitUntil([&] { return IsIconic(window_) != 0 || IsZoomed(window_) != 0; }));
    Close();
    Names stored;
    for (const std::string& name : places) stored.push_back(Setting("Position", name));
    EXPECT_EQ(stored, (Names{"900", "600", "9000", "7200"}));
    Open();
    EXPECT_EQ(Place(window_), place);
  }
  EXPECT_EQ(Setting("Settings", "KeepOnTop") + Setting("Settings", "ColorSyntax"), "01");
  EXPECT_FALSE(Topmost());
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

TEST_F(MainWindowTest, AnotherResolutionAtTheNextStartKeepsEveryPlace) {
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
    Close();
    for (const auto& [name, text] : places) EXPECT_EQ(Setting("Position", name), text) << name;
  }
}

TEST_F(MainWindowTest, ANameTooLongForTheListIsTold) {
  const std::string longName(80, 'W');
  WriteLibrary("Numbers", {"one", longName, "three"});
  const auto point = [&] { PointAt(List(), {30, 6}), PointAt(List(), {30, 19}); };
  for (const bool wanted : {false, true}) {
    SetSetting("Settings", "SnippetTips", wanted ? "-1" : "0");
    Open();
    point();
    // As long as a tip takes at most, and then some.
    EXPECT_EQ(WaitUntil([&] { return Tip(longName) != nullptr; }, wanted ? 10000 : 500), wanted);
    if (!wanted) Close();
  }
  EXPECT_TRUE(IsForeground(window_));
  const Rect list = Place(List());
  MovePointer({list.right() + 20, list.top + 19});  // still over the tip
  EXPECT_FALSE(WaitUntil([&] { return Tip(longName) == nullptr; }, 300));
  MovePointer({list.right() + 20, list.top + 150});
  EXPECT_TRUE(WaitUntil([&] { return Tip(longName) == nullptr; }));
  point();
  ASSERT_TRUE(WaitUntil([&] { return Tip(longName) != nullptr; }));
  ClickRow(1, 2);  // through the tip
  EXPECT_TRUE(WaitUntil([&] { return Selected() == 1 && IsWindowVisible(NameBox()) != 0; }));
}

TEST_F(MainWindowTest, AttachmentsAreSetThroughTheDialogAndViewed) {
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

TEST_F(MainWindowTest, ADroppedLibraryIsOpenedAndADroppedFileAttached) {
  WriteLibrary("Home", {"one"});
  const TemporaryFolder elsewhere;
  const std::string library = elsewhere.File("Far.bns"), note = elsewhere.File("note.txt");
  elsewhere.Write("Far.bns", WriteBns(std::vector{Named("far")}));
  Open();
  const UniqueFile process(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, program_.Id()));
  // The files' names are in the memory of the process that they are dropped on.
  const auto drop = [&](HWND part) {
    struct Dropped {
      DROPFILES header{};
      char names[2 * MAX_PATH + 1]{};
    } dropped;
    POINT place{Place(part).left + 5, Place(part).top + 5};
    ScreenToClient(window_, &place);
    dropped.header = {.pFiles = sizeof(DROPFILES), .pt = place, .fNC = FALSE, .fWide = FALSE};
    std::ranges::copy(note + '\0' + library, dropped.names);
    void* there = VirtualAllocEx(process.get(), nullptr, sizeof dropped, MEM_COMMIT, PAGE_READWRITE);
    WriteProcessMemory(process.get(), there, &dropped, sizeof dropped, nullptr);
    PostMessageA(window_, WM_DROPFILES, reinterpret_cast<WPARAM>(there), 0);
  };
  drop(List());
  EXPECT_TRUE(WaitUntil([&] { return Rows() == Names{"far"}; })) << WindowText(Files());
  drop(Control(frmAddIn::kAttachId));
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return File("Far").find("far\r\n" + note) != std::string::npos; }));
  Close();
}

TEST_F(MainWindowTest, MenusAreNotTornOffWhereThatIsForbidden) {
  WriteLibrary("Numbers", {"one", "two"});
  SetSetting("Settings", "AllowMenuDrag", "0");
  Open();
  ClickRow(0, 1, MouseButton::Right);
  const HWND menu = Menu("Snippets");
  // It unfolds, and then takes the mouse; a press before that would not be held to its end.
  ASSERT_TRUE(WaitUntil([&] { return GuiThread().hwndCapture == menu; }));
  const Rect docked = Place(menu);
  PointAt(menu, {30, 3});
  PressMouse();
  MovePointer({docked.left + 230, docked.top + 53});
  MovePointer({docked.left + 330, docked.top + 103});
  ReleaseMouse();
  EXPECT_TRUE(WaitUntil([&] { return IsWindow(menu) == 0; })) << "a release outside closes it";
  Close();
}

}  // namespace
}  // namespace snip::test
