#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "tests/unit/TestMenu.h"
#include "ui/menu/MenuInput.h"

namespace snip::test {

using Strings = std::vector<std::string>;

/// For std::visit.
template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

inline std::string Said(Point at) {
  return std::to_string(at.x) + "," + std::to_string(at.y);
}

inline std::string Said(const MenuEffect::Any& effect) {
  using namespace MenuEffect;
  return std::visit(
      Overloaded{
          [](const PaintRow& e) { return "paint row " + std::to_string(e.index); },
          [](const PaintDragBar&) { return std::string("paint drag bar"); },
          [](const PaintCloseBox& e) { return std::string(e.pushed ? "close box in" : "close box out"); },
          [](const PaintAll&) { return std::string("paint all"); },
          [](const RaiseSelected& e) { return "Selected " + std::to_string(e.ID); },
          [](const RaiseClicked& e) { return "Clicked " + std::to_string(e.ID); },
          [](const RaiseHideMenu&) { return std::string("HideMenu"); },
          [](const PlaySystemSound& e) { return "play " + std::to_string(e.index); },
          [](const PlayOfficeSound& e) { return "play " + std::string(e.eventName); },
          [](const Load&) { return std::string("load"); },
          [](const MenuEffect::Unfold& e) {
            const Size size = e.unfolding.sizes.back();
            return "unfold at " + Said(e.unfolding.corner) + " to " + Said(Point{size.width, size.height});
          },
          [](const Hide&) { return std::string("hide"); },
          [](const BecomeOwned&) { return std::string("owned"); },
          [](const BecomeUnowned&) { return std::string("unowned"); },
          [](const DropTopmost&) { return std::string("not topmost"); },
          [](const SetHeight& e) { return "height " + std::to_string(e.height); },
          [](const StartSystemDrag& e) { return "drag from " + Said(e.screen); },
          [](const RunPendingEvents&) { return std::string("pending events"); },
          [](const ReleaseParts&) { return std::string("release parts"); },
          [](const Destroy&) { return std::string("destroy"); },
          [](const TakeCapture&) { return std::string("take capture"); },
          [](const ReleaseCapture&) { return std::string("release capture"); },
          [](const PostClick& e) {
            return "post " + std::to_string(e.message) + " with " + std::to_string(e.keys) + " at " +
                   Said(e.screen);
          },
          [](const StartTimer&) { return std::string("start timer"); },
          [](const StopTimer&) { return std::string("stop timer"); },
          [](const ShowTip& e) { return "tip: " + std::string(e.text); },
          [](const HideTip&) { return std::string("hide tip"); },
      },
      effect);
}

/// Lets others act, so that it has to come last.
inline bool GivesControl(const MenuEffect::Any& effect) {
  using namespace MenuEffect;
  return std::holds_alternative<RaiseSelected>(effect) || std::holds_alternative<RaiseClicked>(effect) ||
         std::holds_alternative<RaiseHideMenu>(effect) || std::holds_alternative<RunPendingEvents>(effect) ||
         std::holds_alternative<StartSystemDrag>(effect) || std::holds_alternative<Destroy>(effect) ||
         std::holds_alternative<MenuEffect::Unfold>(effect) ||
         std::holds_alternative<MenuEffect::Load>(effect);
}

constexpr Point kCorner{200, 100};  ///< Screen pixels of the menu.

/// A menu with a window that only keeps track of its own state.
class MenuUnderTest {
 public:
  explicit MenuUnderTest(std::string_view kinds) : metrics(MetricsAt(96)), items(MenuOf(kinds)) {}

  void Apply(MenuReaction reaction) {
    for (;;) {
      for (std::size_t i = 0; i < reaction.effects.size(); ++i) {
        const MenuEffect::Any& effect = reaction.effects[i];
        if (GivesControl(effect)) {
          EXPECT_EQ(i + 1, reaction.effects.size()) << Said(effect);
        }
        Follow(effect);
        log.push_back(Said(effect));
        if (GivesControl(effect) && others) others(log.back());
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  /// What was done since the last call.
  Strings Log() { return std::exchange(log, {}); }

  PopupRequest Request(bool allowDetach) const {
    return {.X = kCorner.x * 15,
            .Y = kCorner.y * 15,
            .AllowDetach = allowDetach,
            .cursor = {900, 700},
            .screen = {0, 0, 1024, 768}};
  }
  void Popup(bool allowDetach = true) { Apply(input.Popup(Request(allowDetach))); }
  /// Opens the menu and forgets how.
  void Open(bool allowDetach = true) {
    Popup(allowDetach);
    log.clear();
  }
  /// Opens the menu and tears it off.
  void Float() {
    Open();
    Move(kBar);
    Down(kBar);
    ASSERT_EQ(input.State(), MenuState::Floating);
    log.clear();
  }

  static MenuMouse Mouse(Point at, int button, bool shift = false) {
    return {button, shift, at, {at.x + kCorner.x, at.y + kCorner.y}};
  }
  void Move(Point at, int held = 0) { Apply(input.MouseMove(Mouse(at, held))); }
  void Down(Point at, int button = MouseButton::kLeft, bool shift = false) {
    Apply(input.MouseDown(Mouse(at, button, shift)));
  }
  void Up(Point at, int button = MouseButton::kLeft) { Apply(input.MouseUp(Mouse(at, button))); }
  void Tick(int times = 1) {
    for (; times > 0; --times) Apply(input.tClose_Timer());
  }

  /// On the row of an item, by where it is painted and where it is hit.
  Point On(int index) const {
    const Rect row = input.Layout().Row(index);
    return {5, row.top + row.height / 2 + 1};
  }

  static constexpr Point kBar{30, 3};
  static constexpr Point kOutside{-40, -50};
  /// On a torn-off menu: the items of all tests are 73 pixels wide.
  static constexpr Point kCloseBox{66, 6};

  MenuMetrics metrics;
  MenuItems items;
  MenuInput input{items, metrics};
  /// Called in every event and whenever others may act; the effect is passed as it is logged.
  std::function<void(const std::string&)> others;
  Strings log;

  // The window.
  bool window = false;
  bool parts = false;
  bool visible = false;
  bool captured = false;
  bool timer = false;
  bool tip = false;
  bool owned = false;
  int unloads = 0;
  int hideMenus = 0;

 private:
  void Follow(const MenuEffect::Any& effect) {
    using namespace MenuEffect;
    std::visit(Overloaded{
                   [&](const MenuEffect::Load&) {
                     EXPECT_FALSE(parts);
                     window = parts = true;
                   },
                   [&](const MenuEffect::Unfold& e) {
                     EXPECT_TRUE(window && parts);
                     visible = true;
                     client_ = e.unfolding.sizes.back();
                     input.Resized(client_);
                   },
                   [&](const Hide&) {
                     EXPECT_TRUE(visible);
                     EXPECT_FALSE(captured);
                     visible = false;
                   },
                   [&](const SetHeight& e) {
                     client_.height = e.height;
                     input.Resized(client_);
                   },
                   [&](const ReleaseParts&) {
                     EXPECT_TRUE(parts);
                     EXPECT_FALSE(visible);
                     EXPECT_FALSE(timer);
                     EXPECT_FALSE(tip);
                     EXPECT_FALSE(owned);
                     parts = false;
                     ++unloads;
                   },
                   [&](const Destroy&) {
                     EXPECT_TRUE(window);
                     EXPECT_FALSE(parts);
                     window = false;
                   },
                   [&](const RaiseHideMenu&) { ++hideMenus; },
                   [&](const BecomeOwned&) { owned = true; },
                   [&](const BecomeUnowned&) { owned = false; },
                   [&](const TakeCapture&) {
                     EXPECT_TRUE(visible);
                     captured = true;
                   },
                   [&](const ReleaseCapture&) { captured = false; },
                   [&](const StartTimer&) { timer = true; },
                   [&](const StopTimer&) { timer = false; },
                   [&](const ShowTip&) {
                     EXPECT_FALSE(tip);
                     tip = true;
                   },
                   [&](const HideTip&) {
                     EXPECT_TRUE(tip);
                     tip = false;
                   },
                   [](const auto&) {},
               },
               effect);
  }

  Size client_;
};

}  // namespace snip::test
