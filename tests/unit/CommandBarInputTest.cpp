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

/// A bar without a window, which writes down what is asked of it.
class LoggedBar : public BarPort {
 public:
  void PaintButton(int button, const ButtonLook& look) override {
    Log("paint " + std::to_string(button) + " " + Said(look));
  }
  void PaintBar() override { Log("paint bar"); }
  void PlayClick() override { Log("click sound"); }
  void ShowTip(const std::string& text, Point at) override { Log("tip \"" + text + "\" at " + Said(at)); }
  void HideTip() override { Log("hide tip"); }
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

 protected:
  virtual bool Log(const std::string& said) = 0;

  CommandBarButtons buttons_{WesternLetterCase()};
  CommandBarProperties properties_;
  CommandBarInput input_{buttons_, properties_, *this};
};

/// A bar that obeys commands.
class ScriptedBar : LoggedBar {
 public:
  explicit ScriptedBar(std::string types) {
    const bool shown = types[0] != '!';
    std::vector<ButtonType> list;
    for (const char type : types.substr(shown ? 0 : 1)) list.push_back(TypeOf(type));
    buttons_ = BarOf(list);
    if (shown) input_.Show(true);
    log_.clear();
  }

  /// Obeys, and says what was done or what was asked for.
  std::string operator()(const std::string& command) {
    const std::string answer = Obey(command);
    const std::string done = Joined(std::exchange(log_, {}));
    return answer.empty() ? done : answer;
  }

 private:
  static ButtonType TypeOf(char letter) { return static_cast<ButtonType>(std::string("pmtd-").find(letter)); }

  bool Log(const std::string& said) override {
    log_.push_back(said);
    if (said == actsOn_) {
      for (const std::string& command : std::exchange(acts_, {})) Obey(command);
    }
    return true;
  }

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
      for (; times > 0; --times) input_.tHitTest_Timer(Point{x, y}, Point{x + 1000, y + 500});
    };
    if (verb.empty()) return "";
    if (verb == "tick") return tick(1), "";
    if (verb == "rest") return tick(number()), "";
    if (verb == "elsewhere") return input_.tHitTest_Timer(std::nullopt, Point{5, 5}), "";
    if (verb == "down") return input_.MouseDown(mouse()), "";
    if (verb == "move") return input_.MouseMove(mouse()), "";
    if (verb == "up") return input_.MouseUp(mouse()), "";
    if (verb == "dbl") return input_.DblClick(), "";
    if (verb == "lost") return input_.CaptureLost(), "";
    if (verb == "run") return input_.Show(true), "";
    if (verb == "design") return input_.Show(false), "";
    if (verb == "freeze") return input_.Freeze(), "";
    if (verb == "thaw") return input_.Thaw(), "";
    if (verb == "quiet" || verb == "loud") return properties_.SoundEffects = verb == "loud", "";
    if (verb == "hot") return std::to_string(input_.HotButton());
    if (verb == "pressed") return std::to_string(input_.PressedButton());
    if (verb == "running") return input_.InRunMode() ? "yes" : "no";
    if (verb == "key") {
      const std::string key = text();
      return input_.AccessKeyPress(static_cast<std::int16_t>(key.size() == 1 ? key[0] : std::stoi(key))), "";
    }
    if (verb == "add") {
      char type = 0;
      in >> type;
      const auto display = static_cast<DisplayType>(number());
      buttons_.Add({.Caption = text(), .ButtonType = TypeOf(type), .DisplayType = display}, Metrics());
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
    if (verb == "act") return input_.DoDefaultAction(index, static_cast<ButtonPart>(number())), "";
    if (verb == "gray") return buttons_.SetGrayed(index, true), "";
    if (verb == "remove") return buttons_.Remove(index, Metrics()), "";
    if (verb == "shift") return buttons_.Move(index, number(), Metrics()), "";
    if (verb == "set") return buttons_.SetState(index, number()), "";
    if (verb == "caption") return buttons_.SetCaption(index, text(), Metrics()), "";
    if (verb == "state") return std::to_string(buttons_.State(index));
    throw std::invalid_argument(command);
  }

  std::vector<std::string> log_;
  std::string actsOn_;
  std::vector<std::string> acts_;
};

TEST(CommandBarInput, ObeysTheScripts) {
  PlayScripts<ScriptedBar>("command-bar.txt");
}

/// A container that does whatever it likes whenever it likes, and a screen that remembers how each button was
/// last drawn.
class RandomWalk : LoggedBar, Chance {
 public:
  explicit RandomWalk(unsigned seed) : Chance(seed) {
    input_.Show(true);
    for (int i = 0; i < 6; ++i) AddButton();
  }

  void Run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) Step();
    // In the end everything comes to rest, the container too.
    depth_ = kDeepest;
    frozen_ = false;
    input_.Thaw();
    LoseCapture();
    input_.tHitTest_Timer(std::nullopt, {});
    EXPECT_EQ(input_.HotButton(), -1);
    EXPECT_EQ(input_.PressedButton(), -1);
    EXPECT_FALSE(tip_);
    EXPECT_FALSE(HoveredButtonIsThere());
    for (const BarButton& button : buttons_.All()) {
      EXPECT_EQ(Said(drawn_[button.Id]), Said(RedrawLook(button)))
          << "type " << static_cast<int>(button.ButtonType);
    }
  }

  /// How often an effect was seen, so that a walk is known to have gone somewhere.
  std::map<std::string, int> seen;

 private:
  static constexpr int kDeepest = 3;  ///< So many events may be handled within one another.

  bool HoveredButtonIsThere() const { return buttons_.IndexOf(hovered_) >= 0; }
  BarMetrics SomeMetrics() { return Metrics(26, dockable_); }
  Point SomePoint() {
    const int width = buttons_.Count() == 0 ? 20 : buttons_.All().back().Right + 20;
    return {Any(width + 5) - 5, Once(8) ? Any(60) - 10 : 10};
  }

  void Step() {
    if (Once(3)) place_ = SomePoint();
    const auto button = static_cast<std::int16_t>(1 << Any(2));
    const int kind = Any(16);
    if (kind < 4) {
      input_.tHitTest_Timer(Once(12) ? std::nullopt : std::optional(place_), place_);
    } else if (kind < 5) {
      for (int i = 0; i < 9; ++i) input_.tHitTest_Timer(place_, place_);
    } else if (kind < 8) {
      held_ = static_cast<std::int16_t>(held_ | button);
      input_.MouseDown({button, 0, place_});
    } else if (kind < 10) {
      input_.MouseMove({Once(10) ? std::int16_t{0} : held_, 0, place_});
    } else if (kind < 13) {
      held_ = static_cast<std::int16_t>(held_ & ~button);
      input_.MouseUp({button, 0, place_});
    } else if (kind < 14) {
      Once(2) ? input_.AccessKeyPress(static_cast<std::int16_t>('a' + Any(6)))
              : input_.DoDefaultAction(Any(10) - 1);
    } else if (kind < 15) {
      Once(3) ? LoseCapture() : input_.DblClick();
    } else {
      ChangeSomething();
    }
  }

  void ChangeSomething() {
    const int index = Any(buttons_.Count() + 2) - 1;
    switch (Any(9)) {
      case 0:
        return AddButton();
      case 1:
        return Apply(buttons_.Remove(index, SomeMetrics()));
      case 2:
        Apply(buttons_.Move(index, Any(8), SomeMetrics()));
        return PaintBar();  // as the one who moves a button does
      case 3:
      case 4:
        return Apply(buttons_.SetGrayed(index, Once(2)));
      case 5:
        if (buttons_.Find(index) != nullptr && buttons_.Find(index)->Is(kToggle)) {
          Apply(buttons_.SetState(index, Any(2)));
        }
        return;
      case 6:
        return Apply(
            buttons_.SetCaption(index, std::string(static_cast<std::size_t>(Any(4)), 'x'), SomeMetrics()));
      case 7:
        frozen_ = Once(3);
        return frozen_ ? input_.Freeze() : input_.Thaw();
      default:
        properties_.SoundEffects = Once(2);
        dockable_ = Once(2);
        return Apply(buttons_.LayOut(SomeMetrics()));
    }
  }

  void AddButton() {
    if (buttons_.Count() >= 8) return;
    const std::string caption = {'&', static_cast<char>('a' + Any(5))};
    Apply(buttons_.Add({.Caption = caption,
                        .Picture = SomePicture(),
                        .PictureSize = {16, 16},
                        .ButtonType = static_cast<ButtonType>(Any(5)),
                        .DisplayType = static_cast<DisplayType>(Any(3)),
                        .GrayBtn = Once(4)},
                       SomeMetrics()));
  }

  void Apply(const BarChange& change) {
    if (change.redrawButton) PaintButton(*change.redrawButton, RedrawLook(Button(*change.redrawButton)));
    if (change.refresh) PaintBar();
  }

  const BarButton& Button(int index) {
    const BarButton* button = buttons_.Find(index);
    EXPECT_NE(button, nullptr) << index;
    static const BarButton kNone;
    return button != nullptr ? *button : kNone;
  }

  void PaintButton(int button, const ButtonLook& look) override {
    drawn_[Button(button).Id] = look;
    LoggedBar::PaintButton(button, look);
  }
  void PaintBar() override {
    const std::vector<ButtonLook> looks = PaintLooks(buttons_.All(), true);
    for (int i = 0; i < buttons_.Count(); ++i) drawn_[Button(i).Id] = looks[static_cast<std::size_t>(i)];
  }
  bool Raise(BarMouseEvent event, const BarMouse& mouse) override {
    return LoggedBar::Raise(event, mouse) && Container();
  }
  bool RaiseDblClick() override { return LoggedBar::RaiseDblClick() && Container(); }
  bool Raise(BarButtonEvent event, int index) override {
    LoggedBar::Raise(event, index);
    const BarButton button = Button(index);
    if (event == BarButtonEvent::MouseHover) {
      EXPECT_EQ(input_.HotButton(), index);
      EXPECT_FALSE(HoveredButtonIsThere()) << "the last one was not left";
      hovered_ = button.Id;
    } else if (event == BarButtonEvent::MouseLeave) {
      EXPECT_NE(input_.HotButton(), index);
      if (HoveredButtonIsThere()) {
        EXPECT_EQ(hovered_, button.Id);
      }
      hovered_ = ButtonId::None;
    } else if (event == BarButtonEvent::Dropdown) {
      EXPECT_TRUE(button.Is(kMenu) || button.Is(kDropDown));
    }
    const bool hovers = event == BarButtonEvent::MouseHover || event == BarButtonEvent::MouseLeave;
    EXPECT_FALSE(hovers && frozen_);
    EXPECT_TRUE(event == BarButtonEvent::MouseLeave || button.Enabled);
    EXPECT_FALSE(button.Is(kSeparator) && event != BarButtonEvent::ButtonClicked);
    return Container();
  }
  void PlayClick() override {
    EXPECT_TRUE(properties_.SoundEffects);
    LoggedBar::PlayClick();
  }
  void ShowTip(const std::string& text, Point at) override {
    EXPECT_FALSE(std::exchange(tip_, true) || frozen_);
    EXPECT_EQ(Button(input_.HotButton()).DisplayType, DisplayType::Picture);
    LoggedBar::ShowTip(text, at);
  }
  void HideTip() override {
    EXPECT_TRUE(std::exchange(tip_, false));
    LoggedBar::HideTip();
  }
  bool TakeCapture() override {
    captured_ = true;
    return LoggedBar::TakeCapture();
  }
  void ReleaseCapture() override {
    EXPECT_TRUE(captured_);
    LoggedBar::ReleaseCapture();
    LoseCapture();  // the platform says so at once
  }
  void StopHoverTimer() override { ADD_FAILURE() << "the bar stays in run mode"; }

  bool Log(const std::string& said) override {
    ++seen[said.substr(0, said.find(' '))];
    return true;
  }

  void LoseCapture() {
    captured_ = false;
    input_.CaptureLost();
  }

  /// The container's turn, in an event.
  bool Container() {
    if (depth_ >= kDeepest || !Once(3)) return true;
    ++depth_;
    for (int i = Any(4); i > 0; --i) Once(2) ? ChangeSomething() : Step();
    --depth_;
    return true;
  }

  Point place_;
  std::int16_t held_ = 0;
  bool dockable_ = false;
  bool captured_ = false;
  bool frozen_ = false;
  bool tip_ = false;
  int depth_ = 0;
  ButtonId hovered_ = ButtonId::None;  ///< Reported by MouseHover and not left yet, unless it was removed.
  std::map<ButtonId, ButtonLook> drawn_;
};

TEST(CommandBarRandomTest, WhateverHappensTheBarKeepsItsPromises) {
  std::map<std::string, int> seen;
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    RandomWalk walk(seed);
    walk.Run(300);
    if (HasFailure()) return;
    for (const auto& [effect, count] : walk.seen) seen[effect] += count;
  }
  for (const char* effect : {"ButtonClicked", "Dropdown", "MouseHover", "MouseLeave", "tip", "hide", "click",
                             "take", "release", "DblClick", "paint"}) {
    EXPECT_GT(seen[effect], 100) << effect;
  }
}

}  // namespace
}  // namespace snip::test
