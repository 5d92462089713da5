#include "ui/commandbar/CommandBarInput.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <random>
#include <sstream>
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

/// For std::visit.
template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

std::string Said(Edge edge) {
  return edge == Edge::Flat ? "flat" : edge == Edge::Raised ? "raised" : "sunken";
}

/// "raised" for both parts, "sunken|raised" for push and arrow part; "shifted" and "light" as they are.
std::string Said(const ButtonLook& look) {
  std::string said = Said(look.push);
  if (look.arrow != look.push) said += "|" + Said(look.arrow);
  if (look.shifted) said += " shifted";
  if (look.lightened) said += " light";
  return said;
}

std::string Said(BarButtonEvent event) {
  switch (event) {
    case BarButtonEvent::ButtonClicked:
      return "ButtonClicked";
    case BarButtonEvent::Dropdown:
      return "Dropdown";
    case BarButtonEvent::MouseHover:
      return "MouseHover";
    case BarButtonEvent::MouseLeave:
      return "MouseLeave";
  }
  return "?";
}

std::string Said(BarMouseEvent event) {
  switch (event) {
    case BarMouseEvent::MouseDown:
      return "MouseDown";
    case BarMouseEvent::MouseMove:
      return "MouseMove";
    case BarMouseEvent::MouseUp:
      return "MouseUp";
  }
  return "?";
}

std::string Said(const BarEffect::Any& effect) {
  return std::visit(
      Overloaded{
          [](const BarEffect::PaintButton& e) {
            return "paint " + std::to_string(e.button) + " " + Said(e.look);
          },
          [](const BarEffect::PaintBar&) -> std::string { return "paint bar"; },
          [](const BarEffect::RaiseMouse& e) {
            return Said(e.event) + " " + std::to_string(e.mouse.Button) + " " +
                   std::to_string(e.mouse.Shift) + " " + std::to_string(e.mouse.at.x) + "," +
                   std::to_string(e.mouse.at.y);
          },
          [](const BarEffect::RaiseButton& e) { return Said(e.event) + " " + std::to_string(e.button); },
          [](const BarEffect::RaiseDblClick&) -> std::string { return "DblClick"; },
          [](const BarEffect::PlayClick&) -> std::string { return "click sound"; },
          [](const BarEffect::ShowTip& e) {
            return "tip \"" + e.text + "\" at " + std::to_string(e.screen.x) + "," +
                   std::to_string(e.screen.y);
          },
          [](const BarEffect::HideTip&) -> std::string { return "hide tip"; },
          [](const BarEffect::TakeCapture&) -> std::string { return "take capture"; },
          [](const BarEffect::ReleaseCapture&) -> std::string { return "release capture"; },
          [](const BarEffect::StartHoverTimer&) -> std::string { return "start timer"; },
          [](const BarEffect::StopHoverTimer&) -> std::string { return "stop timer"; },
      },
      effect);
}

/// A bar without a window that obeys commands: applies what comes out of the input by writing it down.
class ScriptedBar {
 public:
  /// `types` has a letter for each picture button: p, m, t, d, or "-" for a separator. The first
  /// takes the columns 3 to 24, the next 25 to 46; a drop-down button in the first place ends with its arrow,
  /// 25 to 32. After a "!" the bar is not shown.
  explicit ScriptedBar(std::string types) {
    const bool shown = types[0] != '!';
    std::vector<ButtonType> list;
    for (const char type : types.substr(shown ? 0 : 1)) list.push_back(TypeOf(type));
    buttons_ = BarOf(list);
    if (shown) input_.Show(true);
  }

  /// Obeys, and says what was done or what was asked for.
  std::string operator()(const std::string& command) {
    const std::string answer = Obey(command);
    const std::string done = Joined(std::exchange(log_, {}));
    return answer.empty() ? done : answer;
  }

 private:
  static ButtonType TypeOf(char letter) {
    return letter == 'm'   ? kMenu
           : letter == 't' ? kToggle
           : letter == 'd' ? kDropDown
           : letter == '-' ? kSeparator
                           : ButtonType::Push;
  }

  static BarMouse Mouse(std::istringstream& in) {
    // Defaults: left button, no Shift, in the middle of the bar's height.
    int values[] = {0, 1, 0, 10};
    for (int& value : values) {
      int given = 0;
      if (in >> given) value = given;
    }
    return {
        static_cast<std::int16_t>(values[1]), static_cast<std::int16_t>(values[2]), {values[0], values[3]}};
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
    if (verb == "tick" || verb == "rest") {
      const int times = verb == "rest" ? number() : 1;
      const int x = number();
      const int y = number(10);
      for (int i = 0; i < times; ++i) Run(input_.tHitTest_Timer(Point{x, y}, Point{x + 1000, y + 500}));
    } else if (verb == "elsewhere") {
      Run(input_.tHitTest_Timer(std::nullopt, Point{5, 5}));
    } else if (verb == "down") {
      Run(input_.MouseDown(Mouse(in)));
    } else if (verb == "move") {
      Run(input_.MouseMove(Mouse(in)));
    } else if (verb == "up") {
      Run(input_.MouseUp(Mouse(in)));
    } else if (verb == "dbl") {
      Run(input_.DblClick());
    } else if (verb == "lost") {
      Run(input_.CaptureLost());
    } else if (verb == "key") {
      const std::string key = text();
      Run(input_.AccessKeyPress(static_cast<std::int16_t>(key.size() == 1 ? key[0] : std::stoi(key))));
    } else if (verb == "act") {
      const int index = number();
      Run(input_.DoDefaultAction(index, static_cast<ButtonPart>(number())));
    } else if (verb == "run" || verb == "design") {
      Run(input_.Show(verb == "run"));
    } else if (verb == "freeze") {
      Run(input_.Freeze());
    } else if (verb == "thaw") {
      Run(input_.Thaw());
    } else if (verb == "quiet" || verb == "loud") {
      properties_.SoundEffects = verb == "loud";
    } else if (verb == "gray") {
      buttons_.SetGrayed(number(), true);
    } else if (verb == "remove") {
      buttons_.Remove(number(), Metrics());
    } else if (verb == "shift") {
      const int from = number();
      buttons_.Move(from, number(), Metrics());
    } else if (verb == "set") {
      const int index = number();
      buttons_.SetState(index, static_cast<std::int16_t>(number()));
    } else if (verb == "caption") {
      const int index = number();
      buttons_.SetCaption(index, text(), Metrics());
    } else if (verb == "add") {
      char type = 0;
      in >> type;
      const int display = number();
      buttons_.Add(
          {.Caption = text(), .ButtonType = TypeOf(type), .DisplayType = static_cast<DisplayType>(display)},
          Metrics());
    } else if (verb == "on") {
      // What the container does when it first sees an effect; "&" stands between its commands.
      const std::vector<std::string> parts = Split(text(), ':');
      actsOn_ = parts.at(0);
      act_ = [this, commands = Split(parts.at(1), '&')] {
        for (const std::string& next : commands) Obey(next);
      };
    } else if (verb == "hot") {
      return std::to_string(input_.HotButton());
    } else if (verb == "pressed") {
      return std::to_string(input_.PressedButton());
    } else if (verb == "state") {
      return std::to_string(buttons_.State(number()));
    } else if (verb == "running") {
      return input_.InRunMode() ? "yes" : "no";
    } else if (verb == "frozen") {
      return input_.Frozen() ? "yes" : "no";
    } else if (!verb.empty()) {
      ADD_FAILURE() << "no such command: " << command;
    }
    return "";
  }

  /// Applies a reaction to its end.
  void Run(BarReaction reaction) {
    for (;;) {
      for (const BarEffect::Any& effect : reaction.effects) {
        log_.push_back(Said(effect));
        if (log_.back() == actsOn_) std::exchange(act_, [] {})();
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  CommandBarButtons buttons_{WesternLetterCase()};
  CommandBarProperties properties_;
  CommandBarInput input_{buttons_, properties_};
  std::vector<std::string> log_;
  std::string actsOn_;
  std::function<void()> act_;
};

void Play(const std::vector<ScriptCase>& cases) {
  for (const ScriptCase& script : cases) {
    ScriptedBar bar(script.subject);
    PlayScript(script, [&](const std::string& command) { return bar(command); });
  }
}

TEST(CommandBarInput, Hovering) {
  Play({
      {"a button is raised under the mouse", "pp", R"(
       tick 10 -> paint 0 raised, MouseHover 0
       hot -> 0
       tick 11 ->
       tick 30 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       hot -> 1
       tick 500 -> paint 1 flat, MouseLeave 1
       hot -> -1
       tick 500 ->
       tick 10; elsewhere -> paint 0 flat, MouseLeave 0
       elsewhere ->)"},
      {"a disabled one is left only", "pp", R"(
       gray 0; tick 10 ->
       hot -> 0
       tick 30 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       gray 1; tick 30 ->
       tick 500 -> paint 1 flat, MouseLeave 1)"},
      {"separators are nothing", "-p", R"(
       tick 5 ->
       hot -> -1
       tick 10; tick 5 -> paint 1 flat, MouseLeave 1)"},
      {"a toggle button that is on stays sunken", "t", R"(
       set 0 1; tick 10 -> paint 0 sunken shifted light, MouseHover 0
       tick 500 -> MouseLeave 0
       set 0 0; tick 10 -> paint 0 raised, MouseHover 0
       tick 500 -> paint 0 flat, MouseLeave 0)"},
      {"only a toggle button is on", "pm", R"(
       set 0 1; tick 10; tick 500 -> paint 0 flat, MouseLeave 0
       set 1 1; tick 30 -> paint 1 raised, MouseHover 1
       tick 500 -> paint 1 flat, MouseLeave 1)"},
      {"the part under the mouse is kept", "d", R"(
       tick 28 -> paint 0 raised, MouseHover 0
       state 0 -> 2
       tick 10 ->
       state 0 -> 0)"},
      {"a removed hot button is not reported", "pp", R"(
       tick 10; rest 8 10; remove 0; hot -> -1
       tick 10 -> hide tip, paint 0 raised, MouseHover 0
       rest 8 10; remove 0; tick 10 -> hide tip
       tick 10 ->)"},
      {"a moved one is left where it is", "ppp", R"(
       tick 10; shift 0 2; hot -> 2
       tick 10 -> paint 2 flat, MouseLeave 2, paint 0 raised, MouseHover 0)"},
      {"a tick in MouseHover", "pp", R"(
       on MouseHover 0: tick 10 & tick 30
       tick 10 -> paint 0 raised, MouseHover 0, paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       hot -> 1)"},
  });
}

TEST(CommandBarInput, WhatTheContainerDoesInMouseLeaveCounts) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"gray 1", ""},
      {"remove 1", ""},
      {"freeze", ""},
      {"design", ", stop timer"},
      {"remove 0", ", paint 0 raised, MouseHover 0"},
      {"tick 55", ", paint 2 raised, MouseHover 2"},
      {"down 500", ", take capture, MouseDown 1 0 500,10"},
  };
  for (const auto& [act, then] : cases) {
    ScriptedBar bar("ppp");
    bar("tick 10");
    bar("on MouseLeave 0: " + act);
    EXPECT_EQ(bar("tick 30"), "paint 0 flat, MouseLeave 0" + then) << act;
  }
}

TEST(CommandBarInput, Tips) {
  Play({
      {"the eighth tick shows the caption once", "pp", R"(
       caption 0 &New && more; tick 10; rest 7 10 ->
       tick 12 12 -> tip "&New && more" at 1012,512
       rest 70000 10 ->
       tick 30 -> hide tip, paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       tick 10; rest 7 10 ->
       tick 10 -> tip "&New && more" at 1010,510
       elsewhere -> hide tip, paint 0 flat, MouseLeave 0
       elsewhere ->)"},
      {"a short visit does not count for the next", "pp", R"(
       tick 10; rest 7 10 ->
       tick 30; rest 7 30 ->
       tick 10; rest 7 10 ->)"},
      {"disabled buttons have tips", "p", R"(
       caption 0 Save; gray 0; tick 10; rest 8 10 -> tip "Save" at 1010,510)"},
      {"captions are no tips", "", R"(
       add p 1 Save; add p 2 Save; add p 5 Save
       tick 10; rest 100 10 ->
       tick 60; rest 100 60 ->
       tick 100; rest 100 100 ->)"},
      {"beside the buttons", "p", R"(
       rest 100 500 ->)"},
      {"a press hides the tip for the visit", "p", R"(
       tick 10; rest 8 10
       down 10 -> take capture, MouseDown 1 0 10,10, hide tip, paint 0 sunken|raised shifted, click sound
       up 10; rest 100 10 ->)"},
  });
}

TEST(CommandBarInput, RunModeDesignTimeAndFreezing) {
  const char* const designTime = R"(
       add p 1 &Save; tick 70 ->
       state 2 -> 0
       down 30 1 3 -> MouseDown 1 3 30,10
       move 10 1 3 -> MouseMove 1 3 10,10
       up 10 1 3 -> MouseUp 1 3 10,10
       dbl -> DblClick
       key s ->
       act 0 ->
       hot -> -1
       pressed -> -1)";
  const std::string afterRunning = std::string("\ndesign -> stop timer") + designTime;
  Play({
      {"the timer", "p", R"(
       run -> start timer
       running -> yes
       design -> stop timer
       running -> no)"},
      {"not shown", "!pmd", designTime},
      {"at design time", "pmd", afterRunning.c_str()},
      {"shown at design time all ends", "p", R"(
       down 10; tick 10; rest 8 10
       design -> hide tip, release capture, stop timer
       hot -> -1
       pressed -> -1)"},
      {"frozen", "pd", R"(
       tick 10; freeze ->
       frozen -> yes
       rest 20 50 ->
       hot -> 0
       state 1 -> 0
       thaw -> paint bar
       frozen -> no
       tick 50 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       state 1 -> 2)"},
      {"freezing hides the tip", "p", R"(
       thaw -> paint bar
       tick 10; rest 8 10; freeze -> hide tip
       freeze ->)"},
      {"a press goes on in a frozen bar", "pp", R"(
       tick 10; down 10; freeze
       up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10
       down 10; up 500 -> release capture, MouseUp 1 0 500,10
       down 10; lost ->)"},
  });
}

TEST(CommandBarInput, Pressing) {
  Play({
      {"a push button", "pp", R"(
       tick 30; down 30 -> take capture, MouseDown 1 0 30,10, paint 1 sunken|raised shifted, click sound
       pressed -> 1
       up 30 -> release capture, paint 1 raised, ButtonClicked 1, MouseUp 1 0 30,10
       pressed -> -1
       tick 30 ->
       tick 500 -> paint 1 flat, MouseLeave 1
       tick 10; down 10 2; up 10 2 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 2 0 10,10
       down 10 4; up 10 4 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 4 0 10,10)"},
      {"arguments", "", R"(
       down -5 2 7 60 -> take capture, MouseDown 2 7 -5,60
       move 1 6 1 2 -> MouseMove 6 1 1,2
       up 3 4 2 4 -> release capture, MouseUp 4 2 3,4)"},
      {"without sound", "pd", R"(
       add m 1 &M; quiet; tick 10
       down 10 -> take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted
       key m -> paint 2 flat, Dropdown 2
       loud; key m -> paint 2 flat, click sound, Dropdown 2)"},
      {"dragging off and back", "pp", R"(
       tick 10; down 10
       move 11 -> MouseMove 1 0 11,10, paint 0 sunken|raised shifted
       move 30 -> MouseMove 1 0 30,10, paint 0 raised
       tick 30 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       move 31 -> MouseMove 1 0 31,10, paint 0 flat
       move 10 -> MouseMove 1 0 10,10, paint 0 sunken|flat shifted
       tick 10 -> paint 1 flat, MouseLeave 1, paint 0 sunken|raised shifted, MouseHover 0
       up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10)"},
      {"released elsewhere", "pp", R"(
       tick 10; down 10; move 30; tick 30; up 30 -> release capture, MouseUp 1 0 30,10
       pressed -> -1
       tick 10; down 10; tick 30 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1
       up 30 -> release capture, MouseUp 1 0 30,10
       tick 10; down 10; up 500 -> release capture, paint 0 raised, MouseUp 1 0 500,10
       tick 500 -> paint 0 flat, MouseLeave 0)"},
      {"does what a tick would do first", "pp", R"(
       down 10 -> paint 0 raised, MouseHover 0, take capture, MouseDown 1 0 10,10,
         paint 0 sunken|raised shifted, click sound
       up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10
       down 30 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1, take capture,
         MouseDown 1 0 30,10, paint 1 sunken|raised shifted, click sound
       up 30; on MouseLeave 1: freeze
       down 10 -> paint 1 flat, MouseLeave 1, take capture, MouseDown 1 0 10,10,
         paint 0 sunken|flat shifted, click sound
       hot -> -1)"},
      {"only a hot button is clicked, after a press", "p", R"(
       freeze; down 10; up 10 -> release capture, MouseUp 1 0 10,10
       thaw; down 10; up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10
       up 10 -> MouseUp 1 0 10,10
       dbl -> DblClick
       pressed -> -1
       move 10 -> MouseMove 1 0 10,10
       up 10 -> MouseUp 1 0 10,10)"},
      {"a press on nothing stops hovering", "p-p", R"(
       gray 0; down 10 -> take capture, MouseDown 1 0 10,10
       pressed -> -1
       move 40 -> MouseMove 1 0 40,10
       rest 10 40 ->
       up 40 -> release capture, MouseUp 1 0 40,10
       tick 40 -> paint 0 flat, MouseLeave 0, paint 2 raised, MouseHover 2
       tick 500; down 27 -> take capture, MouseDown 1 0 27,10
       rest 10 40 ->
       up 40; down 500; rest 10 40 ->
       lost; tick 40 -> paint 2 raised, MouseHover 2)"},
      {"but the part under the mouse is kept", "d", R"(
       down 500; tick 28; state 0 -> 2)"},
      {"the last press counts", "pp", R"(
       down 500; down 10 2; tick 30 -> paint 1 raised, MouseHover 1)"},
      {"a toggle button", "t", R"(
       tick 10; down 10 -> take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted, click sound
       state 0 -> 0
       up 10 -> release capture, paint 0 sunken shifted light, ButtonClicked 0, MouseUp 1 0 10,10
       state 0 -> 1
       tick 500 -> MouseLeave 0
       tick 10
       down 10 -> take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted light, click sound
       move 500 -> MouseMove 1 0 500,10, paint 0 sunken shifted light
       move 10; up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10
       state 0 -> 0
       set 0 5; down 10; up 10; state 0 -> 1)"},
      {"is flipped before it is reported", "t", R"(
       tick 10; on ButtonClicked 0: set 0 7
       down 10; up 10; state 0 -> 7)"},
      {"a menu button drops down at once", "m", R"(
       tick 10
       down 10 -> take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted, Dropdown 0, paint 0 flat
       up 10 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 10,10)"},
      {"the parts of a drop-down button", "d", R"(
       freeze; down 28 -> take capture, MouseDown 1 0 28,10, paint 0 flat|sunken, Dropdown 0
       up 28; thaw; tick 28
       down 28 -> take capture, MouseDown 1 0 28,10, paint 0 raised|sunken, Dropdown 0, paint 0 flat
       up 28 -> release capture, MouseUp 1 0 28,10
       down 10 -> take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted, click sound
       move 28 -> MouseMove 1 0 28,10, paint 0 sunken|raised shifted
       up 28 -> release capture, paint 0 raised, ButtonClicked 0, MouseUp 1 0 28,10
       state 0 -> 0
       down 28; move 10; up 10 -> release capture, paint 0 raised, MouseUp 1 0 10,10)"},
      {"a second mouse button begins another press", "pp", R"(
       tick 10; down 10
       down 30 2 -> paint 0 flat, MouseLeave 0, paint 1 raised, MouseHover 1, take capture,
         MouseDown 2 0 30,10, paint 1 sunken|raised shifted, click sound
       pressed -> 1
       down 500 4 -> paint 1 flat, MouseLeave 1, take capture, MouseDown 4 0 500,10
       pressed -> -1
       up 10 4 -> release capture, MouseUp 4 0 10,10
       up 10 -> MouseUp 1 0 10,10
       down 10
       down 10 2 -> take capture, MouseDown 2 0 10,10, paint 0 sunken|raised shifted, click sound)"},
      {"a lost capture", "p", R"(
       tick 10; down 10; lost -> paint 0 raised
       pressed -> -1
       lost ->
       up 10 -> MouseUp 1 0 10,10
       down 10; move 500; lost ->
       down 500; lost ->
       tick 10 -> paint 0 raised, MouseHover 0)"},
      {"a release unseen", "p", R"(
       tick 10; down 10; move 10 0 -> MouseMove 0 0 10,10, release capture, paint 0 raised
       pressed -> -1
       down 500; move 500 0 -> MouseMove 0 0 500,10, release capture
       tick 10 -> paint 0 raised, MouseHover 0)"},
      {"a free move keeps the part", "d", R"(
       move 28 0 -> MouseMove 0 0 28,10
       state 0 -> 2)"},
  });
}

TEST(CommandBarInput, ButtonsThatChangeInMidPress) {
  Play({
      {"grayed", "p", R"(
       tick 10; down 10; gray 0; move 10 -> MouseMove 1 0 10,10, paint 0 flat
       up 10 -> release capture, MouseUp 1 0 10,10)"},
      {"removed", "pp", R"(
       tick 10; down 10; remove 0; pressed -> -1
       move 10 -> MouseMove 1 0 10,10
       tick 10 -> paint 0 raised, MouseHover 0
       up 10 -> release capture, MouseUp 1 0 10,10)"},
      {"all removed", "pp", R"(
       tick 10; down 10; remove 0; remove 0; tick 10 ->
       move 10 -> MouseMove 1 0 10,10
       up 10 -> release capture, MouseUp 1 0 10,10)"},
      {"moved", "pp", R"(
       tick 10; down 10; shift 0 1; pressed -> 1
       move 10 -> MouseMove 1 0 10,10, paint 1 raised
       move 30 -> MouseMove 1 0 30,10, paint 1 sunken|raised shifted
       up 30 -> release capture, paint 1 raised, ButtonClicked 1, MouseUp 1 0 30,10)"},
      {"removed in MouseMove", "pp", R"(
       tick 10; down 10; on MouseMove 1 0 11,10: remove 0
       move 11 -> MouseMove 1 0 11,10)"},
  });
  const std::vector<std::pair<std::string, std::string>> inMouseDown = {
      {"gray 0", ""},
      {"remove 1 & remove 0", ""},
      {"remove 0", ", paint 0 sunken|flat shifted, click sound"},
      {"lost", ""},  // a message box takes the mouse
      {"up 0 1 0 0", ", release capture, MouseUp 1 0 0,0"},
  };
  for (const auto& [act, then] : inMouseDown) {
    ScriptedBar bar("pp");
    bar("tick 10");
    bar("on MouseDown 1 0 10,10: " + act);
    EXPECT_EQ(bar("down 10"), "take capture, MouseDown 1 0 10,10" + then) << act;
  }
}

TEST(CommandBarInput, OpenMenus) {
  const std::string pressed = "take capture, MouseDown 1 0 10,10, paint 0 sunken|raised shifted, Dropdown 0";
  const std::string over =
      "\ntick 10; on Dropdown 0: down 30 & tick 10\ndown 10 -> " + pressed +
      ", paint 0 sunken|flat shifted, MouseLeave 0, paint 1 raised, MouseHover 1, take capture,"
      " MouseDown 1 0 30,10, paint 1 sunken|raised shifted, Dropdown 1, paint 1 flat,"
      " paint 1 flat, MouseLeave 1, paint 0 sunken|raised shifted, MouseHover 0, paint 0 flat"
      "\ntick 500 -> paint 0 flat, MouseLeave 0\ntick 10 -> paint 0 raised, MouseHover 0";
  // The menu takes the capture, the mouse wanders over it, over the push part and to the next button.
  const std::string wander =
      "\ntick 28; on Dropdown 0: lost & elsewhere & tick 10 & tick 40\ndown 28 -> "
      "take capture, MouseDown 1 0 28,10, paint 0 raised|sunken, Dropdown 0, paint 0 flat|sunken,"
      " MouseLeave 0, paint 0 raised|sunken, MouseHover 0, paint 0 flat|sunken, MouseLeave 0,"
      " paint 1 raised, MouseHover 1, paint 0 flat"
      "\npressed -> -1\ntick 10 -> paint 1 flat, MouseLeave 1, paint 0 raised, MouseHover 0";
  const std::string frozen =
      "\ntick 10; on Dropdown 0: freeze\ndown 10 -> " + pressed + "\nthaw -> paint bar";
  const std::string thawed =
      "\ntick 10; freeze; on Dropdown 0: thaw\ndown 10 -> " + pressed + ", paint bar, paint 0 flat";
  const std::string removed = "\ntick 10; on Dropdown 0: remove 0\ndown 10 -> " + pressed;
  const std::string moved = "\ntick 10; on Dropdown 0: shift 0 1\ndown 10 -> " + pressed + ", paint 1 flat";
  Play({
      {"one over another", "mm", over.c_str()},
      {"the button stays sunken", "dp", wander.c_str()},
      {"a frozen bar leaves it sunken", "m", frozen.c_str()},
      {"a bar thawed by then", "m", thawed.c_str()},
      {"removed meanwhile", "mp", removed.c_str()},
      {"moved meanwhile", "mp", moved.c_str()},
      {"released meanwhile", "d", R"(
       tick 28; on Dropdown 0: up 500
       down 28; up 28 -> MouseUp 1 0 28,10)"},
  });
}

TEST(CommandBarInput, AccessKeysAndDefaultActions) {
  const std::string keys = "add p 1 Plain; add p 1 &Push; add m 1 &Menu; add t 1 &Toggle; add d 1 &Drop\n";
  const std::string each = keys + R"(
       key p -> ButtonClicked 1
       key m -> paint 2 flat, click sound, Dropdown 2
       key d -> paint 4 flat, click sound, Dropdown 4
       key t -> ButtonClicked 3
       state 3 -> 0
       key P ->
       key x ->
       key 00 ->
       key -1 ->
       key 13 ->
       freeze; key m -> paint 2 flat, click sound, Dropdown 2
       key p -> ButtonClicked 1
       add p 1 &Print; key p -> ButtonClicked 1
       gray 1; key p ->
       remove 1; key p -> ButtonClicked 4
       gray 1; key m ->
       gray 2; key t ->
       gray 3; key d ->)";
  const std::string actions = keys + R"(
       act 0 -> click sound, paint 0 flat, ButtonClicked 0
       act 2 -> paint 2 sunken|flat shifted, Dropdown 2, paint 2 flat
       act 3 -> click sound, paint 3 sunken shifted light, ButtonClicked 3
       state 3 -> 1
       act 3 -> click sound, paint 3 flat, ButtonClicked 3
       state 3 -> 0
       set 4 2; act 4 -> click sound, paint 4 flat, ButtonClicked 4
       state 4 -> 0
       act 4 2 -> paint 4 flat|sunken, Dropdown 4, paint 4 flat
       tick 10; act 0 -> click sound, paint 0 raised, ButtonClicked 0
       quiet; act 1 -> paint 1 flat, ButtonClicked 1)";
  Play({
      {"keys", "", each.c_str()},
      {"actions", "", actions.c_str()},
      {"what cannot be clicked", "-p", R"(
       gray 1; act -1 ->
       act 0 ->
       act 1 ->
       act 2 ->)"},
  });
}

/// A container that does whatever it likes whenever it likes, and a screen that remembers how each button was
/// last drawn.
class RandomWalk {
 public:
  explicit RandomWalk(unsigned seed) : random_(seed) {
    Apply(input_.Show(true));
    for (int i = 0; i < 6; ++i) AddButton();
  }

  void Run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) Step();
    // In the end everything comes to rest, the container too.
    depth_ = kDeepest;
    Apply(input_.Thaw());
    LoseCapture();
    Apply(input_.tHitTest_Timer(std::nullopt, {}));
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
  int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
  bool Once(int in) { return Any(in) == 0; }
  BarMetrics SomeMetrics() { return Metrics(26, dockable_); }
  Point SomePoint() {
    const int width = buttons_.Count() == 0 ? 20 : buttons_.All().back().Right + 20;
    return {Any(width + 5) - 5, Once(8) ? Any(60) - 10 : 10};
  }

  void Step() {
    if (Once(3)) place_ = SomePoint();
    const auto button = static_cast<std::int16_t>(1 << Any(2));
    switch (Any(16)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Apply(input_.tHitTest_Timer(Once(12) ? std::nullopt : std::optional(place_), place_));
      case 4:
        for (int i = 0; i < 9; ++i) Apply(input_.tHitTest_Timer(place_, place_));
        return;
      case 5:
      case 6:
      case 7:
        held_ = static_cast<std::int16_t>(held_ | button);
        return Apply(input_.MouseDown({button, 0, place_}));
      case 8:
      case 9:
        return Apply(input_.MouseMove({Once(10) ? std::int16_t{0} : held_, 0, place_}));
      case 10:
      case 11:
      case 12:
        held_ = static_cast<std::int16_t>(held_ & ~button);
        return Apply(input_.MouseUp({button, 0, place_}));
      case 13:
        return Apply(Once(2) ? input_.AccessKeyPress(static_cast<std::int16_t>('a' + Any(6)))
                             : input_.DoDefaultAction(Any(10) - 1));
      case 14:
        return Once(3) ? LoseCapture() : Apply(input_.DblClick());
      default:
        return ChangeSomething();
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
        return PaintAll();  // as the one who moves a button does
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
        return Once(3) ? Apply(input_.Freeze()) : Apply(input_.Thaw());
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
    if (change.redrawButton) Draw(*change.redrawButton, RedrawLook(Button(*change.redrawButton)));
    if (change.refresh) PaintAll();
  }

  void PaintAll() {
    const std::vector<ButtonLook> looks = PaintLooks(buttons_.All(), true);
    for (int i = 0; i < buttons_.Count(); ++i) Draw(i, looks[static_cast<std::size_t>(i)]);
  }

  void Draw(int index, const ButtonLook& look) { drawn_[Button(index).Id] = look; }

  const BarButton& Button(int index) {
    const BarButton* button = buttons_.Find(index);
    EXPECT_NE(button, nullptr) << index;
    static const BarButton kNone;
    return button != nullptr ? *button : kNone;
  }

  void Apply(BarReaction reaction) {
    for (;;) {
      for (const BarEffect::Any& effect : reaction.effects) {
        const std::string said = Said(effect);
        ++seen[said.substr(0, said.find(' '))];
        std::visit([&](const auto& e) { Apply(e); }, effect);
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  void Apply(const BarEffect::PaintButton& e) { Draw(e.button, e.look); }
  void Apply(const BarEffect::PaintBar&) { PaintAll(); }

  void Apply(const BarEffect::RaiseMouse&) { Container(); }

  void Apply(const BarEffect::RaiseButton& e) {
    const BarButton button = Button(e.button);
    const bool dropsDown = button.Is(kMenu) || button.Is(kDropDown);
    switch (e.event) {
      case BarButtonEvent::MouseHover:
        EXPECT_TRUE(button.Enabled);
        EXPECT_FALSE(input_.Frozen());
        EXPECT_EQ(input_.HotButton(), e.button);
        EXPECT_FALSE(HoveredButtonIsThere()) << "the last one was not left";
        hovered_ = button.Id;
        break;
      case BarButtonEvent::MouseLeave:
        EXPECT_NE(input_.HotButton(), e.button);
        EXPECT_FALSE(input_.Frozen());
        if (HoveredButtonIsThere()) {
          EXPECT_EQ(hovered_, button.Id);
        }
        hovered_ = ButtonId::None;
        break;
      case BarButtonEvent::ButtonClicked:
        EXPECT_TRUE(button.Enabled);
        break;
      case BarButtonEvent::Dropdown:
        EXPECT_TRUE(button.Enabled);
        EXPECT_TRUE(dropsDown);
        break;
    }
    EXPECT_FALSE(button.Is(kSeparator) && e.event != BarButtonEvent::ButtonClicked);
    Container();
  }

  void Apply(const BarEffect::RaiseDblClick&) { Container(); }
  void Apply(const BarEffect::PlayClick&) { EXPECT_TRUE(properties_.SoundEffects); }

  void Apply(const BarEffect::ShowTip&) {
    EXPECT_FALSE(tip_);
    EXPECT_FALSE(input_.Frozen());
    EXPECT_EQ(Button(input_.HotButton()).DisplayType, DisplayType::Picture);
    tip_ = true;
  }
  void Apply(const BarEffect::HideTip&) {
    EXPECT_TRUE(tip_);
    tip_ = false;
  }

  void Apply(const BarEffect::TakeCapture&) { captured_ = true; }
  void Apply(const BarEffect::ReleaseCapture&) {
    EXPECT_TRUE(captured_);
    LoseCapture();  // the platform says so at once
  }
  void Apply(const BarEffect::StartHoverTimer&) {}
  void Apply(const BarEffect::StopHoverTimer&) { ADD_FAILURE() << "the bar stays in run mode"; }

  void LoseCapture() {
    captured_ = false;
    Apply(input_.CaptureLost());
  }

  /// The container's turn, in an event.
  void Container() {
    if (depth_ >= kDeepest || !Once(3)) return;
    ++depth_;
    for (int i = Any(4); i > 0; --i) Once(2) ? ChangeSomething() : Step();
    --depth_;
  }

  std::mt19937 random_;
  CommandBarButtons buttons_{WesternLetterCase()};
  CommandBarProperties properties_;
  CommandBarInput input_{buttons_, properties_};
  Point place_;
  std::int16_t held_ = 0;
  bool dockable_ = false;
  bool captured_ = false;
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
