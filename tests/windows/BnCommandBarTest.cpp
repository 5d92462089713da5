#include "ui/commandbar/BnCommandBar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
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
#include "ui/main/frmTip.h"

namespace snip::test {
namespace {

using Log = std::vector<std::string>;

/// A bar in a real window, moved and clicked with the real pointer.
class BnCommandBarTest : public testing::Test {
 protected:
  // The bar's buttons, by their place.
  enum Button { kPush, kMenu, kToggle, kDropDown, kSeparator, kDisabled, kText };

  void SetUp() override {
    frame_ = CreateWindowExA(0, "STATIC", "bar", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 600, 200, nullptr,
                             nullptr, nullptr, nullptr);
    ASSERT_TRUE(tip_.Load());
    ASSERT_TRUE(bar_.CreateIn(frame_, 1, "Tools", {.Name = "Tahoma", .Size = 8.25}));
    MoveWindow(bar_.hWnd(), 0, 0, 560, 26, TRUE);
    const PictureRef picture = Picture::FromResource(IDB_NEW_SNIPPET);
    ASSERT_NE(picture, nullptr);
    bar_.AddButton("&Push me", picture, ButtonType::Push, DisplayType::Picture);
    bar_.AddButton("&Menu", picture, ButtonType::Menu, DisplayType::Picture);
    bar_.AddButton("&Toggle", picture, ButtonType::Toggle, DisplayType::Picture);
    bar_.AddButton("&Drop", picture, ButtonType::DropDown, DisplayType::Picture);
    bar_.AddButton("", nullptr, ButtonType::Separator, DisplayType::Picture);
    bar_.AddButton("&Off", picture, ButtonType::Push, DisplayType::Picture, true);
    bar_.AddButton("Te&xt", picture, ButtonType::Push, DisplayType::PictureAndCaption);
    // Below the bar: somewhere no button is.
    MovePointer(Screen({300, 100}));
    ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == frame_ && PointerAt(Screen({300, 100})); }));
    log_.clear();
  }
  void TearDown() override {
    bar_.Destroy();
    tip_.Destroy();
    DestroyWindow(frame_);
  }

  static bool PointerAt(POINT place) {
    POINT pointer{};
    GetCursorPos(&pointer);
    return pointer.x == place.x && pointer.y == place.y;
  }

  POINT Screen(POINT place) const {
    ClientToScreen(frame_, &place);
    return place;
  }
  POINT CentreOf(int button) const {
    const Rect area = bar_.buttons().Find(button)->Area();
    return {area.left + area.width / 2, area.top + area.height / 2};
  }

  void MoveTo(POINT place) {
    MovePointer(Screen(place));
    ASSERT_TRUE(WaitUntil([&] { return PointerAt(Screen(place)); }));
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

  COLORREF Pixel(int x, int y) const {
    const WindowDC dc(bar_.hWnd());
    return GetPixel(dc.get(), x, y);
  }
  /// What the top left and the bottom right corner of a button show.
  std::string EdgeOf(int button) const {
    const Rect area = bar_.buttons().Find(button)->Area();
    const COLORREF top = Pixel(area.left + 3, area.top);
    const COLORREF bottom = Pixel(area.left + 3, area.bottom() - 1);
    const COLORREF light = GetSysColor(COLOR_BTNHIGHLIGHT);
    const COLORREF dark = GetSysColor(COLOR_BTNSHADOW);
    if (top == light && bottom == dark) return "raised";
    if (top == dark && bottom == light) return "sunken";
    if (top == GetSysColor(COLOR_BTNFACE) && bottom == top) return "flat";
    return "broken";
  }

  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  Log log_;
  SoundEffects sounds_{registry_, [this](const std::string&) { log_.emplace_back("sound"); }};
  HWND frame_ = nullptr;
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

TEST_F(BnCommandBarTest, HoveringRaisesAndLeavingFlattens) {
  EXPECT_EQ(EdgeOf(kPush), "flat");
  HoverOver(kPush);
  EXPECT_EQ(EdgeOf(kPush), "raised");
  HoverOver(kMenu);
  EXPECT_EQ(EdgeOf(kPush), "flat");
  EXPECT_EQ(EdgeOf(kMenu), "raised");
  MoveTo({300, 100});
  ASSERT_TRUE(Logged("leave 1"));
  EXPECT_EQ(EdgeOf(kMenu), "flat");
  EXPECT_EQ(ButtonEvents(), (Log{"hover 0", "leave 0", "hover 1", "leave 1"}));
}

TEST_F(BnCommandBarTest, AClickSinksSoundsAndClicksOnRelease) {
  HoverOver(kPush);
  log_.clear();
  const POINT at = CentreOf(kPush);
  PressMouse();
  ASSERT_TRUE(Logged("sound"));
  EXPECT_EQ(EdgeOf(kPush), "sunken");
  EXPECT_EQ(ButtonEvents(), (Log{"down 1 0 " + std::to_string(at.x) + "," + std::to_string(at.y), "sound"}));
  log_.clear();
  ReleaseMouse();
  ASSERT_TRUE(Logged("up 1"));
  EXPECT_EQ(ButtonEvents(), (Log{"click 0", "up 1"}));
  EXPECT_EQ(EdgeOf(kPush), "raised");

  bar_.SetPlaysSounds(false);
  log_.clear();
  PressMouse();
  ReleaseMouse();
  ASSERT_TRUE(Logged("up 1"));
  EXPECT_EQ(std::count(log_.begin(), log_.end(), "sound"), 0);
}

TEST_F(BnCommandBarTest, AMenuDropsDownWhileItsButtonIsDown) {
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
}

TEST_F(BnCommandBarTest, ADoubleClickPressesOnce) {
  HoverOver(kPush);
  log_.clear();
  PressMouse();
  ReleaseMouse();
  PressMouse();
  ReleaseMouse();
  ASSERT_TRUE(WaitUntil([&] { return std::count(log_.begin(), log_.end(), "up 1") == 2; }));
  EXPECT_EQ(std::count(log_.begin(), log_.end(), "double click"), 1);
  EXPECT_EQ(std::count(log_.begin(), log_.end(), "sound"), 1);
  EXPECT_EQ(std::count(log_.begin(), log_.end(), "click 0"), 1);
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
    ASSERT_TRUE(bar->CreateIn(frame_, 3, "Doomed", {.Name = "Tahoma", .Size = 8.25}));
    ::MoveWindow(bar->hWnd(), 0, 60, 300, 26, TRUE);
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
  log_.clear();
  PressMouse();
  ASSERT_TRUE(Logged("sound"));
  ReleaseMouse();
  EXPECT_TRUE(Logged("click 0"));
  EXPECT_FALSE(tip_.Visible());
}

TEST_F(BnCommandBarTest, TheTipGoesWithItsBar) {
  const HWND other =
      CreateWindowExA(0, "EDIT", "other", WS_POPUP, 0, 0, 700, 300, nullptr, nullptr, nullptr, nullptr);
  const std::vector<std::pair<std::function<void()>, std::function<void()>>> ways = {
      {[&] { SetWindowPos(other, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW); },
       [&] { ShowWindow(other, SW_HIDE); }},
      {[&] { ShowWindow(frame_, SW_HIDE); }, [&] { ShowWindow(frame_, SW_SHOW); }},
      {[&] { EnableWindow(frame_, FALSE); }, [&] { EnableWindow(frame_, TRUE); }},
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

TEST_F(BnCommandBarTest, WithoutAWindowItLeavesTheScreenAlone) {
  bar_.Destroy();
  const WindowDC screen(nullptr);
  const POINT place = CentreOf(kPush);
  SetPixel(screen.get(), place.x, place.y, RGB(1, 2, 3));
  bar_.EraseBtn(kPush);
  bar_.Refresh();
  EXPECT_FALSE(WaitUntil([&] { return GetPixel(screen.get(), place.x, place.y) != RGB(1, 2, 3); }, 500));
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
  EXPECT_EQ(EdgeOf(kPush), "flat");

  EXPECT_EQ(FreeGdiHandles(), before);
}

TEST_F(BnCommandBarTest, WhatIsDraggedOutOfABarMayBeDroppedOnIt) {
  const OleThread ole;
  BnCommandBar::Events events;
  events.OLEStartDrag = [this](OleData& data, DWORD& allowedEffects) {
    log_.emplace_back("start drag");
    data.Offer(CF_TEXT);
    allowedEffects = DROPEFFECT_COPY;
  };
  events.OLESetData = [this](OleData& data, CLIPFORMAT format) {
    log_.push_back("set data " + std::to_string(format));
    data.SetText("button", format);
  };
  events.OLEGiveFeedback = [this](DWORD effect, bool&) {
    log_.push_back("feedback " + std::to_string(effect));
  };
  events.OLEDragOver = [this](OleData&, DWORD&, const BarMouse&, OleDragState state) {
    log_.push_back("drag over " + std::to_string(static_cast<int>(state)));
  };
  events.OLEDragDrop = [this](OleData& data, DWORD&, const BarMouse& mouse) {
    log_.push_back("drag drop " + data.GetText() + " " + std::to_string(mouse.at.x) + "," +
                   std::to_string(mouse.at.y));
  };
  events.OLECompleteDrag = [this](DWORD effect) {
    log_.push_back("complete drag " + std::to_string(effect));
  };
  events.PropertyChanged = [this](const char* name) { log_.push_back(std::string("changed ") + name); };
  BnCommandBar bar{{.sounds = sounds_, .tip = nullptr, .showMessage = {}}, events};
  ASSERT_TRUE(bar.CreateIn(frame_, 3, "Drop", {.Name = "Tahoma", .Size = 8.25}));
  ::MoveWindow(bar.hWnd(), 0, 60, 300, 26, TRUE);
  MoveTo({20, 70});
  log_.clear();

  // No mouse button is held: what is dragged is let go at once, on the bar.
  bar.OLEDrag();
  EXPECT_EQ(log_.front(), "start drag");
  EXPECT_EQ(log_.back(), "complete drag 0");
  EXPECT_EQ(std::count(log_.begin(), log_.end(), "drag over 0"), 0) << "a bar takes no drops at first";

  bar.SetOLEDropMode(1);
  EXPECT_EQ(log_.back(), "changed OLEDropMode");
  MemoryBag bag;
  bar.WriteProperties(bag);
  for (const char* way : {"set", "read"}) {
    SCOPED_TRACE(way);
    log_.clear();
    bar.OLEDrag();
    std::erase_if(log_, [](const std::string& entry) { return entry == "feedback 0"; });
    EXPECT_EQ(log_, (Log{"start drag", "drag over 0", "feedback 1", "set data 1", "drag drop button 20,10",
                         "complete drag 1"}));
    bar.SetOLEDropMode(0);
    log_.clear();
    bar.OLEDrag();
    EXPECT_EQ(std::count(log_.begin(), log_.end(), "drag over 0"), 0);
    EXPECT_EQ(log_.back(), "complete drag 0");
    bar.ReadProperties(bag);
  }
}

TEST_F(BnCommandBarTest, PropertiesTellTheContainerAndComeBackFromABag) {
  bar_.SetDockable(true);
  EXPECT_EQ(bar_.buttons().Find(kPush)->Left, 10);
  RECT place{};
  GetWindowRect(bar_.hWnd(), &place);
  EXPECT_EQ(place.right - place.left, bar_.buttons().Find(kText)->Right + 3)
      << "a dockable bar hugs its buttons";
  EXPECT_EQ(bar_.NextButtonX(), (bar_.buttons().Find(kText)->Right + 1) * 15);
  EXPECT_EQ(Pixel(8, 24), GetSysColor(COLOR_BTNSHADOW)) << "the grip goes down to the bottom";
  bar_.SetMaskColor({0x00FF00});
  bar_.SetBorderStyle(0);
  EXPECT_TRUE(Logged("changed Dockable") && Logged("changed MaskColor") && Logged("changed BorderStyle"));
  MemoryBag bag;
  bar_.WriteProperties(bag);
  bar_.SetDockable(false);
  bar_.SetMaskColor({0});
  bar_.ReadProperties(bag);
  EXPECT_TRUE(bar_.Dockable());
  EXPECT_EQ(bar_.MaskColor().value, 0x00FF00U);
  EXPECT_EQ(bar_.BorderStyle(), 0);
}

TEST_F(BnCommandBarTest, AtDesignTimeNoButtonsShow) {
  BnCommandBar designed{{.sounds = sounds_, .tip = nullptr, .showMessage = {}}, {}};
  ASSERT_TRUE(designed.CreateIn(frame_, 2, "Designed", {.Name = "Tahoma", .Size = 8.25}, false));
  MoveWindow(designed.hWnd(), 0, 60, 300, 26, TRUE);
  designed.AddButton("Text", nullptr, ButtonType::Push, DisplayType::Caption);
  designed.Refresh();
  const WindowDC dc(designed.hWnd());
  for (int x = 3; x < 290; ++x) EXPECT_EQ(GetPixel(dc.get(), x, 13), GetSysColor(COLOR_BTNFACE)) << x;
}

TEST_F(BnCommandBarTest, AScreenReaderReadsAndPressesTheButtons) {
  const ComApartment apartment;
  bar_.SetState(kToggle, 1);
  bar_.SetShortcut(kDropDown, ButtonPart::Push, "Ctrl+Enter");
  const AccessibleClient reader(bar_.hWnd());
  struct Told {
    const char* name;
    LONG role;
    LONG state;
    const char* shortcut;
    const char* action;
  };
  const std::vector<Told> expected = {
      {"Push me", ROLE_SYSTEM_PUSHBUTTON, 0, "Alt+P", "Press"},
      {"Menu", ROLE_SYSTEM_BUTTONMENU, STATE_SYSTEM_HASPOPUP, "Alt+M", "Open"},
      {"Toggle", ROLE_SYSTEM_CHECKBUTTON, 0x18, "Alt+T", "Uncheck"},
      {"Drop", ROLE_SYSTEM_PUSHBUTTON, 0, "Ctrl+Enter", "Press"},
      {"Drop menu", ROLE_SYSTEM_BUTTONDROPDOWN, STATE_SYSTEM_HASPOPUP, "Alt+D", "Open"},
      {"", ROLE_SYSTEM_SEPARATOR, 0, "", ""},
      {"Off", ROLE_SYSTEM_PUSHBUTTON, STATE_SYSTEM_UNAVAILABLE, "Alt+O", ""},
      {"Text", ROLE_SYSTEM_PUSHBUTTON, 0, "Alt+X", "Press"}};
  const std::vector<AccessibleChild> children = reader.Children();
  ASSERT_EQ(children.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    SCOPED_TRACE(expected[i].name);
    EXPECT_EQ(children[i].name, expected[i].name);
    EXPECT_EQ(children[i].role, expected[i].role);
    EXPECT_EQ(children[i].state, expected[i].state);
    EXPECT_EQ(children[i].shortcut, expected[i].shortcut);
    EXPECT_EQ(children[i].defaultAction, expected[i].action);
  }
  const Rect area = bar_.buttons().Find(kPush)->Area();
  POINT corner{area.left, area.top};
  ClientToScreen(bar_.hWnd(), &corner);
  EXPECT_EQ(children[0].place,
            (Rect{static_cast<int>(corner.x), static_cast<int>(corner.y), area.width, area.height}));

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
