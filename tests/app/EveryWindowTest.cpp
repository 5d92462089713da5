#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/Win32Text.h"
#include "tests/app/MainWindowUser.h"
#include "ui/main/frmAddIn.h"

// What someone meets who does not see the windows, or has no mouse.

namespace snip::test {
namespace {

BOOL CALLBACK AddVisible(HWND window, LPARAM windows) {
  if (IsWindowVisible(window) != 0) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

/// Whether a window has nothing to say: lines and pictures, and the field of a combo box, which has its name.
bool IsSilent(HWND part) {
  return (ClassOf(part) == "Static" && WindowText(part).empty()) || ClassOf(GetParent(part)) == "ComboBox";
}

/// The system names lists, combo boxes and rich text after the label before them. Wine does that for plain
/// fields alone; for others it gives their text.
std::string NameOf(HWND part) {
  const HWND label = GetWindow(part, GW_HWNDPREV);
  static const std::set<std::string> named{"ListBox", "ComboBox", "RichEdit20A"};
  if (named.contains(ClassOf(part)))
    return label != nullptr && ClassOf(label) == "Static" ? WindowText(label) : "";
  return AccessibleClient(part).Child(CHILDID_SELF).name;
}

class EveryWindow : public MainWindowFixture {
 protected:
  void SetUp() override {
    WriteLibrary("Numbers", {"one", kLongName, "three"});
    Open();
  }

  /// The roles of a window and its parts that are not the system's controls.
  std::string Listen(HWND window) const {
    std::vector<HWND> parts{window};
    EnumChildWindows(window, &AddVisible, reinterpret_cast<LPARAM>(&parts));
    std::set<LONG> roles;
    for (const HWND part : parts) {
      if (IsSilent(part)) continue;
      EXPECT_NE(NameOf(part), "") << ClassOf(part) << " " << GetDlgCtrlID(part);
      const AccessibleClient client(part);
      const LONG role = client.Child(CHILDID_SELF).role;
      EXPECT_GT(role, 0);
      if (role != ROLE_SYSTEM_CLIENT && ClassOf(part) != "Edit") roles.insert(role);
      for (const AccessibleChild& child : client.Children()) {
        EXPECT_GT(child.role, 0);
        EXPECT_NE(child.name.empty(), child.role != ROLE_SYSTEM_SEPARATOR) << NameOf(part) << " " << child.id;
      }
    }
    std::string names;
    for (const LONG role : roles) {
      char name[64]{};
      GetRoleTextA(static_cast<DWORD>(role), name, sizeof name);
      names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names;
  }

  /// Presses Tab until the focus is where it began; every part that takes part has had it then.
  void GoRound(HWND window) const {
    // A window is in front a moment before its first control has the focus.
    EXPECT_TRUE(WaitUntil([&] { return IsChild(window, Focus()) != 0; }));
    std::vector<HWND> parts;
    EnumChildWindows(window, &AddVisible, reinterpret_cast<LPARAM>(&parts));
    std::set<HWND> missing;
    for (const HWND part : parts) {
      const bool stop = (GetWindowLongA(part, GWL_STYLE) & WS_TABSTOP) != 0;
      if (stop && IsWindowEnabled(part) != 0) missing.insert(part);
    }
    const auto stops = missing.size();
    EXPECT_GE(stops, 1U);
    for (std::size_t i = 0; i < stops; ++i) {
      const HWND before = Focus();
      PressKey(VK_TAB);
      EXPECT_TRUE(stops == 1 || WaitUntil([&] { return Focus() != before; }));
      // A combo box gives the focus to its field.
      missing.erase(Focus());
      missing.erase(GetParent(Focus()));
    }
    for (const HWND part : missing) ADD_FAILURE() << "not reached: " << NameOf(part);
  }

  const std::string kLongName = std::string(80, 'W');
};

TEST_F(EveryWindow, IsReadToItsEndAndLeftWithKeysAlone) {
  EXPECT_EQ(Listen(window_), "separator, tool bar");
  GoRound(window_);
  const auto edit = [this] {
    PressKey('E', {VK_CONTROL});
    EXPECT_TRUE(FocusComes(Code()));
    PressKey(VK_F10, {VK_SHIFT});
  };
  const auto closeChanged = [this] {
    TypeText("x");
    EXPECT_TRUE(WaitUntil([&] { return WindowText(Code()).starts_with("x"); }));
    PressKey(VK_F4, {VK_MENU});
  };
  const auto newLibrary = [] { PressKey('N', {VK_CONTROL, VK_SHIFT}); };
  const auto output = [] { PressKey(VK_RETURN, {VK_CONTROL, VK_SHIFT}); };
  const auto attachment = [] { PressKey('A', {VK_CONTROL, VK_SHIFT}); };
  struct Stop {
    const char* title;
    std::function<void()> open;
    const char* roles;
    std::vector<WORD> leave{VK_ESCAPE};
  };
  const std::vector<Stop> stops = {
      {"Settings", [] { PressKey(VK_F9); }, ""},
      {"About Brennic Snipstore", [] { PressKey(VK_F1); }, ""},
      {"New Code Library", newLibrary, ""},
      {"Snippets", [] { PressKey(VK_F10, {VK_SHIFT}); }, "popup menu"},
      {"Output", output, "popup menu"},
      {"Attachment", attachment, "popup menu"},
      {"Edit", edit, "popup menu"},
      {"Brennic Snipstore 2.x", closeChanged, "", {VK_TAB, VK_RETURN}},
  };
  for (const Stop& stop : stops) {
    SCOPED_TRACE(stop.title);
    const bool isMenu = *stop.roles != '\0';
    stop.open();
    HWND window = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
      window = isMenu ? FindVisibleWindow(stop.title) : GetLastActivePopup(window_);
      return window != nullptr && window != window_ && WindowText(window) == stop.title;
    }));
    EXPECT_EQ(Listen(window), stop.roles);
    if (!isMenu) GoRound(window);
    for (const WORD key : stop.leave) PressKey(key);
    ASSERT_TRUE(WaitUntil([&] { return IsWindow(window) == 0; }));
  }
}

TEST_F(EveryWindow, TipsAreRead) {
  PointAt(List(), {30, 6});
  PointAt(List(), {30, 19});
  HWND tip = nullptr;
  ASSERT_TRUE(WaitUntil([&] { return (tip = FindVisibleWindow(kLongName)) != nullptr; }));
  EXPECT_EQ(Listen(tip), "tool tip");
}

TEST_F(EveryWindow, SplittersAreMovedByKeys) {
  struct Move {
    WORD key;
    HWND part;
    int Rect::*side;
    int by;
  };
  const int step = twips_.ToPixelsX(150);
  for (const Move& move : {Move{VK_LEFT, List(), &Rect::width, -step},
                           {VK_RIGHT, List(), &Rect::width, step},
                           {VK_UP, Description(), &Rect::height, -step},
                           {VK_DOWN, Description(), &Rect::height, step}}) {
    const int before = Place(move.part).*move.side;
    PressKey(move.key, {VK_MENU, VK_SHIFT});
    EXPECT_TRUE(WaitUntil([&] { return Place(move.part).*move.side == before + move.by; }))
        << move.key << " " << Place(move.part).*move.side;
  }
}

}  // namespace
}  // namespace snip::test
