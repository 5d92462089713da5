#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Com.h"
#include "platform/Handle.h"
#include "platform/ScreenTwips.h"
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

/// Logs the clicks that come to it.
class Target : public Window {
 public:
  ~Target() override { Destroy(); }
  bool CreateIn(HWND parent, const Rect& place) {
    return Create({.className = "MenuTestTarget",
                   .style = WS_CHILD | WS_VISIBLE,
                   .place = place,
                   .parent = parent,
                   .background = COLOR_WINDOW});
  }
  Log clicks;
  LRESULT part = HTCLIENT;  ///< What all of it is.

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_NCHITTEST) return part;
    if (message == WM_NCLBUTTONDOWN || message == WM_NCRBUTTONDOWN) {
      POINT place{LOWORD(lParam), HIWORD(lParam)};
      ScreenToClient(hWnd(), &place);
      clicks.push_back((message == WM_NCLBUTTONDOWN ? "left on part " : "right on part ") +
                       std::to_string(wParam) + " at " + std::to_string(place.x) + "," +
                       std::to_string(place.y));
      return 0;
    }
    if (message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN) {
      clicks.push_back((message == WM_LBUTTONDOWN ? "left " : "right ") + std::to_string(wParam) + " at " +
                       std::to_string(LOWORD(lParam)) + "," + std::to_string(HIWORD(lParam)));
    }
    return Default(message, wParam, lParam);
  }
};

using ClassCount = std::pair<const std::string&, int>;

BOOL CALLBACK CountIfOfClass(HWND window, LPARAM parameter) {
  auto& [name, found] = *reinterpret_cast<ClassCount*>(parameter);
  found += ClassOf(window) == name ? 1 : 0;
  return TRUE;
}

/// Windows of this thread of a class, shown or not.
int CountWindows(const std::string& className) {
  ClassCount count(className, 0);
  EnumThreadWindows(GetCurrentThreadId(), &CountIfOfClass, reinterpret_cast<LPARAM>(&count));
  return count.second;
}

void SendMouse(DWORD flags) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

void SendShift(bool down) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = VK_SHIFT;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(VK_SHIFT, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
  SendInput(1, &input, sizeof input);
}

/// A menu over a real window, moved over and clicked with the real pointer.
class MenuWindowTest : public testing::Test {
 protected:
  // The menu's items, by their place.
  enum Item { kRename, kSeparator, kEdit, kDelete, kPlain };
  static constexpr std::int32_t kEditId = 70;
  static constexpr Point kCorner{200, 150};
  static constexpr Point kFarAway{620, 420};

  void SetUp() override {
    frame_ = CreateWindowExA(0, "STATIC", "frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 640, 480,
                             nullptr, nullptr, nullptr, nullptr);
    edit_ = CreateControl(frame_, "EDIT", "text", WS_VISIBLE, 0, 1, nullptr, {0, 0, 100, 24});
    ASSERT_TRUE(target_.CreateIn(frame_, {300, 0, 300, 400}));
    MakeMenu();
    Move(kFarAway);
    ASSERT_TRUE(Until([&] { return GetActiveWindow() == frame_ && IsForeground(frame_); }));
    SetFocus(edit_);
  }
  void TearDown() override {
    SendMouse(MOUSEEVENTF_LEFTUP);
    menu_.reset();
    Answer();
    target_.Destroy();
    DestroyWindow(frame_);
  }

  void MakeMenu() {
    menu_ = std::make_unique<frmMenu>(
        "Snippets",
        frmMenu::Services{.sounds = sounds_,
                          .makeTip = [this](HWND owner) -> std::unique_ptr<TipWindow> {
                            auto tip = std::make_unique<frmTip>();
                            tipOwner_ = owner;
                            if (!tip->Load()) return nullptr;
                            return tip;
                          }},
        frmMenu::Events{
            .Clicked =
                [this](std::int32_t ID) {
                  log_.push_back("click " + std::to_string(ID));
                  if (const auto react = onClicked_) react();
                },
            .Selected = [this](std::int32_t ID) { log_.push_back("select " + std::to_string(ID)); },
            .HideMenu =
                [this] {
                  log_.emplace_back("hide");
                  if (const auto react = onHideMenu_) react();
                }});
    const std::shared_ptr<const Picture> picture = Picture::FromResource(IDB_NEW_SNIPPET);
    menu_->Add("&Rename", true, false, picture);
    menu_->Add("-", true, false, nullptr);
    menu_->Add("Edit", true, true, picture, kEditId);
    menu_->Add("Delete", false, false, picture);
    menu_->Add("Plain and rather long", true, false, nullptr);
  }

  /// As the owner's message loop would.
  void Answer() {
    AnswerMessages([this](MSG& message) { return menu_ != nullptr && menu_->PreTranslate(message); });
  }
  bool Until(const std::function<bool()>& condition, int milliseconds = 5000) {
    return WaitUntil(condition, milliseconds, [this] { Answer(); });
  }
  bool Logged(const std::string& entry) {
    return Until([&] { return std::find(log_.begin(), log_.end(), entry) != log_.end(); });
  }

  void Move(Point screen) {
    // Again and again: what is sent right at the end of the system's dragging may be lost.
    ASSERT_TRUE(Until([&] {
      MovePointer({screen.x, screen.y});
      POINT pointer{};
      GetCursorPos(&pointer);
      return pointer.x == screen.x && pointer.y == screen.y;
    }));
  }
  void Open(bool allowDetach = true) {
    const TwipsPerPixel twips = ScreenTwips();
    menu_->Popup(twips.ToTwipsX(kCorner.x), twips.ToTwipsY(kCorner.y), edit_, allowDetach);
    ASSERT_TRUE(Until([&] { return GetCapture() == menu_->hWnd() && menu_->hWnd() != nullptr; }));
  }
  Point OnScreen(Point client) const {
    POINT place{client.x, client.y};
    ClientToScreen(menu_->hWnd(), &place);
    return {place.x, place.y};
  }
  static Point Centre(const Rect& area) { return {area.left + area.width / 2, area.top + area.height / 2}; }
  Point CentreOf(int item) const { return OnScreen(Centre(menu_->input().Layout().Row(item))); }
  Point Handle() const { return OnScreen({40, 3}); }
  void Hover(int item) {
    Move(CentreOf(item));
    ASSERT_TRUE(Until([&] { return menu_->input().HotItem() == item; })) << menu_->input().HotItem();
  }
  /// Drags by the bar at the top.
  void TearOff(Point by = {60, 40}) {
    const Point from = Handle();
    const Rect before = Place();
    Move(from);
    // The dragging is the system's and does not return before the release.
    const Driver driver([=, this] {
      PressMouse();
      for (int step = 1; step <= 4; ++step) {
        Sleep(30);
        MovePointer({from.x + by.x * step / 4, from.y + by.y * step / 4});
      }
      WaitUntil([&] { return PlaceIs(before.left + by.x, before.top + by.y); }, 5000, [] {});
      ReleaseMouse();
    });
    ASSERT_TRUE(Until([&] {
      return menu_->input().State() == MenuState::Floating &&
             PlaceIs(before.left + by.x, before.top + by.y) && GetKeyState(VK_LBUTTON) >= 0;
    })) << Place().left
        << "," << Place().top;
  }
  Rect Place() const {
    RECT place{};
    GetWindowRect(menu_->hWnd(), &place);
    return {static_cast<int>(place.left), static_cast<int>(place.top),
            static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
  }
  bool PlaceIs(int left, int top) const { return Place().left == left && Place().top == top; }
  bool Closed() {
    return Until([&] { return menu_->hWnd() == nullptr; });
  }
  void ExpectFocusStayed() const {
    EXPECT_EQ(GetFocus(), edit_);
    EXPECT_EQ(GetActiveWindow(), frame_);
    EXPECT_EQ(GetForegroundWindow(), frame_);
  }

  COLORREF Pixel(Point client) const {
    const WindowDC dc(menu_->hWnd());
    return GetPixel(dc.get(), client.x, client.y);
  }
  /// Pixels of a colour in an area of the menu.
  int Pixels(const Rect& area, int color) const {
    int found = 0;
    for (int y = area.top; y < area.bottom(); ++y) {
      for (int x = area.left; x < area.right(); ++x) {
        if (Pixel({x, y}) == GetSysColor(color)) ++found;
      }
    }
    return found;
  }

  const ComApartment apartment_;
  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  SoundEffects sounds_{registry_, [](const std::string&) {}};
  Log log_;
  std::function<void()> onClicked_;
  std::function<void()> onHideMenu_;
  HWND frame_ = nullptr;
  HWND edit_ = nullptr;
  HWND tipOwner_ = nullptr;
  Target target_;
  std::unique_ptr<frmMenu> menu_;
};

TEST_F(MenuWindowTest, OpensAtItsPlaceOnTopWithTheMouseAndWithoutTheFocus) {
  EXPECT_EQ(menu_->hWnd(), nullptr);
  Open(false);
  const int height = Place().height;
  EXPECT_TRUE(PlaceIs(kCorner.x, kCorner.y));
  EXPECT_TRUE(IsWindowVisible(menu_->hWnd()));
  EXPECT_NE(GetWindowLongA(menu_->hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_NE(GetWindowLongA(menu_->hWnd(), GWL_STYLE) & WS_CHILD, 0);
  EXPECT_EQ(tipOwner_, frame_);
  ExpectFocusStayed();
  Open(true);
  EXPECT_EQ(Place().height, height + ScreenTwips().ToPixelsY(165));
  EXPECT_EQ(CountWindows("frmMenu"), 1);
  ExpectFocusStayed();
}

TEST_F(MenuWindowTest, HoveringSelectsAndPaints) {
  Open();
  Hover(kRename);
  Hover(kEdit);
  EXPECT_EQ(log_, (Log{"select 0", "select 70"}));
  const MenuLayout layout = menu_->input().Layout();
  const auto rightOf = [&](int item) {
    const Rect row = layout.Row(item);
    return Point{row.right() - 3, row.top + row.height / 2};
  };
  EXPECT_EQ(Pixel(rightOf(kEdit)), GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(Pixel(rightOf(kRename)), GetSysColor(COLOR_BTNFACE));
  EXPECT_GT(Pixels(layout.Caption(kEdit), COLOR_HIGHLIGHTTEXT), 5);
  EXPECT_GT(Pixels(layout.Caption(kRename), COLOR_BTNTEXT), 5);

  // The frame of the hot item's picture, and none around the others'.
  const Rect cell = layout.PictureCell(kEdit);
  EXPECT_EQ(Pixel({cell.left, cell.top + 4}), GetSysColor(COLOR_BTNHIGHLIGHT));
  EXPECT_EQ(Pixel({cell.right() - 1, cell.top + 4}), GetSysColor(COLOR_BTNSHADOW));
  EXPECT_EQ(Pixel({cell.left + 4, cell.bottom() - 1}), GetSysColor(COLOR_BTNSHADOW));
  const Rect cold = layout.PictureCell(kRename);
  EXPECT_EQ(Pixel({cold.left, cold.top + 4}), GetSysColor(COLOR_BTNFACE));
  // The mask colour shows the ground.
  for (const Rect& area : {cell, cold}) {
    for (int y = area.top; y < area.bottom(); ++y) {
      for (int x = area.left; x < area.right(); ++x) EXPECT_NE(Pixel({x, y}), RGB(0xC0, 0xC0, 0xC0));
    }
  }

  // Disabled: embossed, and no bar when hot.
  Hover(kDelete);
  EXPECT_EQ(Pixel(rightOf(kDelete)), GetSysColor(COLOR_BTNFACE));
  EXPECT_GT(Pixels(layout.Caption(kDelete), COLOR_BTNHIGHLIGHT), 5);
  EXPECT_GT(Pixels(layout.Caption(kDelete), COLOR_BTNSHADOW), 5);
  EXPECT_GT(Pixels(layout.PictureCell(kDelete), COLOR_BTNHIGHLIGHT), 5);
  EXPECT_GT(Pixels(layout.PictureCell(kDelete), COLOR_BTNSHADOW), 5);
  EXPECT_EQ(Pixels(layout.Row(kDelete), COLOR_HIGHLIGHT), 0);

  const MenuLayout::SeparatorLines lines = layout.Separator(kSeparator);
  EXPECT_EQ(Pixels(lines.shadow, COLOR_BTNSHADOW), lines.shadow.width);
  EXPECT_EQ(Pixels(lines.highlight, COLOR_BTNHIGHLIGHT), lines.highlight.width);
  EXPECT_EQ(Pixel({0, lines.shadow.top}), GetSysColor(COLOR_BTNFACE));
}

TEST_F(MenuWindowTest, AFrameSetsItOffFromWindowsOfItsColour) {
  int element = COLOR_WINDOW;
  const COLORREF before = GetSysColor(element);
  const COLORREF face = GetSysColor(COLOR_BTNFACE);
  for (const COLORREF window : {face, before}) {
    SetSysColors(1, &element, &window);
    Open();
    const Rect last = menu_->input().Layout().Row(menu_->iCount() - 1);
    EXPECT_EQ(Pixel({0, last.top + 4}), window == face ? GetSysColor(COLOR_WINDOWFRAME) : face);
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(Closed());
  }
}

TEST_F(MenuWindowTest, TheDragBarLightsUpAndExplainsItself) {
  Open();
  const Rect bar = menu_->input().Layout().DragBar();
  EXPECT_EQ(bar.height, ScreenTwips().ToPixelsY(90));
  EXPECT_EQ(Pixel({40, bar.bottom() - 1}), GetSysColor(COLOR_INACTIVECAPTION));
  EXPECT_EQ(Pixel({40, bar.bottom()}), GetSysColor(COLOR_BTNFACE));
  Move(Handle());
  EXPECT_TRUE(Until([&] { return Pixel({40, 3}) == GetSysColor(COLOR_ACTIVECAPTION); }));
  EXPECT_EQ(CountWindows("frmTip"), 1);
  EXPECT_TRUE(Until([] { return FindVisibleWindow(MenuInput::kDragTip) != nullptr; }));
  Hover(kRename);
  EXPECT_TRUE(Until([] { return FindVisibleWindow(MenuInput::kDragTip) == nullptr; }));
  EXPECT_EQ(Pixel({40, 3}), GetSysColor(COLOR_INACTIVECAPTION));
}

TEST_F(MenuWindowTest, AClickIsReportedAfterTheMenuIsHidden) {
  Open();
  Hover(kEdit);
  log_.clear();
  bool visibleWhenHidden = true;
  onHideMenu_ = [&] { visibleWhenHidden = IsWindowVisible(menu_->hWnd()) != 0; };
  PressMouse();
  ReleaseMouse();
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_, (Log{"hide", "click 70", "hide"}));
  EXPECT_FALSE(visibleWhenHidden);
  EXPECT_EQ(GetCapture(), nullptr);
  ExpectFocusStayed();
}

TEST_F(MenuWindowTest, AClickOutsideClosesItAndReachesItsTarget) {
  Open();
  POINT place{200, 300};
  ClientToScreen(target_.hWnd(), &place);
  Move({place.x, place.y});
  SendShift(true);
  PressMouse();
  ASSERT_TRUE(Closed());
  EXPECT_TRUE(Until([&] { return !target_.clicks.empty(); }));
  ReleaseMouse();
  SendShift(false);
  EXPECT_EQ(target_.clicks, (Log{"left " + std::to_string(MK_LBUTTON | MK_SHIFT) + " at 200,300"}));
  EXPECT_EQ(log_, (Log{"hide", "hide"}));

  // Parts of the window get what their part of a window expects.
  for (const int part : {HTCLIENT, HTVSCROLL, HTCAPTION, HTCLOSE, HTBOTTOMRIGHT}) {
    for (const std::string button : {"left", "right"}) {
      target_.clicks.clear();
      target_.part = part;
      Open();
      SendMouse(button == "left" ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN);
      ASSERT_TRUE(Closed());
      EXPECT_TRUE(Until([&] { return !target_.clicks.empty(); }));
      SendMouse(button == "left" ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP);
      const int held = button == "left" ? MK_LBUTTON : MK_RBUTTON;
      EXPECT_EQ(target_.clicks, (Log{button + (part == HTCLIENT ? " " : " on part ") +
                                     std::to_string(part == HTCLIENT ? held : part) + " at 200,300"}));
    }
  }
}

TEST_F(MenuWindowTest, ArrowsMoveEscapeClosesAndNothingElseGetsThrough) {
  Open();
  for (int i = 0; i < 6; ++i) PressKey(VK_DOWN);
  ASSERT_TRUE(Logged("select 4"));
  PressKey(VK_UP);
  EXPECT_TRUE(Logged("select 3"));
  EXPECT_EQ(log_, (Log{"select 0", "select 1", "select 70", "select 3", "select 4", "select 3"}));
  PressKey('X');
  PressKey(VK_RETURN);
  INPUT wheel{};
  wheel.type = INPUT_MOUSE;
  wheel.mi.dwFlags = MOUSEEVENTF_WHEEL;
  wheel.mi.mouseData = WHEEL_DELTA;
  SendInput(1, &wheel, sizeof wheel);
  PressKey(VK_UP);
  EXPECT_TRUE(Until([&] { return menu_->input().HotItem() == kEdit; }));
  char text[16]{};
  GetWindowTextA(edit_, text, sizeof text);
  EXPECT_STREQ(text, "text");
  ExpectFocusStayed();
  log_.clear();
  PressKey(VK_ESCAPE);
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_, (Log{"hide"}));
  PressKey('Y');
  EXPECT_TRUE(Until([&] {
    GetWindowTextA(edit_, text, sizeof text);
    return std::string(text).size() == 5;
  })) << "once it is closed the keys are the owner's again";
}

TEST_F(MenuWindowTest, TornOffItIsAPaletteOfItsOwner) {
  Open();
  const Rect docked = Place();
  TearOff();
  EXPECT_EQ(log_, (Log{"hide"}));
  EXPECT_EQ(Place().width, docked.width);
  EXPECT_GT(Place().height, docked.height);
  EXPECT_EQ(GetWindow(menu_->hWnd(), GW_OWNER), frame_);
  EXPECT_EQ(GetWindowLongA(menu_->hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_EQ(GetCapture(), nullptr);
  ExpectFocusStayed();

  // Moved on, back and forth.
  const Rect before = Place();
  TearOff({-30, 20});
  EXPECT_TRUE(PlaceIs(before.left - 30, before.top + 20));

  log_.clear();
  Hover(kEdit);
  for (const std::ptrdiff_t clicks : {1, 2}) {
    PressMouse();
    ReleaseMouse();
    EXPECT_TRUE(Until([&] { return std::count(log_.begin(), log_.end(), "click 70") == clicks; }));
  }
  EXPECT_EQ(log_, (Log{"select 70", "click 70", "click 70"}));
  EXPECT_TRUE(IsWindowVisible(menu_->hWnd()));
  EXPECT_EQ(GetCapture(), nullptr);

  // Hot, it is raised as a whole.
  const Rect row = menu_->input().Layout().Row(kEdit);
  EXPECT_EQ(Pixel({row.left, row.top + 4}), GetSysColor(COLOR_BTNHIGHLIGHT));
  EXPECT_EQ(Pixel({row.right() - 1, row.top + 4}), GetSysColor(COLOR_BTNSHADOW));
  EXPECT_EQ(Pixel({row.right() - 3, row.top + 4}), GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_GT(Pixels(menu_->input().Layout().Caption(kEdit), COLOR_BTNTEXT), 5);
  Move(kFarAway);
  EXPECT_TRUE(Until([&] { return menu_->input().HotItem() == MenuHot::kNoItem; }));
  EXPECT_EQ(Pixel({row.right() - 3, row.top + 4}), GetSysColor(COLOR_BTNFACE));
  EXPECT_EQ(Pixel({row.right() - 1, row.top + 4}), GetSysColor(COLOR_BTNFACE));

  // Neither the system nor the focus closes it.
  SendMessageA(menu_->hWnd(), WM_CLOSE, 0, 0);
  SetFocus(frame_);
  Answer();
  EXPECT_TRUE(IsWindowVisible(menu_->hWnd()));
}

TEST_F(MenuWindowTest, ATornOffMenuTakesNoClicksWhileItsOwnerTakesNone) {
  Open();
  TearOff();
  Hover(kEdit);
  log_.clear();
  EnableWindow(frame_, FALSE);  // as a dialog does with its owner
  PressMouse();
  ReleaseMouse();
  Answer();
  EnableWindow(frame_, TRUE);
  Hover(kPlain);
  PressMouse();
  ReleaseMouse();
  EXPECT_TRUE(Logged("click 4"));
  EXPECT_EQ(log_, (Log{"select 4", "click 4"}));
}

TEST_F(MenuWindowTest, TheCloseBoxSinksAndClosesATornOffMenu) {
  Open();
  TearOff();
  log_.clear();
  const Rect box = menu_->input().Layout().CloseBox();
  EXPECT_EQ(Pixel({box.left - 4, 5}), GetSysColor(COLOR_ACTIVECAPTION));
  EXPECT_GT(Pixels(box, COLOR_BTNTEXT), 3);
  const auto isRaised = [&] { return Pixel({box.left, box.top}) == GetSysColor(COLOR_BTNHIGHLIGHT); };
  EXPECT_TRUE(isRaised());
  Move(OnScreen(Centre(box)));
  PressMouse();
  EXPECT_TRUE(Until([&] { return menu_->input().CloseBoxPushed() && !isRaised(); }));
  ReleaseMouse();
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_.back(), "hide");
  ExpectFocusStayed();
}

TEST_F(MenuWindowTest, ATornOffMenuGoesAndComesBackWithItsOwner) {
  Open();
  TearOff();
  SendMessageA(frame_, WM_SYSCOMMAND, SC_MINIMIZE, 0);
  EXPECT_TRUE(Until([&] { return !IsWindowVisible(menu_->hWnd()); }));
  SendMessageA(frame_, WM_SYSCOMMAND, SC_RESTORE, 0);
  EXPECT_TRUE(Until([&] { return IsWindowVisible(menu_->hWnd()) != 0; }));
  EXPECT_EQ(menu_->input().State(), MenuState::Floating);

  // And ends with it.
  log_.clear();
  DestroyWindow(frame_);
  EXPECT_EQ(menu_->hWnd(), nullptr);
  EXPECT_EQ(log_, (Log{"hide"}));
  EXPECT_EQ(CountWindows("frmTip"), 0);
}

TEST_F(MenuWindowTest, ADockedMenuClosesWhenItsOwnerIsLeft) {
  Open();
  const HWND other = CreateWindowExA(0, "STATIC", "other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 700, 500, 200,
                                     100, nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRUE(Closed());
  EXPECT_EQ(log_, (Log{"hide"}));
  EXPECT_EQ(GetCapture(), nullptr);
  DestroyWindow(other);
  ASSERT_TRUE(Until([&] { return GetActiveWindow() == frame_; }));

  Open();
  EnableWindow(frame_, FALSE);
  EXPECT_TRUE(Closed());
  EnableWindow(frame_, TRUE);

  // Somebody else takes the mouse.
  Open();
  SetCapture(frame_);
  EXPECT_TRUE(Closed());
  EXPECT_EQ(GetCapture(), frame_);
  ReleaseCapture();
}

TEST_F(MenuWindowTest, WithoutItemsNothingShows) {
  menu_->Clear();
  menu_->Popup(1000, 1000, frame_, true);
  EXPECT_FALSE(IsWindowVisible(menu_->hWnd()));
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_EQ(log_, Log{});
  menu_->Unload();
  EXPECT_EQ(menu_->hWnd(), nullptr);
}

TEST_F(MenuWindowTest, TheOwnerMayEndTheMenuInAnyEvent) {
  for (std::function<void()>* event : {&onHideMenu_, &onClicked_}) {
    Open();
    Hover(kEdit);
    *event = [this] { menu_.reset(); };
    PressMouse();
    ReleaseMouse();
    EXPECT_TRUE(Until([&] { return menu_ == nullptr; }));
    EXPECT_EQ(CountWindows("frmMenu"), 0);
    EXPECT_EQ(CountWindows("frmTip"), 0);
    EXPECT_EQ(GetCapture(), nullptr);
    *event = nullptr;
    MakeMenu();
  }
}

TEST_F(MenuWindowTest, TheOwnerMayOpenTheMenuAnewWhenItIsHidden) {
  Open();
  Hover(kRename);
  log_.clear();
  onHideMenu_ = [this] {
    onHideMenu_ = nullptr;
    Open();
  };
  PressMouse();
  ReleaseMouse();
  ASSERT_TRUE(Logged("click 0"));
  EXPECT_EQ(menu_->input().State(), MenuState::Docked);
  EXPECT_TRUE(IsWindowVisible(menu_->hWnd()));
  EXPECT_EQ(GetCapture(), menu_->hWnd());
}

TEST_F(MenuWindowTest, AssistiveProgramsReadAndPressItsItems) {
  Open();
  Hover(kEdit);
  AccessibleClient client(menu_->hWnd());
  ASSERT_NE(client.get(), nullptr);
  const std::vector<AccessibleChild> children = client.Children();
  ASSERT_EQ(children.size(), 5U);
  EXPECT_EQ(children[kRename].name, "Rename");
  EXPECT_EQ(children[kRename].role, ROLE_SYSTEM_MENUITEM);
  EXPECT_EQ(children[kRename].defaultAction, "Execute");
  EXPECT_EQ(children[kSeparator].role, ROLE_SYSTEM_SEPARATOR);
  EXPECT_EQ(children[kSeparator].defaultAction, "");
  EXPECT_TRUE(children[kEdit].Has(STATE_SYSTEM_HOTTRACKED | STATE_SYSTEM_FOCUSED));
  EXPECT_TRUE(children[kDelete].Has(STATE_SYSTEM_UNAVAILABLE));
  EXPECT_EQ(children[kDelete].defaultAction, "");
  const Rect row = menu_->input().Layout().Row(kEdit);
  EXPECT_EQ(children[kEdit].place, (Rect{kCorner.x, kCorner.y + row.top, row.width, row.height}));
  Variant role;
  VARIANT self{};
  self.vt = VT_I4;
  ASSERT_EQ(client->get_accRole(self, role.Put()), S_OK);
  EXPECT_EQ(role.get().lVal, ROLE_SYSTEM_MENUPOPUP);

  log_.clear();
  EXPECT_FALSE(client.Press("Delete"));
  EXPECT_TRUE(client.Press("Rename"));
  client.Reset();
  ASSERT_TRUE(Closed());
  EXPECT_EQ(log_, (Log{"hide", "click 0", "hide"}));
}

std::vector<std::string>* heardEvents = nullptr;

void CALLBACK HearEvent(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG /*object*/, LONG child,
                        DWORD /*thread*/, DWORD /*time*/) {
  if (heardEvents == nullptr || ClassOf(window) != "frmMenu") return;
  if (event == EVENT_SYSTEM_MENUPOPUPSTART) heardEvents->emplace_back("start");
  if (event == EVENT_SYSTEM_MENUPOPUPEND) heardEvents->emplace_back("end");
  if (event == EVENT_OBJECT_FOCUS) heardEvents->push_back("focus " + std::to_string(child));
}

TEST_F(MenuWindowTest, AssistiveProgramsHearOfOpeningFocusAndEnd) {
  Log heard;
  heardEvents = &heard;
  const HWINEVENTHOOK hook = SetWinEventHook(EVENT_MIN, EVENT_MAX, GetModuleHandleA(nullptr), &HearEvent,
                                             GetCurrentProcessId(), GetCurrentThreadId(), WINEVENT_INCONTEXT);
  ASSERT_NE(hook, nullptr);
  Open();
  PressKey(VK_DOWN);
  EXPECT_TRUE(Logged("select 0"));
  TearOff();
  menu_->Unload();
  UnhookWinEvent(hook);
  heardEvents = nullptr;
  EXPECT_EQ(heard, (Log{"start", "focus 1", "end"}));
}

TEST_F(MenuWindowTest, OpeningTearingOffAndClosingLeavesNothingBehind) {
  constexpr int kCycles = 20;
  const auto cycle = [&] {
    Open();
    // Pressed and released on the bar: the drag ends where it began.
    const Point handle = Handle();
    Move(handle);
    PressMouse();
    ReleaseMouse();
    ASSERT_TRUE(Until([&] { return menu_->input().State() == MenuState::Floating; }));
    ASSERT_TRUE(Until([] { return GetKeyState(VK_LBUTTON) >= 0; }));
    Move(OnScreen(Centre(menu_->input().Layout().CloseBox())));
    PressMouse();
    ReleaseMouse();
    ASSERT_TRUE(Closed());
  };
  cycle();
  const int freeBefore = FreeGdiHandles();
  for (int i = 0; i < kCycles; ++i) {
    cycle();
    if (HasFatalFailure()) FAIL() << "in cycle " << i;
  }
  EXPECT_EQ(FreeGdiHandles(), freeBefore);
  EXPECT_EQ(CountWindows("frmMenu"), 0);
  EXPECT_EQ(CountWindows("frmTip"), 0);
  EXPECT_EQ(GetCapture(), nullptr);
  ExpectFocusStayed();
}

}  // namespace
}  // namespace snip::test
