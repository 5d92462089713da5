#include "ui/commandbar/CommandBarInput.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/Script.h"
#include "tests/unit/TestBar.h"

namespace snip::test {
namespace {

constexpr auto kMenu = ButtonType::Menu;
constexpr auto kToggle = ButtonType::Toggle;
constexpr auto kDropDown = ButtonType::DropDown;
constexpr auto kSeparator = ButtonType::Separator;

/// "raised" for both parts, "sunken|raised" for push and arrow part; "shifted" and "light" as they are.
std::string Said(const ButtonLook& look) {
  constexpr const char* kEdges[] = {"flat", "raised", "sunken"};
  std::string said = kEdges[static_cast<int>(look.push)];
  if (look.arrow != look.push) said += std::string("|") + kEdges[static_cast<int>(look.arrow)];
  return said + (look.shifted ? " shifted" : "") + (look.lightened ? " light" : "");
}

std::string Said(Point at) {
  return std::to_string(at.x) + "," + std::to_string(at.y);
}

/// A bar that obeys commands, without a window: it writes down what is asked of one.
class ScriptedBar : BarPort {
 public:
  /// A letter for each button's type; behind "!" the bar is not shown yet.
  explicit ScriptedBar(std::string types) {
    const bool shown = types[0] != '!';
    std::vector<ButtonType> list;
    for (const char type : types.substr(shown ? 0 : 1)) list.push_back(TypeOf(type));
    buttons = BarOf(list);
    if (shown) input.Show(true);
    log_.clear();
  }
  ScriptedBar(const ScriptedBar&) = delete;
  ScriptedBar& operator=(const ScriptedBar&) = delete;

  /// Obeys, and says what was done or what was asked for.
  std::string operator()(const std::string& command) {
    const std::string answer = Obey(command);
    const std::string done = Joined(std::exchange(log_, {}));
    return answer.empty() ? done : answer;
  }

  /// What a window does with a change.
  void Apply(const BarChange& change) {
    if (change.redrawButton)
      PaintButton(*change.redrawButton, RedrawLook(*buttons.Find(*change.redrawButton)));
    if (change.refresh) PaintBar();
  }

  CommandBarButtons buttons{WesternLetterCase()};
  CommandBarProperties properties;
  CommandBarInput input{buttons, properties, *this};
  /// Called with what is logged; what the scripts' "on" says comes first.
  std::function<void(const std::string&)> others;

 private:
  static ButtonType TypeOf(char letter) { return static_cast<ButtonType>(std::string("pmtd-").find(letter)); }

  bool Log(const std::string& said) {
    log_.push_back(said);
    if (said == actsOn_) {
      for (const std::string& command : std::exchange(acts_, {})) Obey(command);
    }
    if (others) others(said);
    return true;
  }

  void PaintButton(int button, const ButtonLook& look) override {
    Log("paint " + std::to_string(button) + " " + Said(look));
  }
  void PaintBar() override { Log("paint bar"); }
  void PlayClick() override { Log("click sound"); }
  void ShowTip(const std::string& text, Point at) override {
    EXPECT_FALSE(std::exchange(tip_, true));
    Log("tip \"" + text + "\" at " + Said(at));
  }
  void HideTip() override {
    EXPECT_TRUE(std::exchange(tip_, false));
    Log("hide tip");
  }
  void StartHoverTimer() override { Log("start timer"); }
  void StopHoverTimer() override { Log("stop timer"); }
  bool TakeCapture() override { return Log("take capture"); }
  void ReleaseCapture() override { Log("release capture"); }
  bool Raise(BarMouseEvent event, const BarMouse& mouse) override {
    constexpr const char* kNames[] = {"MouseDown ", "MouseMove ", "MouseUp "};
    return Log(kNames[static_cast<int>(event)] + std::to_string(mouse.Button) + " " +
               std::to_string(mouse.Shift) + " " + Said(mouse.at));
  }
  bool Raise(BarButtonEvent event, int button) override {
    constexpr const char* kNames[] = {"ButtonClicked ", "Dropdown ", "MouseHover ", "MouseLeave "};
    return Log(kNames[static_cast<int>(event)] + std::to_string(button));
  }
  bool RaiseDblClick() override { return Log("DblClick"); }

  std::string Obey(const std::string& command) {
    std::istringstream in(command);
    std::string verb;
    in >> verb;
    const auto number = [&in](int otherwise = 0) {
      int value = 0;
      return in >> value ? value : otherwise;
    };
    const auto text = [&in] {
      std::string rest;
      std::getline(in >> std::ws, rest);
      return rest;
    };
    // Defaults: left button, no Shift, in the middle of the bar's height.
    const auto mouse = [&] {
      const int x = number();
      const auto button = static_cast<std::int16_t>(number(1));
      const auto shift = static_cast<std::int16_t>(number());
      return BarMouse{button, shift, {x, number(10)}};
    };
    const auto tick = [&](int times) {
      const int x = number();
      const int y = number(10);
      for (; times > 0; --times) input.tHitTest_Timer(Point{x, y}, Point{x + 1000, y + 500});
    };
    if (verb.empty()) return "";
    if (verb == "tick") return tick(1), "";
    if (verb == "rest") return tick(number()), "";
    if (verb == "elsewhere") return input.tHitTest_Timer(std::nullopt, Point{5, 5}), "";
    if (verb == "down") return input.MouseDown(mouse()), "";
    if (verb == "move") return input.MouseMove(mouse()), "";
    if (verb == "up") return input.MouseUp(mouse()), "";
    if (verb == "dbl") return input.DblClick(), "";
    if (verb == "lost") return input.CaptureLost(), "";
    if (verb == "run") return input.Show(true), "";
    if (verb == "design") return input.Show(false), "";
    if (verb == "freeze") return input.Freeze(), "";
    if (verb == "thaw") return input.Thaw(), "";
    if (verb == "quiet" || verb == "loud") return properties.SoundEffects = verb == "loud", "";
    if (verb == "hot") return std::to_string(input.HotButton());
    if (verb == "pressed") return std::to_string(input.PressedButton());
    if (verb == "running") return input.InRunMode() ? "yes" : "no";
    if (verb == "key") {
      const std::string key = text();
      return input.AccessKeyPress(static_cast<std::int16_t>(key.size() == 1 ? key[0] : std::stoi(key))), "";
    }
    if (verb == "add") {
      char type = 0;
      in >> type;
      const auto display = static_cast<DisplayType>(number());
      buttons.Add({.Caption = text(), .ButtonType = TypeOf(type), .DisplayType = display}, Metrics());
      return "";
    }
    // What the container does when it first sees that; "&" separates its commands.
    if (verb == "on") {
      const std::vector<std::string> parts = Split(text(), ':');
      actsOn_ = parts.at(0);
      acts_ = Split(parts.at(1), '&');
      return "";
    }
    const int index = number();
    if (verb == "act") return input.DoDefaultAction(index, static_cast<ButtonPart>(number())), "";
    if (verb == "gray") return buttons.SetGrayed(index, true), "";
    if (verb == "remove") return buttons.Remove(index, Metrics()), "";
    if (verb == "shift") return buttons.Move(index, number(), Metrics()), "";
    if (verb == "set") return buttons.SetState(index, number()), "";
    if (verb == "caption") return buttons.SetCaption(index, text(), Metrics()), "";
    if (verb == "state") return std::to_string(buttons.State(index));
    throw std::invalid_argument(command);
  }

  bool tip_ = false;
  std::vector<std::string> log_;
  std::string actsOn_;
  std::vector<std::string> acts_;
};

TEST(CommandBarInput, ObeysTheScripts) {
  PlayScripts<ScriptedBar>("command-bar.txt");
}

/// A user, a system and a container that do whatever they like whenever they like, and a screen that
/// remembers how each button was last drawn.
class RandomWalk : Chance {
 public:
  explicit RandomWalk(unsigned seed) : Chance(seed) {
    bar_.others = [this](const std::string& said) { Hear(said); };
    for (int i = 0; i < 6; ++i) AddButton();
  }

  void Run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) Step();
    // In the end everything comes to rest, the container too.
    depth_ = kDeepest;
    for (const char* command : {"thaw", "lost", "elsewhere"}) bar_(command);
    EXPECT_EQ(bar_.input.HotButton(), -1);
    EXPECT_EQ(bar_.input.PressedButton(), -1);
    EXPECT_FALSE(HoveredButtonIsThere());
    for (const BarButton& button : bar_.buttons.All()) {
      EXPECT_EQ(drawn_[button.Id], Said(RedrawLook(button)))
          << "type " << static_cast<int>(button.ButtonType);
    }
  }

  std::map<std::string, int> seen;  ///< How often what was asked of the window.

 private:
  static constexpr int kDeepest = 3;  ///< So many events may be handled within one another.

  bool HoveredButtonIsThere() const { return bar_.buttons.IndexOf(hovered_) >= 0; }

  void Step() {
    if (Once(16)) return Change();
    const int width = bar_.buttons.Count() == 0 ? 20 : bar_.buttons.All().back().Right + 20;
    if (Once(3)) place_ = {Any(width + 5) - 5, Once(8) ? Any(60) - 10 : 10};
    const std::string x = std::to_string(place_.x), y = std::to_string(place_.y);
    const std::string mouse = " " + x + " " + std::to_string(1 + Any(2)) + " 0 " + y;
    const std::string tick = "tick " + x + " " + y, rest = "rest 9 " + x + " " + y;
    const std::string act = "act " + std::to_string(Any(10) - 1);
    const std::string other = OneOf({"elsewhere", "key a", "key b", "key c", act, act, "lost", "dbl"});
    bar_(OneOf({tick, tick, rest, "down" + mouse, "down" + mouse, "move" + mouse, "up" + mouse, other}));
  }

  /// The container changes something, and paints what is to be painted then.
  void Change() {
    CommandBarButtons& buttons = bar_.buttons;
    const int index = Any(buttons.Count() + 2) - 1;
    const BarButton* button = buttons.Find(index);
    const std::string caption(static_cast<std::size_t>(Any(4)), 'x');
    switch (Any(7)) {
      case 0:
        return AddButton();
      case 1:
        return bar_.Apply(buttons.Remove(index, Metrics()));
      case 2:
        bar_.Apply(buttons.Move(index, Any(8), Metrics()));
        return bar_.Apply({.refresh = true});  // as the one who moves a button does
      case 3:
        return bar_.Apply(buttons.SetGrayed(index, Once(2)));
      case 4:
        if (button != nullptr && button->Is(kToggle)) bar_.Apply(buttons.SetState(index, Any(2)));
        return;
      case 5:
        return bar_.Apply(buttons.SetCaption(index, caption, Metrics()));
      default:
        bar_(OneOf({"freeze", "thaw", "thaw", "quiet", "loud"}));
    }
  }

  void AddButton() {
    if (bar_.buttons.Count() >= 8) return;
    const std::string caption = {'&', static_cast<char>('a' + Any(5))};
    bar_.Apply(bar_.buttons.Add({.Caption = caption,
                                 .Picture = SomePicture(),
                                 .PictureSize = {16, 16},
                                 .ButtonType = static_cast<ButtonType>(Any(5)),
                                 .DisplayType = static_cast<DisplayType>(Any(3)),
                                 .GrayBtn = Once(4)},
                                Metrics()));
  }

  /// What the bar asks for must suit its buttons; an event gives the container its turn.
  void Hear(const std::string& said) {
    std::istringstream words(said);
    std::string what, look;
    int index = -1;
    words >> what >> index >> std::ws;
    std::getline(words, look);
    ++seen[what];
    if (said == "paint bar") {
      const std::vector<ButtonLook> looks = PaintLooks(bar_.buttons.All(), true);
      for (std::size_t i = 0; i < looks.size(); ++i) drawn_[bar_.buttons.All()[i].Id] = Said(looks[i]);
      return;
    }
    if (said == "release capture") bar_("lost");  // the platform says so at once
    EXPECT_TRUE(said != "click sound" || bar_.properties.SoundEffects);
    EXPECT_NE(said, "stop timer") << "the bar stays in run mode";
    if (what == "tip") {
      const BarButton* tipped = bar_.buttons.Find(bar_.input.HotButton());
      EXPECT_TRUE(tipped != nullptr && tipped->DisplayType == DisplayType::Picture);
    }
    const BarButton* button = bar_.buttons.Find(index);
    const bool hovers = what == "MouseHover", leaves = what == "MouseLeave", opens = what == "Dropdown";
    if (hovers || leaves || opens || what == "ButtonClicked" || what == "paint") {
      ASSERT_NE(button, nullptr) << said;
    }
    if (what == "paint") {
      drawn_[button->Id] = look;
    } else if (hovers) {
      EXPECT_FALSE(HoveredButtonIsThere()) << "the last one was not left";
      EXPECT_EQ(bar_.input.HotButton(), index);
      hovered_ = button->Id;
    } else if (leaves) {
      EXPECT_TRUE(!HoveredButtonIsThere() || hovered_ == button->Id);
      EXPECT_NE(bar_.input.HotButton(), index);
      hovered_ = ButtonId::None;
    }
    if (hovers || opens || what == "ButtonClicked") {
      EXPECT_TRUE(button->Enabled) << said;
    }
    EXPECT_TRUE(!opens || button->Is(kMenu) || button->Is(kDropDown));
    EXPECT_FALSE((hovers || leaves) && button->Is(kSeparator));
    const bool event = hovers || leaves || opens || what == "ButtonClicked" || what.starts_with("Mouse") ||
                       what == "DblClick";
    if (!event || depth_ >= kDeepest || !Once(3)) return;
    ++depth_;
    for (int i = Any(4); i > 0; --i) Once(2) ? Change() : Step();
    --depth_;
  }

  ScriptedBar bar_{"p"};
  Point place_;
  int depth_ = 0;
  ButtonId hovered_ = ButtonId::None;  ///< Reported by MouseHover and not left yet, unless it was removed.
  std::map<ButtonId, std::string> drawn_;
};

TEST(CommandBarRandomTest, WhateverHappensTheBarKeepsItsPromises) {
  std::map<std::string, int> seen;
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    RandomWalk walk(seed);
    walk.Run(300);
    if (HasFailure()) return;
    for (const auto& [what, count] : walk.seen) seen[what] += count;
  }
  // The walks did get around.
  for (const char* what : {"ButtonClicked", "Dropdown", "MouseLeave", "tip", "release", "DblClick"}) {
    EXPECT_GT(seen[what], 100) << what;
  }
}

}  // namespace
}  // namespace snip::test
