#include "ui/menu/MenuInput.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/Script.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

constexpr Point kCorner{200, 100};  ///< Screen pixels of the menu.

std::string Said(Point at) {
  return std::to_string(at.x) + "," + std::to_string(at.y);
}

/// A menu that obeys commands, with a window that only writes down what is asked of it and keeps its own
/// state.
class ScriptedMenu : MenuPort {
 public:
  /// `kinds` as for `MenuOf`. Before it, "o" and a blank open the menu docked and "f" and a blank torn off.
  explicit ScriptedMenu(const std::string& kinds)
      : items(MenuOf(kinds.size() > 1 && kinds[1] == ' ' ? kinds.substr(2) : kinds)) {
    if (kinds.starts_with("o ") || kinds.starts_with("f ")) Obey("popup");
    if (kinds.starts_with("f ")) Obey("hover bar"), Obey("down bar");
    log_.clear();
  }
  ScriptedMenu(const ScriptedMenu&) = delete;
  ScriptedMenu& operator=(const ScriptedMenu&) = delete;

  /// Obeys, and says what was done or what was asked for.
  std::string operator()(const std::string& command) {
    const std::string answer = Obey(command);
    std::string done = Joined(std::exchange(log_, {}));
    // How every menu that is unloaded ends.
    const std::string unloading = "unowned, stop timer, release parts, pending events, HideMenu, destroy";
    if (const std::size_t at = done.find(unloading); at != std::string::npos) {
      done.replace(at, unloading.size(), "unload");
    }
    return answer.empty() ? done : answer;
  }

  MenuMetrics metrics = MetricsAt(96);
  MenuItems items;
  MenuInput input{items, metrics, *this};
  /// Called where others may act, with what is logged; what the scripts' "on" says comes first.
  std::function<void(const std::string&)> others;

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
  void Log(const std::string& said) { log_.push_back(said); }

  bool Others(const std::string& said) {
    Log(said);
    const auto reaction = reactions_.find(said.substr(0, said.find(" at ")));
    if (reaction != reactions_.end()) {
      const std::vector<std::string> commands = Split(reaction->second, '&');
      reactions_.erase(reaction);
      for (const std::string& command : commands) Obey(command);
    }
    if (others) others(said);
    return true;
  }

  void PaintRow(int index) override { Log("paint row " + std::to_string(index)); }
  void PaintDragBar() override { Log("paint drag bar"); }
  void PaintAll() override { Log("paint all"); }
  bool RaiseSelected(std::int32_t ID) override { return Others("Selected " + std::to_string(ID)); }
  bool RaiseClicked(std::int32_t ID) override { return Others("Clicked " + std::to_string(ID)); }
  bool RaiseHideMenu() override {
    ++hideMenus;
    return Others("HideMenu");
  }
  void PlaySystemSound(std::int16_t index) override { Log("play " + std::to_string(index)); }
  void PlayOfficeSound(const char* eventName) override { Log(std::string("play ") + eventName); }
  bool Load() override {
    EXPECT_FALSE(std::exchange(parts, true));
    window = true;
    return Others("load");
  }
  bool Unfold(const Unfolding& unfolding) override {
    EXPECT_TRUE(window && parts);
    visible = true;
    client_ = unfolding.sizes.back();
    input.Resized(client_);
    return Others("unfold at " + Said(unfolding.corner) + " to " +
                  Said(Point{client_.width, client_.height}));
  }
  void Hide() override {
    EXPECT_TRUE(std::exchange(visible, false) && !captured);
    Log("hide");
  }
  void BecomeOwned() override { owned = true, Log("owned"); }
  void BecomeUnowned() override { owned = false, Log("unowned"); }
  void DropTopmost() override { Log("not topmost"); }
  void SetHeight(int height) override {
    client_.height = height;
    input.Resized(client_);
    Log("height " + std::to_string(height));
  }
  bool StartSystemDrag(Point screen) override { return Others("drag from " + Said(screen)); }
  bool RunPendingEvents() override { return Others("pending events"); }
  void ReleaseParts() override {
    EXPECT_TRUE(std::exchange(parts, false));
    EXPECT_FALSE(visible || timer || tip || owned);
    ++unloads;
    Log("release parts");
  }
  void DestroyForm() override {
    EXPECT_TRUE(std::exchange(window, false) && !parts);
    Log("destroy");
  }
  void TakeCapture() override {
    EXPECT_TRUE(visible);
    captured = true;
    Log("take capture");
  }
  void ReleaseCapture() override { captured = false, Log("release capture"); }
  void PostClick(std::uint32_t message, std::uint32_t keys, Point screen) override {
    Log("post " + std::to_string(message) + " with " + std::to_string(keys) + " at " + Said(screen));
  }
  void StartTimer() override { timer = true, Log("start timer"); }
  void StopTimer() override { timer = false, Log("stop timer"); }
  void ShowTip(const std::string& text) override {
    EXPECT_FALSE(std::exchange(tip, true));
    Log("tip: " + text);
  }
  void HideTip() override {
    EXPECT_TRUE(std::exchange(tip, false));
    Log("hide tip");
  }

  /// A place by its name, by an item's index or by its pixels. The items of all tests are 73 pixels wide.
  Point Place(const std::string& name) const {
    if (name == "bar") return {30, 3};
    if (name == "out") return {-40, -50};
    if (name == "box") return {66, 6};
    const std::size_t comma = name.find(',');
    if (comma != std::string::npos) return {std::stoi(name), std::stoi(name.substr(comma + 1))};
    const Rect row = input.Layout().Row(std::stoi(name));
    return {5, row.top + row.height / 2 + 1};
  }

  std::string Obey(const std::string& command) {
    std::istringstream in(command);
    std::string verb, first, button, shift;
    in >> verb >> first >> button >> shift;
    const auto number = [&](int base = 10) { return std::stoi(first, nullptr, base); };
    const auto mouse = [&](int otherwise) {
      const int held = button == "left"     ? MouseButton::kLeft
                       : button == "right"  ? MouseButton::kRight
                       : button == "middle" ? MouseButton::kMiddle
                                            : otherwise;
      const Point at = Place(first);
      return MenuMouse{held, shift == "shift", at, {at.x + kCorner.x, at.y + kCorner.y}};
    };
    if (verb == "popup") {
      return input.Popup({.X = kCorner.x * 15,
                          .Y = kCorner.y * 15,
                          .AllowDetach = first != "plain",
                          .cursor = button == "here" ? kCorner : Point{900, 700},
                          .screen = {0, 0, 1024, 768}}),
             "";
    }
    if (verb == "hover") return input.MouseMove(mouse(0)), "";
    if (verb == "move") return input.MouseMove(mouse(1)), "";
    if (verb == "down") return input.MouseDown(mouse(1)), "";
    if (verb == "up") return input.MouseUp(mouse(1)), "";
    if (verb == "leave") return input.MouseLeave(), "";
    if (verb == "key") return input.KeyDown(static_cast<MenuKey>(number(16))), "";
    if (verb == "act") return input.DoDefaultAction(number()), "";
    if (verb == "lose") return captured = false, input.CaptureLost(), "";
    if (verb == "deactivate") return input.Deactivated(), "";
    if (verb == "query") return input.QueryUnload(static_cast<CloseReason>(number())), "";
    if (verb == "unload") return input.Unload(), "";
    if (verb == "items") return items = MenuOf(first), "";
    if (verb == "add") return items.Add({.Caption = "Cut", .ID = number()}, metrics, SevenPixels), "";
    if (verb == "height") return metrics.ItemHeight = number() * 15, "";
    if (verb == "allow") return input.AllowRightClick = first != "not", "";
    if (verb == "hot") return std::to_string(input.HotItem());
    if (verb == "state") return State();
    if (verb == "ended") return std::to_string(hideMenus) + " of " + std::to_string(unloads);
    if (verb == "tick") {
      for (int times = number(); times > 0; --times) input.tClose_Timer();
      return "";
    }
    if (verb != "on") throw std::invalid_argument(command);
    // What others do when they next see that; "&" separates their commands.
    const std::vector<std::string> told = Split(command.substr(3), ':');
    reactions_[told.at(0)] = told.at(1);
    return "";
  }

  std::string State() const {
    std::string state =
        std::vector{"hidden", "docked", "floating"}.at(static_cast<std::size_t>(input.State()));
    const std::vector<std::pair<bool, const char*>> parts_ = {{input.Mode().allowDetach, " detachable"},
                                                              {input.Mode().floating, " torn"},
                                                              {input.CloseBoxPushed(), " pushed"},
                                                              {parts, " loaded"},
                                                              {window, " window"},
                                                              {captured, " captured"},
                                                              {timer, " timer"}};
    for (const auto& [holds, name] : parts_) state += holds ? name : "";
    return state;
  }

  std::vector<std::string> log_;
  std::map<std::string, std::string> reactions_;
  Size client_;
};

TEST(MenuInput, ObeysTheScripts) {
  PlayScripts<ScriptedMenu>("menu.txt");
}

TEST(MenuInput, KnowsThreeKeys) {
  ScriptedMenu menu("o ii");
  menu("hover 0");
  for (int code = 0; code < 256; ++code) {
    std::ostringstream command;
    command << "key " << std::hex << code;
    const bool known = code == 0x1B || code == 0x26 || code == 0x28;
    EXPECT_EQ(known ? "" : menu(command.str()), "") << code;
  }
}

/// A user, the system and an owner, who do anything at any time, in the menu's events as well.
class RandomWalk : Chance {
 public:
  explicit RandomWalk(unsigned seed) : Chance(seed) {
    menu.others = [this](const std::string& said) {
      clicks += said.starts_with("Clicked") ? 1 : 0;
      if (said == "load" || said.starts_with("unfold")) return;
      // Only so often, or no course of events would ever end undisturbed.
      if (depth_ >= 3 || !Once(4)) return;
      ++depth_;
      Act();
      --depth_;
    };
  }

  void Act() {
    const std::string place = Once(3) ? OneOf({"bar", "box"}) : Said(Point{Any(90) - 8, Any(190) - 8});
    static const std::vector<std::string> acts = Split(
        "popup; popup; popup plain; allow; allow not; unload; query 2; query 3; items i-di; items -; tick 14;"
        "hover @; move @; down @; down @; down @; up @; up @; up @; down bar; down bar; leave; lose; key 26;"
        "key 28; key 1b; deactivate; act 0; act 3",
        ';');
    std::string act = OneOf(acts);
    if (act.ends_with('@'))
      act.replace(act.size() - 1, 1, place + OneOf({" left", " left", " middle", " right"}));
    menu(act);
  }

  /// What holds whenever nobody is acting.
  void Check() {
    const MenuState state = menu.input.State();
    EXPECT_EQ(menu.visible, state != MenuState::Hidden);
    EXPECT_EQ(menu.window, menu.parts);
    EXPECT_EQ(menu.owned, state == MenuState::Floating);
    EXPECT_TRUE(state != MenuState::Docked || (menu.captured && menu.timer));
    EXPECT_TRUE(state == MenuState::Docked || !menu.tip);
    EXPECT_FALSE(state == MenuState::Hidden && menu.captured);
    EXPECT_FALSE((state == MenuState::Floating || !menu.parts) && menu.timer);
    EXPECT_GE(menu.hideMenus, menu.unloads);
    EXPECT_TRUE(!menu.input.CloseBoxPushed() || menu.captured || state == MenuState::Floating);
    floats += state == MenuState::Floating ? 1 : 0;
  }

  ScriptedMenu menu{""};
  int clicks = 0;
  int floats = 0;  ///< Steps with the menu torn off.

 private:
  int depth_ = 0;
};

TEST(MenuRandomWalk, KeepsItsPromises) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomWalk walk(seed);
    for (int step = 0; step < 1000; ++step) {
      walk.Act();
      walk.Check();
      ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
    }
    // It did get around.
    EXPECT_GT(walk.clicks, 5);
    EXPECT_GT(walk.floats, 5);
    EXPECT_GT(walk.menu.unloads, 25);
  }
}

}  // namespace
}  // namespace snip::test
