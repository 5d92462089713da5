#include "ui/menu/MenuInput.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "tests/unit/Script.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

/// For std::visit.
template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

std::string Said(Point at) {
  return std::to_string(at.x) + "," + std::to_string(at.y);
}

std::string Said(const MenuEffect::Any& effect) {
  using namespace MenuEffect;
  return std::visit(
      Overloaded{
          [](const PaintRow& e) { return "paint row " + std::to_string(e.index); },
          [](const PaintDragBar&) { return std::string("paint drag bar"); },
          [](const PaintCloseBox&) { return std::string("close box"); },
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
bool GivesControl(const MenuEffect::Any& effect) {
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
        if (log.back() == "close box") log.back() += input.CloseBoxPushed() ? " in" : " out";
        if (GivesControl(effect) && others) others(log.back());
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  /// What was done since the last call.
  std::vector<std::string> Log() { return std::exchange(log, {}); }

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
  std::vector<std::string> log;

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

/// A menu that obeys commands.
class ScriptedMenu {
 public:
  /// `kinds` as for `MenuOf`. Before it, "o" and a blank open the menu docked and "f" and a blank torn off.
  explicit ScriptedMenu(const std::string& kinds)
      : menu_(kinds.size() > 1 && kinds[1] == ' ' ? kinds.substr(2) : kinds) {
    menu_.others = [this](const std::string& effect) {
      const auto reaction = reactions_.find(effect.substr(0, effect.find(" at ")));
      if (reaction == reactions_.end()) return;
      const std::vector<std::string> commands = Split(reaction->second, '&');
      reactions_.erase(reaction);
      for (const std::string& command : commands) Obey(command);
    };
    if (kinds.starts_with("o ")) menu_.Open();
    if (kinds.starts_with("f ")) menu_.Float();
  }

  /// Obeys, and says what was done or what was asked for.
  std::string operator()(const std::string& command) {
    const std::string answer = Obey(command);
    std::string done = Joined(menu_.Log());
    // How every menu that is unloaded ends.
    const std::string unloading = "unowned, stop timer, release parts, pending events, HideMenu, destroy";
    if (const std::size_t at = done.find(unloading); at != std::string::npos) {
      done.replace(at, unloading.size(), "unload");
    }
    return answer.empty() ? done : answer;
  }

 private:
  /// A place by its name, by an item's index or by its pixels.
  Point Place(const std::string& name) const {
    if (name == "bar") return MenuUnderTest::kBar;
    if (name == "out") return MenuUnderTest::kOutside;
    if (name == "box") return MenuUnderTest::kCloseBox;
    const std::size_t comma = name.find(',');
    if (comma == std::string::npos) return menu_.On(std::stoi(name));
    return {std::stoi(name.substr(0, comma)), std::stoi(name.substr(comma + 1))};
  }

  std::string Obey(const std::string& command) {
    std::istringstream in(command);
    std::string verb;
    std::string first;
    std::string button;
    std::string shift;
    in >> verb >> first >> button >> shift;
    const int pressed = button == "right"    ? MouseButton::kRight
                        : button == "middle" ? MouseButton::kMiddle
                        : button == "none"   ? 0
                                             : MouseButton::kLeft;
    const std::map<std::string, std::function<void()>> verbs = {
        {"popup",
         [&] {
           PopupRequest request = menu_.Request(first != "plain");
           if (button == "here") request.cursor = kCorner;
           menu_.Apply(menu_.input.Popup(request));
         }},
        {"hover", [&] { menu_.Move(Place(first)); }},
        {"move", [&] { menu_.Move(Place(first), pressed); }},
        {"down", [&] { menu_.Down(Place(first), pressed, shift == "shift"); }},
        {"up", [&] { menu_.Up(Place(first), pressed); }},
        {"leave", [&] { menu_.Apply(menu_.input.MouseLeave()); }},
        {"tick", [&] { menu_.Tick(std::stoi(first)); }},
        {"key",
         [&] { menu_.Apply(menu_.input.KeyDown(static_cast<MenuKey>(std::stoi(first, nullptr, 16)))); }},
        {"act", [&] { menu_.Apply(menu_.input.DoDefaultAction(std::stoi(first))); }},
        {"lose",
         [&] {
           menu_.captured = false;
           menu_.Apply(menu_.input.CaptureLost());
         }},
        {"deactivate", [&] { menu_.Apply(menu_.input.Deactivated()); }},
        {"query", [&] { menu_.Apply(menu_.input.QueryUnload(static_cast<CloseReason>(std::stoi(first)))); }},
        {"unload", [&] { menu_.Apply(menu_.input.Unload()); }},
        {"items", [&] { menu_.items = MenuOf(first); }},
        {"add",
         [&] { menu_.items.Add({.Caption = "Cut", .ID = std::stoi(first)}, menu_.metrics, SevenPixels); }},
        {"height", [&] { menu_.metrics.ItemHeight = std::stoi(first) * 15; }},
        {"allow", [&] { menu_.input.AllowRightClick = true; }},
        // What others do when they next see an effect; "&" stands between their commands.
        {"on",
         [&] {
           const std::vector<std::string> parts = Split(command.substr(3), ':');
           reactions_[parts.at(0)] = parts.at(1);
         }},
    };
    if (verb == "hot") return std::to_string(menu_.input.HotItem());
    if (verb == "state") return State();
    if (verb == "ended") return std::to_string(menu_.hideMenus) + " of " + std::to_string(menu_.unloads);
    verbs.at(verb)();
    return "";
  }

  std::string State() const {
    const MenuInput& input = menu_.input;
    std::string state = input.State() == MenuState::Hidden   ? "hidden"
                        : input.State() == MenuState::Docked ? "docked"
                                                             : "floating";
    if (input.Mode().allowDetach) state += " detachable";
    if (input.Mode().floating) state += " torn";
    if (input.CloseBoxPushed()) state += " pushed";
    if (menu_.parts) state += " loaded";
    if (menu_.window) state += " window";
    if (menu_.captured) state += " captured";
    if (menu_.timer) state += " timer";
    return state;
  }

  MenuUnderTest menu_;
  std::map<std::string, std::string> reactions_;
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

/// What a user, the system and an owner can do, at random. An owner also acts in events, though not
/// forever.
class RandomWalk : Chance {
 public:
  explicit RandomWalk(unsigned seed) : Chance(seed) {
    Refill();
    menu_.others = [this](const std::string& effect) {
      if (effect.starts_with("Clicked")) CheckClicked(effect);
      if (effect == "load" || effect.starts_with("unfold") || effect == "destroy") return;
      // Only so often, or no course of events would ever end undisturbed.
      if (depth_ >= 3 || !Once(4)) return;
      ++depth_;
      if (Once(2)) {
        OwnerActs();
      } else {
        UserActs();
      }
      --depth_;
    };
  }

  void Step() {
    tornOff_ = menu_.input.State() == MenuState::Floating;
    if (menu_.input.State() == MenuState::Hidden && Once(2)) {
      endAllowed_ = true;
      menu_.Popup();
    } else if (Once(12)) {
      OwnerActs();
    } else {
      UserActs();
    }
    Check();
    menu_.Log();
  }

  int clicks() const { return clicks_; }
  int floats() const { return floats_; }
  int unloads() const { return menu_.unloads; }

 private:
  /// Items that can be clicked have even IDs.
  void Refill() {
    menu_.items.Clear();
    const int count = Any(7);
    for (int i = 0; i < count; ++i) {
      MenuItem item;
      const int kind = Any(4);
      item.Caption = kind == 0 ? "-" : "Item";
      item.Enabled = kind != 1;
      lastId_ += 2;
      item.ID = item.CanBeClicked() ? lastId_ : lastId_ + 1;
      menu_.items.Add(item, menu_.metrics, SevenPixels);
    }
  }

  void CheckClicked(const std::string& effect) {
    ++clicks_;
    EXPECT_EQ(std::stoi(effect.substr(8)) % 2, 0) << effect;
  }

  void OwnerActs() {
    switch (Any(6)) {
      case 0:
        Refill();
        break;
      case 1:
      case 2:
      case 3:
        endAllowed_ = true;
        menu_.Popup(!Once(4));
        break;
      case 4:
        menu_.input.AllowRightClick = Once(2);
        break;
      default:
        endAllowed_ = true;
        menu_.Apply(Once(2) ? menu_.input.Unload() : menu_.input.QueryUnload(CloseReason::WindowsEnds));
    }
  }

  Point Somewhere() {
    switch (Any(6)) {
      case 0:
        return MenuUnderTest::kBar;
      case 1:
        return MenuUnderTest::kCloseBox;
      default:
        return {Any(90) - 8, Any(190) - 8};
    }
  }

  void UserActs() {
    const int button = 1 << (Any(5) < 3 ? 0 : Any(3));
    switch (Any(12)) {
      case 0:
      case 1:
      case 2:
        menu_.Move(Somewhere(), Once(2) ? 0 : button);
        break;
      case 3:
      case 4:
        menu_.Down(Somewhere(), button, Once(2));
        break;
      case 5:
      case 6: {
        const Point at = Somewhere();
        // The only thing a user can do to end a torn-off menu.
        endAllowed_ = endAllowed_ || menu_.input.Layout().OnCloseBox(at);
        menu_.Up(at, button);
        break;
      }
      case 7:
        menu_.Apply(menu_.input.KeyDown(Once(8) ? MenuKey::Escape : Once(2) ? MenuKey::Up : MenuKey::Down));
        break;
      case 8:
        menu_.Tick(Any(15));
        break;
      case 9:
        if (Once(5)) menu_.Apply(menu_.input.Deactivated());
        menu_.Apply(menu_.input.QueryUnload(CloseReason::TaskManager));
        break;
      case 10:
        if (Once(5)) {
          menu_.captured = false;
          menu_.Apply(menu_.input.CaptureLost());
        }
        menu_.Apply(menu_.input.MouseLeave());
        break;
      default:
        menu_.Apply(menu_.input.DoDefaultAction(Any(8) - 1));
    }
  }

  /// What holds whenever nobody is acting.
  void Check() {
    const MenuState state = menu_.input.State();
    EXPECT_EQ(menu_.visible, state != MenuState::Hidden);
    EXPECT_EQ(menu_.window, menu_.parts);
    EXPECT_EQ(menu_.owned, state == MenuState::Floating);
    if (state == MenuState::Docked) {
      EXPECT_TRUE(menu_.captured);
      EXPECT_TRUE(menu_.timer);
    } else {
      EXPECT_FALSE(menu_.tip);
    }
    if (state == MenuState::Hidden) {
      EXPECT_FALSE(menu_.captured);
    }
    if (state == MenuState::Floating) {
      EXPECT_FALSE(menu_.timer);
    }
    if (!menu_.parts) {
      EXPECT_FALSE(menu_.timer);
    }
    EXPECT_GE(menu_.hideMenus, menu_.unloads);
    if (menu_.input.CloseBoxPushed()) {
      EXPECT_TRUE(menu_.captured || state == MenuState::Floating);
    }
    if (tornOff_ && !endAllowed_) {
      EXPECT_EQ(state, MenuState::Floating);
    }
    if (!tornOff_ && state == MenuState::Floating) ++floats_;
    endAllowed_ = false;
  }

  MenuUnderTest menu_{""};
  int lastId_ = 0;
  int depth_ = 0;
  bool tornOff_ = false;
  bool endAllowed_ = false;
  int clicks_ = 0;
  int floats_ = 0;
};

TEST(MenuRandomWalk, KeepsItsPromises) {
  int clicks = 0;
  int floats = 0;
  int unloads = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    RandomWalk walk(seed);
    for (int step = 0; step < 1000; ++step) {
      walk.Step();
      ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
    }
    clicks += walk.clicks();
    floats += walk.floats();
    unloads += walk.unloads();
  }
  // The walks did get around.
  EXPECT_GT(clicks, 200);
  EXPECT_GT(floats, 100);
  EXPECT_GT(unloads, 1000);
}

}  // namespace
}  // namespace snip::test
