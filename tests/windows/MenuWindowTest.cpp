#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Com.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/TestCanvas.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "ui/main/frmTip.h"
#include "ui/menu/frmMenu.h"

namespace snip::test {
namespace {

using Log = std::vector<std::string>;

/// Logs the presses that come to it: the message, what it says of keys or of the part, and the place.
class Target : public Window {
 public:
  explicit Target(HWND parent) {
    Create({.className = "MenuTestTarget",
            .style = WS_CHILD | WS_VISIBLE,
            .place = {300, 0, 300, 400},
            .parent = parent,
            .background = COLOR_WINDOW});
  }
  ~Target() override { Destroy(); }
  Log presses;
  LRESULT part = HTCLIENT;  ///< What all of it is.

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_NCHITTEST) return part;
    const bool inside = message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN;
    if (!inside && message != WM_NCLBUTTONDOWN && message != WM_NCRBUTTONDOWN)
      return Default(message, wParam, lParam);
    POINT place{LOWORD(lParam), HIWORD(lParam)};
    if (!inside) ScreenToClient(hWnd(), &place);
    presses.push_back(std::to_string(message) + " " + std::to_string(wParam) + " at " +
                      std::to_string(place.x) + "," + std::to_string(place.y));
    return 0;
  }
};

BOOL CALLBACK CountIfOfMenu(HWND window, LPARAM count) {
  const std::string name = ClassOf(window);
  if (name == "frmMenu" || name == "frmTip") ++*reinterpret_cast<int*>(count);
  return TRUE;
}

/// The menus and tips of this thread, shown or not.
int CountWindows() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), &CountIfOfMenu, reinterpret_cast<LPARAM>(&count));
  return count;
}

/// A menu over a real window, moved over and clicked with the real pointer.
class MenuWindowTest : public testing::Test {
 protected:
  // The menu's items, by their place.
  enum Item { kRename, kSeparator, kEdit, kDelete, kPlain };
  static constexpr POINT kFarAway{620, 420};

  void SetUp() override {
    MakeMenu();
    Move(kFarAway);
    SetFocus(edit_);
  }
  void TearDown() override {
    ReleaseMouse();
    menu_.reset();
    Answer();
  }

  void MakeMenu() {
    const auto log = [this](const std::string& entry, std::function<void()>& reaction) {
      log_.push_back(entry);
      if (const auto react = std::exchange(reaction, nullptr)) react();
    };
    menu_ = std::make_unique<frmMenu>(
        "Snippets",
        frmMenu::Services{.sounds = sounds_,
                          .makeTip = []() -> std::unique_ptr<TipWindow> {
                            auto tip = std::make_unique<frmTip>();
                            if (!tip->Load()) return nullptr;
                            return tip;
                          }},
        frmMenu::Events{
            .Clicked = [=, this](std::int32_t ID) { log("click " + std::to_string(ID), onClicked_); },
            .Selected = [this](std::int32_t ID) { log_.push_back("select " + std::to_string(ID)); },
            .HideMenu = [=, this] { log("hide", onHideMenu_); }});
    const std::shared_ptr<const Picture> picture = Picture::FromResource(IDB_NEW_SNIPPET);
    menu_->Add("&Rename", true, false, picture);
    menu_->Add("-", true, false, nullptr);
    menu_->Add("Edit", true, true, picture, 70);
    menu_->Add("Delete", false, false, picture);
    menu_->Add("Plain and rather long", true, false, nullptr);
  }

  /// As the owner's message loop would.
  void Answer() {
    AnswerMessages([this](MSG& message) { return menu_ != nullptr && menu_->PreTranslate(message); });
  }
  bool Until(const std::function<bool()>& condition) {
    return WaitUntil(condition, 5000, [this] { Answer(); });
  }
  bool Logged(const std::string& entry) {
    return Until([&] { return std::count(log_.begin(), log_.end(), entry) > 0; });
  }
  bool Closed() {
    return Until([&] { return menu_ == nullptr || menu_->hWnd() == nullptr; });
  }
  /// What was told since the last call.
  Log Told() { return std::exchange(log_, {}); }

  void Move(POINT screen) {
    ASSERT_TRUE(PointAtScreen(screen, [this] { Answer(); }));
  }
  void Open(bool allowDetach = true) {
    const TwipsPerPixel twips = ScreenTwips();
    menu_->Popup(twips.ToTwipsX(200), twips.ToTwipsY(150), edit_, allowDetach);
    ASSERT_TRUE(Until([&] { return GetCapture() == menu_->hWnd() && menu_->hWnd() != nullptr; }));
  }
  MenuLayout Layout() const { return menu_->input().Layout(); }
  POINT CentreOf(const Rect& area) const {
    POINT place{area.left + area.width / 2, area.top + area.height / 2};
    ClientToScreen(menu_->hWnd(), &place);
    return place;
  }
  void Hover(int item) {
    Move(CentreOf(Layout().Row(item)));
    ASSERT_TRUE(Until([&] { return menu_->input().HotItem() == item; })) << menu_->input().HotItem();
  }
  static void Click() {
    PressMouse();
    ReleaseMouse();
  }
  void TearOff(POINT by = {60, 40}) {
    ASSERT_TRUE(DragBy(menu_->hWnd(), CentreOf({0, 0, 80, 6}), by, [this] { Answer(); }));
    EXPECT_EQ(menu_->input().State(), MenuState::Floating);
  }
  void ExpectFocusStayed() const {
    EXPECT_EQ(GetFocus(), edit_);
    EXPECT_EQ(GetActiveWindow(), frame_.get());
    EXPECT_EQ(GetForegroundWindow(), frame_.get());
    EXPECT_EQ(GetCapture(), nullptr);
  }

  /// What a part of the menu shows.
  struct Shown {
    Rect area;
    int color;        ///< Of the system.
    int atLeast = 1;  ///< Pixels.
    int atMost = 10000;
  };
  void ExpectShown(const std::vector<Shown>& all) const {
    for (const Shown& shown : all) {
      int found = 0;
      for (int y = shown.area.top; y < shown.area.bottom(); ++y) {
        for (int x = shown.area.left; x < shown.area.right(); ++x)
          found += ShownAt(menu_->hWnd(), {x, y}) == GetSysColor(shown.color) ? 1 : 0;
      }
      EXPECT_TRUE(found >= shown.atLeast && found <= shown.atMost)
          << "part " << &shown - all.data() << ": " << found;
    }
  }
  /// Near the right end of a row, where no text is.
  Rect RightOf(int item) const {
    const Rect row = Layout().Row(item);
    return {row.right() - 3, row.top + row.height / 2, 1, 1};
  }

  const ComApartment apartment_;
  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  SoundEffects sounds_{registry_, [](const std::string&) {}};
  Log log_;
  std::function<void()> onClicked_;
  std::function<void()> onHideMenu_;
  const TestFrame frame_{"frame", {50, 50, 640, 480}};
  HWND edit_ = CreateControl(frame_.get(), "EDIT", "text", WS_VISIBLE, 0, 1, nullptr, {0, 0, 100, 24});
  Target target_{frame_.get()};
  std::unique_ptr<frmMenu> menu_;
};

TEST_F(MenuWindowTest, OpensAtItsPlaceOnTopWithTheMouseAndWithoutTheFocus) {
  EXPECT_EQ(menu_->hWnd(), nullptr);
  Open(false);
  const Rect plain = PlaceOf(menu_->hWnd());
  EXPECT_EQ(plain.left, 200);
  EXPECT_EQ(plain.top, 150);
  EXPECT_TRUE(IsWindowVisible(menu_->hWnd()));
  EXPECT_NE(GetWindowLongA(menu_->hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_NE(GetWindowLongA(menu_->hWnd(), GWL_STYLE) & WS_CHILD, 0);
  Open(true);
  EXPECT_EQ(PlaceOf(menu_->hWnd()).height, plain.height + ScreenTwips().ToPixelsY(165));
  EXPECT_EQ(CountWindows(), 2);
  menu_->Unload();
  ExpectFocusStayed();
}

TEST_F(MenuWindowTest, PaintsItsItemsItsBarAndItsFrame) {
  Open();
  Hover(kEdit);
  const MenuLayout layout = Layout();
  const Rect cell = layout.PictureCell(kEdit);
  const Rect cold = layout.PictureCell(kRename);
  const MenuLayout::SeparatorLines lines = layout.Separator(kSeparator);
  ExpectShown({{RightOf(kEdit), COLOR_HIGHLIGHT},
               {RightOf(kRename), COLOR_BTNFACE},
               {layout.Caption(kEdit), COLOR_HIGHLIGHTTEXT, 6},
               {layout.Caption(kRename), COLOR_BTNTEXT, 6},
               // The frame of the hot item's picture, and none around the others'.
               {{cell.left, cell.top + 4, 1, 1}, COLOR_BTNHIGHLIGHT},
               {{cell.right() - 1, cell.top + 4, 1, 1}, COLOR_BTNSHADOW},
               {{cell.left + 4, cell.bottom() - 1, 1, 1}, COLOR_BTNSHADOW},
               {{cold.left, cold.top + 4, 1, 1}, COLOR_BTNFACE},
               {lines.shadow, COLOR_BTNSHADOW, lines.shadow.width},
               {lines.highlight, COLOR_BTNHIGHLIGHT, lines.highlight.width},
               {{0, lines.shadow.top, 1, 1}, COLOR_BTNFACE}});
  for (const Rect& area : {cell, cold}) {
    for (int y = area.top; y < area.bottom(); ++y) {
      for (int x = area.left; x < area.right(); ++x)
        EXPECT_NE(ShownAt(menu_->hWnd(), {x, y}), RGB(0xC0, 0xC0, 0xC0)) << "the mask's colour";
    }
  }
  // Disabled: embossed, and no bar when hot.
  Hover(kDelete);
  ExpectShown({{RightOf(kDelete), COLOR_BTNFACE},
               {layout.Caption(kDelete), COLOR_BTNHIGHLIGHT, 6},
               {layout.Caption(kDelete), COLOR_BTNSHADOW, 6},
               {layout.PictureCell(kDelete), COLOR_BTNHIGHLIGHT, 6},
               {layout.PictureCell(kDelete), COLOR_BTNSHADOW, 6},
               {layout.Row(kDelete), COLOR_HIGHLIGHT, 0, 0}});

  // The bar to drag it by lights up and explains itself.
  const Rect bar = layout.DragBar();
  EXPECT_EQ(bar.height, ScreenTwips().ToPixelsY(90));
  const Rect inside{40, bar.bottom() - 1, 1, 1};
  ExpectShown({{inside, COLOR_INACTIVECAPTION}, {{40, bar.bottom(), 1, 1}, COLOR_BTNFACE}});
  Move(CentreOf(bar));
  EXPECT_TRUE(Until([] { return FindVisibleWindow(MenuInput::kDragTip) != nullptr; }));
  ExpectShown({{inside, COLOR_ACTIVECAPTION}});
  Hover(kRename);
  EXPECT_TRUE(Until([] { return FindVisibleWindow(MenuInput::kDragTip) == nullptr; }));
  ExpectShown({{inside, COLOR_INACTIVECAPTION}});

  // A frame sets it off from windows of its colour.
  int element = COLOR_WINDOW;
  const COLORREF before = GetSysColor(element);
  for (const COLORREF window : {GetSysColor(COLOR_BTNFACE), before}) {
    SetSysColors(1, &element, &window);
    Open();
    ExpectShown(
        {{{0, layout.Row(kPlain).top + 4, 1, 1}, window == before ? COLOR_BTNFACE : COLOR_WINDOWFRAME}});
  }
}

TEST_F(MenuWindowTest, AClickOutsideClosesItAndReachesItsTarget) {
  POINT place{200, 300};
  ClientToScreen(target_.hWnd(), &place);
  Move(place);
  // Parts of a window get what their part of a window expects.
  for (const int part : {HTCLIENT, HTVSCROLL, HTCAPTION, HTCLOSE, HTBOTTOMRIGHT}) {
    for (const MouseButton button : {MouseButton::Left, MouseButton::Right}) {
      const bool left = button == MouseButton::Left;
      target_.part = part;
      Open();
      PressMouse(button);
      ASSERT_TRUE(Closed());
      EXPECT_TRUE(Until([&] { return !target_.presses.empty(); }));
      ReleaseMouse(button);
      const UINT message = part == HTCLIENT ? (left ? WM_LBUTTONDOWN : WM_RBUTTONDOWN)
                                            : (left ? WM_NCLBUTTONDOWN : WM_NCRBUTTONDOWN);
      const int said = part != HTCLIENT ? part : left ? MK_LBUTTON : MK_RBUTTON;
      EXPECT_EQ(std::exchange(target_.presses, {}),
                (Log{std::to_string(message) + " " + std::to_string(said) + " at 200,300"}));
      EXPECT_EQ(Told(), (Log{"hide", "hide"}));
    }
  }
}

TEST_F(MenuWindowTest, ADockedMenuHasAllKeysAndTheWheel) {
  Open();
  PressKey(VK_DOWN);
  ASSERT_TRUE(Logged("select 0"));
  PressKey('X');
  PressKey(VK_RETURN);
  INPUT wheel{};
  wheel.type = INPUT_MOUSE;
  wheel.mi.dwFlags = MOUSEEVENTF_WHEEL;
  wheel.mi.mouseData = WHEEL_DELTA;
  SendInput(1, &wheel, sizeof wheel);
  PressKey(VK_DOWN);
  EXPECT_TRUE(Logged("select 1"));
  EXPECT_EQ(WindowText(edit_), "text");
  Hover(kEdit);
  PressKey(VK_DOWN);
  ASSERT_TRUE(Until([&] { return menu_->input().HotItem() != kEdit; }));
  POINT pointer = CentreOf(Layout().Row(kEdit));
  ScreenToClient(menu_->hWnd(), &pointer);
  SendMessageA(menu_->hWnd(), WM_MOUSEMOVE, 0, MAKELPARAM(pointer.x, pointer.y));
  EXPECT_NE(menu_->input().HotItem(), kEdit) << "the pointer has not moved";
  PressKey(VK_ESCAPE);
  ASSERT_TRUE(Closed());
  ExpectFocusStayed();
  PressKey('Y');
  EXPECT_TRUE(Until([&] { return WindowText(edit_).size() == 5; })) << "closed, it leaves the owner its keys";
}

TEST_F(MenuWindowTest, TornOffItIsAPaletteOfItsOwner) {
  Open();
  const Rect docked = PlaceOf(menu_->hWnd());
  TearOff();
  EXPECT_EQ(Told(), (Log{"hide"}));
  EXPECT_EQ(PlaceOf(menu_->hWnd()).width, docked.width);
  EXPECT_GT(PlaceOf(menu_->hWnd()).height, docked.height);
  EXPECT_EQ(GetWindow(menu_->hWnd(), GW_OWNER), frame_.get());
  EXPECT_EQ(GetWindowLongA(menu_->hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  ExpectFocusStayed();
  TearOff({-30, 20});  // moved on

  Hover(kEdit);
  for (const std::ptrdiff_t clicks : {1, 2}) {
    Click();
    EXPECT_TRUE(Until([&] { return std::count(log_.begin(), log_.end(), "click 70") == clicks; }));
  }
  EXPECT_EQ(Told(), (Log{"select 70", "click 70", "click 70"}));
  ExpectFocusStayed();

  // Hot, it is raised as a whole.
  const Rect row = Layout().Row(kEdit);
  const Rect left{row.left, row.top + 4, 1, 1}, right{row.right() - 1, row.top + 4, 1, 1};
  ExpectShown({{left, COLOR_BTNHIGHLIGHT},
               {right, COLOR_BTNSHADOW},
               {RightOf(kEdit), COLOR_HIGHLIGHT},
               {Layout().Caption(kEdit), COLOR_BTNTEXT, 6}});
  Move(kFarAway);
  EXPECT_TRUE(Until([&] { return menu_->input().HotItem() == MenuHot::kNoItem; }));
  ExpectShown({{right, COLOR_BTNFACE}, {RightOf(kEdit), COLOR_BTNFACE}});

  // The system does not close it, and while the owner is disabled, as by a dialog, it takes no clicks.
  SendMessageA(menu_->hWnd(), WM_CLOSE, 0, 0);
  Hover(kEdit);
  Told();
  EnableWindow(frame_.get(), FALSE);
  Click();
  Answer();
  EnableWindow(frame_.get(), TRUE);
  Hover(kPlain);
  Click();
  EXPECT_TRUE(Logged("click 4"));
  EXPECT_EQ(Told(), (Log{"select 4", "click 4"}));

  // The close box sinks and closes it.
  const Rect box = Layout().CloseBox();
  const Rect corner{box.left, box.top, 1, 1};
  ExpectShown({{{box.left - 4, 5, 1, 1}, COLOR_ACTIVECAPTION},
               {box, COLOR_BTNTEXT, 4},
               {corner, COLOR_BTNHIGHLIGHT}});
  Move(CentreOf(box));
  PressMouse();
  EXPECT_TRUE(Until([&] { return menu_->input().CloseBoxPushed(); }));
  ExpectShown({{corner, COLOR_BTNHIGHLIGHT, 0, 0}});
  ReleaseMouse();
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_.back(), "hide");
  ExpectFocusStayed();
}

TEST_F(MenuWindowTest, ATornOffMenuGoesAndComesBackWithItsOwner) {
  Open();
  TearOff();
  for (const bool minimized : {true, false}) {
    SendMessageA(frame_.get(), WM_SYSCOMMAND, minimized ? SC_MINIMIZE : SC_RESTORE, 0);
    EXPECT_TRUE(Until([&] { return (IsWindowVisible(menu_->hWnd()) == 0) == minimized; }));
  }
  EXPECT_EQ(menu_->input().State(), MenuState::Floating);

  // And ends with it.
  Told();
  DestroyWindow(frame_.get());
  EXPECT_EQ(menu_->hWnd(), nullptr);
  EXPECT_EQ(Told(), (Log{"hide"}));
  EXPECT_EQ(CountWindows(), 0);
}

TEST_F(MenuWindowTest, ADockedMenuClosesWhenItsOwnerIsLeft) {
  Open();
  {
    const TestFrame other("other", {700, 500, 200, 100});
    EXPECT_TRUE(Closed());
    EXPECT_EQ(GetCapture(), nullptr);
  }
  ASSERT_TRUE(Until([&] { return GetActiveWindow() == frame_.get(); }));
  Open();
  SetCapture(frame_.get());
  EXPECT_TRUE(Closed());
  EXPECT_EQ(GetCapture(), frame_.get());
  ReleaseCapture();
  EXPECT_EQ(Told(), (Log{"hide", "hide"}));
}

TEST_F(MenuWindowTest, TheOwnerMayEndTheMenuInAnyEvent) {
  struct Way {
    std::function<void()>& event;
    std::function<void()> act;
  };
  for (const Way& way : {Way{onHideMenu_, &Click}, Way{onClicked_, &Click},
                         Way{onHideMenu_, [&] { EnableWindow(frame_.get(), FALSE); }}}) {
    Open();
    Hover(kEdit);
    way.event = [this] { menu_.reset(); };
    way.act();
    EXPECT_TRUE(Until([&] { return menu_ == nullptr; }));
    EXPECT_EQ(CountWindows(), 0);
    EXPECT_EQ(GetCapture(), nullptr);
    EnableWindow(frame_.get(), TRUE);
    MakeMenu();
  }
}

TEST_F(MenuWindowTest, AssistiveProgramsReadAndPressItsItems) {
  const WinEventRecorder recorder("frmMenu");
  Open();
  Hover(kEdit);
  AccessibleClient client(menu_->hWnd());
  const std::vector<std::tuple<std::string, LONG, LONG>> expected = {
      {"Rename, , Execute", ROLE_SYSTEM_MENUITEM, 0},
      {", , ", ROLE_SYSTEM_SEPARATOR, 0},
      {"Edit, , Execute", ROLE_SYSTEM_MENUITEM, STATE_SYSTEM_HOTTRACKED | STATE_SYSTEM_FOCUSED},
      {"Delete, , ", ROLE_SYSTEM_MENUITEM, STATE_SYSTEM_UNAVAILABLE},
      {"Plain and rather long, , Execute", ROLE_SYSTEM_MENUITEM, 0}};
  EXPECT_EQ(test::Told(client.Children()), expected);
  const Rect row = Layout().Row(kEdit);
  EXPECT_EQ(client.Child(kEdit + 1).place, (Rect{200, 150 + row.top, row.width, row.height}));
  EXPECT_EQ(client.Child(CHILDID_SELF).name, "Snippets");
  EXPECT_EQ(client.Child(CHILDID_SELF).role, ROLE_SYSTEM_MENUPOPUP);

  EXPECT_FALSE(client.Press("Delete"));
  EXPECT_TRUE(client.Press("Rename"));
  client.Reset();
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_, (Log{"select 70", "hide", "click 0", "hide"}));
  EXPECT_EQ(recorder.Heard(), (WinEvents{{EVENT_SYSTEM_MENUPOPUPSTART, 0},
                                         {EVENT_OBJECT_FOCUS, kEdit + 1},
                                         {EVENT_SYSTEM_MENUPOPUPEND, 0}}));
}

TEST_F(MenuWindowTest, OpeningTearingOffAndClosingLeavesNothingBehind) {
  const auto cycle = [&] {
    Open();
    // Pressed and released on the bar: the drag ends where it began.
    Move(CentreOf({0, 0, 80, 6}));
    Click();
    ASSERT_TRUE(Until([&] { return menu_->input().State() == MenuState::Floating; }));
    ASSERT_TRUE(Until([] { return GetKeyState(VK_LBUTTON) >= 0; }));
    Move(CentreOf(Layout().CloseBox()));
    Click();
    ASSERT_TRUE(Closed());
  };
  cycle();
  const int freeBefore = FreeGdiHandles();
  for (int i = 0; i < 20 && !HasFatalFailure(); ++i) cycle();
  EXPECT_EQ(FreeGdiHandles(), freeBefore);
  EXPECT_EQ(CountWindows(), 0);
  ExpectFocusStayed();
}

}  // namespace
}  // namespace snip::test
