#include "ui/commandbar/BnCommandBar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Com.h"
#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/TestCanvas.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "tests/unit/MemoryBag.h"
#include "ui/commandbar/SystemSounds.h"
#include "ui/main/frmTip.h"

namespace snip::test {
namespace {

using Log = std::vector<std::string>;

/// A bar in a real window, moved and clicked with the real pointer.
class BnCommandBarTest : public testing::Test {
 protected:
  // The bar's buttons, by their place.
  static constexpr POINT kOffTheBar{300, 100};
  enum Button { kPush, kMenu, kToggle, kDropDown, kSeparator, kDisabled, kText };

  void SetUp() override {
    ASSERT_TRUE(tip_.Load());
    registry_.SetRegValue(
        "sound", registry_.CreateRegKey(HKEY_CURRENT_USER, OfficeSchemeSoundKey("ToolbarClick")), "", REG_SZ);
    Show(bar_, 0, 560);
    const PictureRef picture = Picture::FromResource(IDB_NEW_SNIPPET);
    bar_.AddButton("&Push me", picture, ButtonType::Push, DisplayType::Picture);
    bar_.AddButton("&Menu", picture, ButtonType::Menu, DisplayType::Picture);
    bar_.AddButton("&Toggle", picture, ButtonType::Toggle, DisplayType::Picture);
    bar_.AddButton("&Drop", picture, ButtonType::DropDown, DisplayType::Picture);
    bar_.AddButton("", nullptr, ButtonType::Separator, DisplayType::Picture);
    bar_.AddButton("&Off", picture, ButtonType::Push, DisplayType::Picture, true);
    bar_.AddButton("Te&xt", picture, ButtonType::Push, DisplayType::PictureAndCaption);
    MoveTo(kOffTheBar);
    log_.clear();
  }

  void Show(BnCommandBar& bar, int top, int width, bool runMode = true) const {
    ASSERT_TRUE(bar.CreateIn(frame_.get(), 1, "Tools", {.Name = "Tahoma", .Size = 8.25}, runMode));
    snip::MoveTo(bar.hWnd(), {0, top, width, 26});
  }

  POINT CentreOf(int button) const {
    const Rect area = bar_.buttons().Find(button)->Area();
    return {area.left + area.width / 2, area.top + area.height / 2};
  }

  void MoveTo(POINT place) const {
    ClientToScreen(frame_.get(), &place);
    ASSERT_TRUE(PointAtScreen(place));
  }
  static void Click() {
    PressMouse();
    ReleaseMouse();
  }
  /// Moves onto a button and waits until the bar has seen it there.
  void HoverOver(int button) {
    MoveTo(CentreOf(button));
    ASSERT_TRUE(WaitUntil([&] { return bar_.input().HotButton() == button; }));
  }
  bool Logged(const std::string& entry) {
    return WaitUntil([&] { return std::find(log_.begin(), log_.end(), entry) != log_.end(); });
  }
  Log ButtonEvents() const {
    Log events;
    for (const std::string& entry : log_) {
      if (!entry.starts_with("move")) events.push_back(entry);
    }
    return events;
  }

  /// What the top left and the bottom right corner of a button show.
  std::string EdgeOf(int button) const {
    const Rect area = bar_.buttons().Find(button)->Area();
    const COLORREF top = ShownAt(bar_.hWnd(), {area.left + 3, area.top});
    const COLORREF bottom = ShownAt(bar_.hWnd(), {area.left + 3, area.bottom() - 1});
    const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF dark = GetSysColor(COLOR_BTNSHADOW);
    return top == light && bottom == dark                       ? "raised"
           : top == dark && bottom == light                     ? "sunken"
           : top == GetSysColor(COLOR_BTNFACE) && bottom == top ? "flat"
                                                                : "broken";
  }

  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  Log log_;
  SoundEffects sounds_{registry_, [this](const std::string& file) { log_.push_back(file); }};
  const TestFrame frame_{"bar", {50, 50, 600, 200}};
  frmTip tip_;
  std::function<void(int)> onDropdown_ = [](int) {};
  BnCommandBar bar_{
      {.sounds = sounds_,
       .tip = &tip_,
       .showMessage =
           [this](const std::string& prompt, int style, const std::string& title) {
             log_.push_back("message " + std::to_string(style) + " " + title + ": " + prompt);
             return MessageResult::Ok;
           }},
      {.ButtonClicked = [this](int button) { log_.push_back("click " + std::to_string(button)); },
       .Dropdown =
           [this](int button) {
             log_.push_back("dropdown " + std::to_string(button));
             onDropdown_(button);
           },
       .MouseHover = [this](int button) { log_.push_back("hover " + std::to_string(button)); },
       .MouseLeave = [this](int button) { log_.push_back("leave " + std::to_string(button)); },
       .MouseDown =
           [this](const BarMouse& mouse) {
             log_.push_back("down " + std::to_string(mouse.Button) + " " + std::to_string(mouse.Shift) + " " +
                            std::to_string(mouse.at.x) + "," + std::to_string(mouse.at.y));
           },
       .MouseMove = [this](const BarMouse&) { log_.emplace_back("move"); },
       .MouseUp = [this](const BarMouse& mouse) { log_.push_back("up " + std::to_string(mouse.Button)); },
       .DblClick = [this] { log_.emplace_back("double click"); },
       .Resize = [this] { log_.emplace_back("resize"); },
       .PropertyChanged = [this](const char* name) { log_.push_back(std::string("changed ") + name); }}};
};

TEST_F(BnCommandBarTest, ButtonsFollowThePointer) {
  EXPECT_EQ(EdgeOf(kPush), "flat");
  HoverOver(kMenu);
  EXPECT_EQ(EdgeOf(kMenu), "raised");
  HoverOver(kPush);
  EXPECT_EQ(EdgeOf(kMenu), "flat");
  EXPECT_EQ(EdgeOf(kPush), "raised");
  const POINT at = CentreOf(kPush);
  PressMouse();
  ASSERT_TRUE(Logged("sound"));
  EXPECT_EQ(EdgeOf(kPush), "sunken");
  ReleaseMouse();
  ASSERT_TRUE(Logged("up 1"));
  EXPECT_EQ(EdgeOf(kPush), "raised");
  // The second press of a double click presses nothing.
  Click();
  ASSERT_TRUE(WaitUntil([&] { return std::ranges::count(log_, "up 1") == 2; }));
  MoveTo(kOffTheBar);
  ASSERT_TRUE(Logged("leave 0"));
  EXPECT_EQ(EdgeOf(kPush), "flat");
  std::erase(log_, "move");
  EXPECT_EQ(log_, (Log{"hover 1", "leave 1", "hover 0",
                       "down 1 0 " + std::to_string(at.x) + "," + std::to_string(at.y), "sound", "click 0",
                       "up 1", "double click", "up 1", "leave 0"}));

  // With the pointer elsewhere no timer ticks until it comes back.
  EXPECT_TRUE(
      WaitUntil([] { return MsgWaitForMultipleObjects(0, nullptr, FALSE, 300, QS_TIMER) == WAIT_TIMEOUT; }));

  bar_.SetPlaysSounds(false);
  HoverOver(kMenu);
  log_.clear();
  std::string edgeWhileOpen;
  onDropdown_ = [&](int button) { edgeWhileOpen = EdgeOf(button); };
  PressMouse();
  ASSERT_TRUE(Logged("dropdown 1"));
  EXPECT_EQ(edgeWhileOpen, "sunken");
  EXPECT_EQ(EdgeOf(kMenu), "flat") << "drawn at rest once the menu is closed";
  ReleaseMouse();
  ASSERT_TRUE(Logged("up 1"));
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_EQ(std::ranges::count(log_, "sound"), 0);
  log_.clear();
  SendMessageA(bar_.hWnd(), WM_RBUTTONDOWN, MK_RBUTTON | MK_CONTROL, MAKELPARAM(500, 6));
  SendMessageA(bar_.hWnd(), WM_MBUTTONUP, MK_SHIFT, MAKELPARAM(500, 6));
  EXPECT_EQ(ButtonEvents(), (Log{"leave 1", "down 2 2 500,6", "up 4"}));
}

TEST_F(BnCommandBarTest, AContainerMayDeleteTheBarInAnyEvent) {
  using Setter = std::function<void(BnCommandBar::Events&, std::function<void()>)>;
  const std::vector<std::pair<const char*, Setter>> setters = {
      {"click", [](auto& events, auto end) { events.ButtonClicked = [=](int) { end(); }; }},
      {"mouse down", [](auto& events, auto end) { events.MouseDown = [=](const BarMouse&) { end(); }; }},
      {"resize", [](auto& events, auto end) { events.Resize = [=] { end(); }; }},
      {"property", [](auto& events, auto end) { events.PropertyChanged = [=](const char*) { end(); }; }},
  };
  for (const auto& [name, set] : setters) {
    SCOPED_TRACE(name);
    std::unique_ptr<BnCommandBar> bar;
    bool armed = false;
    std::string seen;
    BnCommandBar::Events events;
    const std::string captured(100, 'x');  // goes with the handler
    set(events, [&bar, &armed, &seen, captured] {
      if (!armed) return;
      std::string& result = seen;
      bar.reset();
      result = captured;
    });
    bar = std::make_unique<BnCommandBar>(
        BnCommandBar::Services{.sounds = sounds_, .tip = &tip_, .showMessage = {}}, events);
    Show(*bar, 60, 300);
    bar->AddButton("One", nullptr, ButtonType::Push, DisplayType::Caption);
    armed = true;
    if (bar) bar->DoDefaultAction(0);
    if (bar) SendMessageA(bar->hWnd(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    if (bar) bar->SetDockable(true);
    if (bar) ::MoveWindow(bar->hWnd(), 0, 60, 320, 26, TRUE);
    EXPECT_EQ(bar, nullptr);
    EXPECT_EQ(seen, std::string(100, 'x'));
    ReleaseCapture();
  }
}

TEST_F(BnCommandBarTest, ATipShowsTheCaptionAndLetsClicksThrough) {
  HoverOver(kPush);
  ASSERT_TRUE(WaitUntil([&] { return tip_.Visible(); }));
  EXPECT_EQ(WindowText(tip_.hWnd()), "&Push me");
  EXPECT_EQ(bar_.input().HotButton(), kPush) << "under the tip the pointer is still on the button";
  Click();
  EXPECT_TRUE(Logged("click 0"));
  EXPECT_FALSE(tip_.Visible());
}

TEST_F(BnCommandBarTest, TheTipGoesWithItsBar) {
  const HWND other =
      CreateWindowExA(0, "EDIT", "other", WS_POPUP, 0, 0, 700, 300, nullptr, nullptr, nullptr, nullptr);
  const std::vector<std::pair<std::function<void()>, std::function<void()>>> ways = {
      {[&] { SetWindowPos(other, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW); },
       [&] { ShowWindow(other, SW_HIDE); }},
      {[&] { ShowWindow(frame_.get(), SW_HIDE); }, [&] { ShowWindow(frame_.get(), SW_SHOW); }},
      {[&] { EnableWindow(frame_.get(), FALSE); }, [&] { EnableWindow(frame_.get(), TRUE); }},
      {[&] { bar_.Destroy(); }, [] {}}};
  for (std::size_t i = 0; i < ways.size(); ++i) {
    SCOPED_TRACE(i);
    HoverOver(kPush);
    ASSERT_TRUE(WaitUntil([&] { return tip_.Visible(); }));
    ways[i].first();
    EXPECT_TRUE(WaitUntil([&] { return !tip_.Visible(); }, 3000));
    ways[i].second();
  }
  DestroyWindow(other);
}

TEST_F(BnCommandBarTest, WithoutAWindowNoButtonIsDrawnOnTheScreen) {
  bar_.Destroy();
  const WindowDC screen(nullptr);
  const POINT place = CentreOf(kPush);
  SetPixel(screen.get(), place.x, place.y, RGB(1, 2, 3));
  bar_.EraseBtn(kPush);
  EXPECT_EQ(GetPixel(screen.get(), place.x, place.y), RGB(1, 2, 3));
}

TEST_F(BnCommandBarTest, PaintShowsState1DownAndRedrawOnlyToggles) {
  bar_.SetState(kPush, 1);
  EXPECT_EQ(EdgeOf(kPush), "flat");
  bar_.Refresh();
  EXPECT_EQ(EdgeOf(kPush), "sunken");
  bar_.RedrawButton(kPush);
  EXPECT_EQ(EdgeOf(kPush), "flat");
}

TEST_F(BnCommandBarTest, TenThousandPaintsLeaveNoObjectBehind) {
  bar_.Refresh();  // what the system itself makes on first use
  const int before = FreeGdiHandles();
  for (int i = 0; i < 1500; ++i) {  // eight buttons each
    bar_.SetGrayed(kText, i % 2 == 0);
    bar_.Refresh();
  }
  EXPECT_EQ(FreeGdiHandles(), before);
}

TEST_F(BnCommandBarTest, WhatIsDraggedOutOfABarMayBeDroppedOnIt) {
  const OleThread ole;
  BnCommandBar::Events events;
  events.OLEStartDrag = [](OleData& data, DWORD& allowedEffects) {
    EXPECT_EQ(allowedEffects, DWORD{DROPEFFECT_NONE});
    data.Offer(CF_TEXT);
    allowedEffects = DROPEFFECT_COPY;
  };
  events.OLESetData = [](OleData& data, CLIPFORMAT format) { data.SetText("button", format); };
  events.OLEGiveFeedback = [this](DWORD effect, bool&) {
    if (effect != DROPEFFECT_NONE) log_.push_back("feedback " + std::to_string(effect));
  };
  events.OLEDragOver = [this](OleData&, DWORD&, const BarMouse&, OleDragState) { log_.emplace_back("over"); };
  events.OLEDragDrop = [this](OleData& data, DWORD&, const BarMouse& mouse) {
    log_.push_back("drop " + data.GetText() + " " + std::to_string(mouse.at.x) + "," +
                   std::to_string(mouse.at.y));
  };
  events.OLECompleteDrag = [this](DWORD effect) { log_.push_back("complete " + std::to_string(effect)); };
  BnCommandBar bar{{.sounds = sounds_, .tip = nullptr, .showMessage = {}}, events};
  Show(bar, 60, 300);
  MoveTo({20, 70});
  MemoryBag bag;
  const Log refused = {"complete 0"};
  const Log dropped = {"over", "feedback 1", "drop button 20,10", "complete 1"};
  // A bar takes no drops at first. No mouse button is held: what is dragged is let go at once, on the bar.
  const std::vector<std::pair<std::function<void()>, Log>> ways = {
      {[] {}, refused},
      {[&] { bar.SetOLEDropMode(1), bar.WriteProperties(bag); }, dropped},
      {[&] { bar.SetOLEDropMode(0); }, refused},
      {[&] { bar.ReadProperties(bag); }, dropped}};
  for (const auto& [change, expected] : ways) {
    change();
    log_.clear();
    bar.OLEDrag();
    EXPECT_EQ(log_, expected);
  }
}

TEST_F(BnCommandBarTest, PropertiesTellTheContainer) {
  bar_.SetDockable(true);
  EXPECT_EQ(bar_.buttons().Find(kPush)->Left, 10);
  EXPECT_EQ(PlaceOf(bar_.hWnd()).width, bar_.buttons().Find(kText)->Right + 3)
      << "a dockable bar hugs its buttons";
  EXPECT_EQ(bar_.NextButtonX(), (bar_.buttons().Find(kText)->Right + 1) * 15);
  EXPECT_EQ(ShownAt(bar_.hWnd(), {8, 24}), GetSysColor(COLOR_BTNSHADOW))
      << "the grip goes down to the bottom";
  bar_.SetMaskColor({0x00FF00});
  bar_.SetBorderStyle(0);
  EXPECT_TRUE(Logged("changed Dockable") && Logged("changed MaskColor") && Logged("changed BorderStyle"));
}

TEST_F(BnCommandBarTest, AtDesignTimeNoButtonsShow) {
  BnCommandBar designed{{.sounds = sounds_, .tip = nullptr, .showMessage = {}}, {}};
  Show(designed, 60, 300, false);
  designed.AddButton("Text", nullptr, ButtonType::Push, DisplayType::Caption);
  designed.Refresh();
  for (int x = 3; x < 290; ++x) EXPECT_EQ(ShownAt(designed.hWnd(), {x, 13}), GetSysColor(COLOR_BTNFACE)) << x;
}

TEST_F(BnCommandBarTest, AScreenReaderReadsAndPressesTheButtons) {
  const ComApartment apartment;
  bar_.SetState(kToggle, 1);
  bar_.SetShortcut(kDropDown, ButtonPart::Push, "Ctrl+Enter");
  const AccessibleClient reader(bar_.hWnd());
  const std::vector<std::tuple<std::string, LONG, LONG>> expected = {
      {"Push me, Alt+P, Press", ROLE_SYSTEM_PUSHBUTTON, 0},
      {"Menu, Alt+M, Open", ROLE_SYSTEM_BUTTONMENU, STATE_SYSTEM_HASPOPUP},
      {"Toggle, Alt+T, Uncheck", ROLE_SYSTEM_CHECKBUTTON, STATE_SYSTEM_CHECKED | STATE_SYSTEM_PRESSED},
      {"Drop, Ctrl+Enter, Press", ROLE_SYSTEM_PUSHBUTTON, 0},
      {"Drop menu, Alt+D, Open", ROLE_SYSTEM_BUTTONDROPDOWN, STATE_SYSTEM_HASPOPUP},
      {", , ", ROLE_SYSTEM_SEPARATOR, 0},
      {"Off, Alt+O, ", ROLE_SYSTEM_PUSHBUTTON, STATE_SYSTEM_UNAVAILABLE},
      {"Text, Alt+X, Press", ROLE_SYSTEM_PUSHBUTTON, 0}};
  const std::vector<AccessibleChild> children = reader.Children();
  ASSERT_EQ(Told(children), expected);
  const Rect area = bar_.buttons().Find(kPush)->Area();
  const Rect bar = PlaceOf(bar_.hWnd());
  EXPECT_EQ(children[0].place, (Rect{bar.left + area.left, bar.top + area.top, area.width, area.height}));

  EXPECT_TRUE(reader.Press("Push me"));
  EXPECT_TRUE(Logged("click 0"));
  EXPECT_TRUE(reader.Press("Toggle"));
  ASSERT_TRUE(Logged("click 2"));
  EXPECT_EQ(bar_.state(kToggle), 0);
  EXPECT_TRUE(reader.Press("Drop menu"));
  EXPECT_TRUE(Logged("dropdown 3"));
  EXPECT_FALSE(reader.Press("Off"));
}

TEST_F(BnCommandBarTest, TheAboutBoxNamesTheControl) {
  bar_.ShowAboutBox();
  ASSERT_EQ(log_.size(), 1U);
  EXPECT_TRUE(log_[0].starts_with("message 64 Brennic BnCommandBar: Brennic BnCommandBar 1.0")) << log_[0];
}

}  // namespace
}  // namespace snip::test
