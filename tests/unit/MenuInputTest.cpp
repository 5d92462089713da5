#include "ui/menu/MenuInput.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/MenuUnderTest.h"
#include "tests/unit/Script.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

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
    if (verb == "popup") {
      PopupRequest request = menu_.Request(first != "plain");
      if (button == "here") request.cursor = kCorner;
      menu_.Apply(menu_.input.Popup(request));
    } else if (verb == "hover") {
      menu_.Move(Place(first));
    } else if (verb == "move") {
      menu_.Move(Place(first), pressed);
    } else if (verb == "down") {
      menu_.Down(Place(first), pressed, shift == "shift");
    } else if (verb == "up") {
      menu_.Up(Place(first), pressed);
    } else if (verb == "leave") {
      menu_.Apply(menu_.input.MouseLeave());
    } else if (verb == "tick") {
      menu_.Tick(std::stoi(first));
    } else if (verb == "key") {
      menu_.Apply(menu_.input.KeyDown(static_cast<MenuKey>(std::stoi(first, nullptr, 16))));
    } else if (verb == "act") {
      menu_.Apply(menu_.input.DoDefaultAction(std::stoi(first)));
    } else if (verb == "lose") {
      menu_.captured = false;
      menu_.Apply(menu_.input.CaptureLost());
    } else if (verb == "deactivate") {
      menu_.Apply(menu_.input.Deactivated());
    } else if (verb == "query") {
      menu_.Apply(menu_.input.QueryUnload(static_cast<CloseReason>(std::stoi(first))));
    } else if (verb == "unload") {
      menu_.Apply(menu_.input.Unload());
    } else if (verb == "load") {
      menu_.input.Load();
      menu_.window = menu_.parts = true;
    } else if (verb == "items") {
      menu_.items = MenuOf(first);
    } else if (verb == "add") {
      menu_.items.Add({.Caption = "Cut", .ID = std::stoi(first)}, menu_.metrics, SevenPixels);
    } else if (verb == "height") {
      menu_.metrics.ItemHeight = std::stoi(first) * 15;
    } else if (verb == "allow") {
      menu_.input.AllowRightClick = true;
    } else if (verb == "on") {
      // What others do when they next see an effect; "&" stands between their commands.
      const std::vector<std::string> parts = Split(command.substr(3), ':');
      reactions_[parts.at(0)] = parts.at(1);
    } else if (verb == "hot") {
      return std::to_string(menu_.input.HotItem());
    } else if (verb == "state") {
      return State();
    } else if (verb == "ended") {
      return std::to_string(menu_.hideMenus) + " of " + std::to_string(menu_.unloads);
    } else {
      ADD_FAILURE() << "no such command: " << command;
    }
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
    if (input.Loaded()) state += " loaded";
    if (menu_.window) state += " window";
    if (menu_.captured) state += " captured";
    if (menu_.timer) state += " timer";
    return state;
  }

  MenuUnderTest menu_;
  std::map<std::string, std::string> reactions_;
};

void Play(const std::vector<ScriptCase>& cases) {
  for (const ScriptCase& script : cases) {
    ScriptedMenu menu(script.subject);
    PlayScript(script, [&](const std::string& command) { return menu(command); });
  }
}

TEST(MenuInput, Opening) {
  Play({
      // 315 * 3 - 225 + 165 + 120 twips high.
      {"docked", "i-i", R"(
       popup -> load, release capture, start timer, unfold at 200,100 to 73,67, play 9, pending events,
         take capture
       state -> docked detachable loaded window captured timer
       hot -> -2
       key 1B; popup -> load, release capture, start timer, unfold at 200,100 to 73,67, play 9,
         pending events, take capture)"},
      {"without detaching, the form being there", "i-i", R"(
       load; popup plain -> release capture, start timer, unfold at 200,100 to 73,56, play 9,
         pending events, take capture
       state -> docked loaded window captured timer)"},
      {"with the metrics of the form that was loaded", "i", R"(
       on load: height 30
       popup plain -> load, release capture, start timer, unfold at 200,100 to 73,38, play 9,
         pending events, take capture)"},
      {"without items", "", R"(
       popup -> load, release capture, start timer
       tick 20 ->
       hover 5,5; down 5,5 ->
       up 5,5 ->
       down out ->
       state -> hidden detachable loaded window timer)"},
      {"anew", "o iii", R"(
       hover bar; tick 12
       popup -> release capture, hide tip, hide, pending events, release capture, start timer,
         unfold at 200,100 to 73,82, play 9, pending events, take capture
       hot -> -2)"},
      {"anew, torn off", "f iii", R"(
       popup plain -> unowned, hide, pending events, release capture, start timer,
         unfold at 200,100 to 73,71, play 9, pending events, take capture
       state -> docked loaded window captured timer)"},
      {"anew, emptied", "o iii", R"(
       items; popup -> release capture, hide, pending events, release capture, start timer
       state -> hidden detachable loaded window timer)"},
      {"closed meanwhile", "iii", R"(
       on pending events: deactivate
       popup -> load, release capture, start timer, unfold at 200,100 to 73,82, play 9, pending events,
         hide, unload
       state -> hidden detachable)"},
      {"torn off meanwhile", "iii", R"(
       on pending events: down bar
       popup; state -> floating detachable torn loaded window)"},
      {"unloaded while unfolding", "iii", R"(
       on unfold: unload
       popup -> load, release capture, start timer, unfold at 200,100 to 73,82, hide, unload)"},
  });
}

TEST(MenuInput, Moving) {
  Play({
      {"makes items hot", "o i-d", R"(
       hover 0 -> paint row 0, Selected 0
       hover 0 ->
       hover 1 -> paint row 0, paint row 1, Selected 1
       hover 2 -> paint row 1, paint row 2, Selected 2
       hover bar -> paint row 2, paint drag bar
       hot -> -1
       hover out -> paint drag bar
       hot -> -10)"},
      {"tells the ID", "o i", R"(
       add 77; hover 1 -> paint row 1, Selected 77)"},
      {"with the right button when allowed", "o ii", R"(
       move 0 right ->
       move 0 left -> paint row 0, Selected 0
       allow; move 1 right -> paint row 0, paint row 1, Selected 1)"},
      {"without items", "o ii", R"(
       hover 1; items; hot -> -10
       hover bar ->)"},
      {"from an item that is gone", "o iii", R"(
       hover 2; items i; hover 0 -> paint row 0, Selected 0)"},
      {"off a torn-off menu", "f iii", R"(
       hover 1; leave -> paint row 1
       hot -> -10
       hover 1; down 1; leave ->)"},
  });
}

TEST(MenuInput, Choosing) {
  Play({
      {"docked", "o i-i", R"(
       hover 2; down 2; up 2 -> take capture, play 8, release capture, hide, HideMenu, Clicked 2, unload
       state -> hidden detachable)"},
      {"without a press", "o ii", R"(
       move 1 left; up 1 -> take capture, play 8, release capture, hide, HideMenu, Clicked 1, unload)"},
      {"torn off", "f i-i", R"(
       hover 2; down 2 -> take capture
       up 2 -> release capture, play ToolbarClick, Clicked 2
       hover 2; down 2; up 2 -> release capture, play ToolbarClick, Clicked 2
       down 1; up 1 -> release capture
       items i-d; down 2 -> take capture
       up 2 -> release capture
       down 0; up out -> release capture
       state -> floating detachable torn loaded window)"},
      {"what cannot be chosen", "o i-d", R"(
       hover 1; down 1 ->
       up 1 -> take capture
       up 1 -> take capture
       hover 2; down 2 ->
       up 2 -> take capture
       state -> docked detachable loaded window captured timer)"},
      {"between the items", "o ii", R"(
       hover 30,9; up 30,9 -> take capture
       hover 30,57; up 30,57 -> take capture
       hover bar; up bar -> take capture
       hover 70,3; up 70,3 -> take capture)"},
      {"outside", "o ii", R"(
       down 0; up out -> take capture, release capture, hide, unload)"},
      {"a row below the window", "o i", R"(
       items iiiiii; down 0; up 5 -> take capture
       state -> docked detachable loaded window captured timer)"},
      {"with other buttons when allowed", "o ii", R"(
       down 1 right; up 1 right -> take capture
       up out middle -> take capture
       allow; down 1 middle; up 1 middle -> take capture, play 8, release capture, hide, HideMenu,
         Clicked 1, unload)"},
      {"with other buttons, torn off", "f ii", R"(
       down 1 right ->
       up 1 right ->
       down bar right ->
       up box right ->
       allow; down 1 right; up 1 right -> release capture, play ToolbarClick, Clicked 1)"},
      {"without items", "o ii", R"(
       down 0; items; up out -> take capture
       state -> docked detachable loaded window captured timer)"},
      {"without items, torn off", "f ii", R"(
       down 0; items; up box -> release capture
       state -> floating detachable torn loaded window)"},
      // The pointer is where the menu comes up, on its first item.
      {"the release of the press that opened the menu", "ii", R"(
       popup plain here; up 4,4 -> take capture
       up 4,4 -> take capture, play 8, release capture, hide, HideMenu, Clicked 0, unload)"},
      {"moved before", "ii", R"(
       popup plain here; move 5,0 left; up 0,0 -> take capture, play 8, release capture, hide, HideMenu,
         Clicked 0, unload)"},
      {"pressed before", "ii", R"(
       popup plain here; down 0,0; up 0,0 -> take capture, play 8, release capture, hide, HideMenu,
         Clicked 0, unload)"},
      {"released elsewhere", "ii", R"(
       popup plain here; up 5,5 -> take capture, play 8, release capture, hide, HideMenu, Clicked 0,
         unload)"},
      {"cleared in HideMenu", "o ii", R"(
       on HideMenu: items
       down 1; up 1 -> take capture, play 8, release capture, hide, HideMenu, Clicked 1, unload)"},
      {"opened in HideMenu", "o ii", R"(
       on HideMenu: popup
       down 1; up 1 -> take capture, play 8, release capture, hide, HideMenu, release capture, start timer,
         unfold at 200,100 to 73,61, play 9, pending events, take capture, Clicked 1
       state -> docked detachable loaded window captured timer)"},
      {"unloaded in HideMenu", "o ii", R"(
       on HideMenu: unload
       down 1; up 1 -> take capture, play 8, release capture, hide, HideMenu, unload, Clicked 1
       state -> hidden detachable)"},
      {"opened in Clicked", "o ii", R"(
       on Clicked 1: popup
       down 1; up 1; state -> docked detachable loaded window captured timer
       ended -> 1 of 0)"},
      {"by assistive programs", "i-di", R"(
       act 0 ->
       popup; act 1 ->
       act 2 ->
       act -1 ->
       act 4 ->
       act 3 -> play 8, release capture, hide, HideMenu, Clicked 3, unload)"},
  });
}

TEST(MenuInput, ClicksOutside) {
  Play({
      {"left", "o ii", "down out -> release capture, hide, post 513 with 1 at 160,50, HideMenu, unload"},
      {"Shift", "o ii",
       "down out left shift -> release capture, hide, post 513 with 5 at 160,50, HideMenu, unload"},
      {"right", "o ii",
       "down out right -> release capture, hide, post 516 with 2 at 160,50, HideMenu, unload"},
      {"right Shift", "o ii",
       "down out right shift -> release capture, hide, post 516 with 6 at 160,50, HideMenu, unload"},
      {"middle", "o ii",
       "down out middle -> release capture, hide, post 516 with 2 at 160,50, HideMenu, unload"},
      {"left edge", "o ii",
       "down 0,20 ->\ndown -1,20 -> release capture, hide, post 513 with 1 at 199,120, HideMenu, unload"},
      {"right edge", "o ii",
       "down 72,20 ->\ndown 73,20 -> release capture, hide, post 513 with 1 at 273,120, HideMenu, unload"},
      {"top edge", "o ii",
       "down 0,0 ->\ndown 0,-1 -> release capture, hide, post 513 with 1 at 200,99, HideMenu, unload"},
      {"bottom edge", "o ii",
       "down 20,60 ->\ndown 20,61 -> release capture, hide, post 513 with 1 at 220,161, HideMenu, unload"},
      {"torn off", "f ii", "down out ->"},
      // The former end is told first.
      {"opening the menu again", "o ii", R"(
       on pending events: popup
       down out -> release capture, hide, post 513 with 1 at 160,50, HideMenu, unowned, stop timer, release parts,
         pending events, HideMenu, load, release capture, start timer, unfold at 200,100 to 73,61, play 9,
         pending events, take capture
       state -> docked detachable loaded window captured timer)"},
      {"opening it when the end is told", "o ii", R"(
       on HideMenu: popup
       down out; state -> docked detachable loaded window captured timer
       ended -> 1 of 0)"},
      {"of two openings the later holds", "o ii", R"(
       on HideMenu: popup plain; on pending events: popup
       down out; state -> docked detachable loaded window captured timer)"},
  });
}

TEST(MenuInput, TearingOff) {
  Play({
      // 3 * 315 + 435 - 195 twips.
      {"makes a palette and hands it to the system", "o i-i", R"(
       hover bar; tick 12
       down bar -> hide tip, owned, not topmost, height 79, paint all, play ToolbarUndock, HideMenu,
         stop timer, release capture, drag from 230,103
       state -> floating detachable torn loaded window
       down 59,10 -> stop timer, release capture, drag from 259,110)"},
      {"where the bar can be held", "o ii", R"(
       down 0,3 ->
       down 60,3 ->
       down 30,6 ->
       down bar right ->
       down bar middle ->
       down 1,5; state -> floating detachable torn loaded window)"},
      {"with other buttons when allowed", "o ii", R"(
       allow; down bar right; state -> floating detachable torn loaded window)"},
      {"without a bar", "ii", R"(
       popup plain; hover bar; down bar; state -> docked loaded window captured timer)"},
      {"opened in HideMenu", "o ii", R"(
       on HideMenu: popup
       down bar -> owned, not topmost, height 71, paint all, play ToolbarUndock, HideMenu, unowned,
         release capture, hide, pending events, release capture, start timer, unfold at 200,100 to 73,61,
         play 9, pending events, take capture)"},
      {"unloaded in HideMenu", "o ii", R"(
       on HideMenu: unload
       down bar -> owned, not topmost, height 71, paint all, play ToolbarUndock, HideMenu, release capture,
         hide, unload)"},
  });
}

TEST(MenuInput, TheCloseBox) {
  Play({
      {"follows the press and closes on release", "f ii", R"(
       hover box; down box -> take capture, close box in
       state -> floating detachable torn pushed loaded window captured
       move 50,6 left -> close box out
       move box left -> close box in
       up box -> release capture, close box out, play ToolbarClose, hide, unload)"},
      {"with a button that acts", "f ii", R"(
       hover box; move box middle ->
       down box right ->
       allow; down box right -> take capture, close box in
       up box right; state -> hidden detachable)"},
      {"released beside it", "f ii", R"(
       down box; up 59,6 -> release capture, close box out
       down box; up 73,6 -> release capture, close box out
       down box; up 66,-1 -> release capture, close box out
       down box; up 66,15 -> release capture, close box out
       down box; up 66,66 -> release capture, close box out)"},
      {"the mouse is lost", "f ii", R"(
       down box; lose -> close box out
       state -> floating detachable torn loaded window)"},
      {"unloaded while it is pushed", "f ii", R"(
       down box; unload; state -> hidden detachable)"},
  });
}

TEST(MenuInput, Keys) {
  Play({
      {"down and up", "o i-di", R"(
       key 28 -> paint row 0, Selected 0
       key 28 -> paint row 0, paint row 1, Selected 1
       key 28; key 28; hot -> 3
       key 28 ->
       key 26 -> paint row 3, paint row 2, Selected 2
       key 26; key 26; hot -> 0
       key 26 ->)"},
      {"up from nothing", "o i-di", "key 26 -> paint row 0, Selected 0"},
      {"down from no item", "o i-di", "hover out; key 28 -> paint row 0, Selected 0"},
      {"up from no item", "o i-di", "hover out; key 26 -> paint row 0, Selected 0"},
      {"down from the bar", "o i-di", "hover bar; key 28 -> paint drag bar, paint row 0, Selected 0"},
      {"up from the bar", "o i-di", "hover bar; key 26 -> paint drag bar, paint row 0, Selected 0"},
      {"without items", "o ii", R"(
       items; key 28 ->
       key 26 ->)"},
      {"from an item that is gone", "o iii", "hover 2; items ii; key 26 -> paint row 0, Selected 0"},
      {"Escape", "o ii", "key 1B -> release capture, hide, unload"},
      {"torn off", "f ii", R"(
       key 1B ->
       key 28 -> paint drag bar, paint row 0, Selected 0)"},
      {"closed", "ii", R"(
       load; key 28 ->
       key 1B ->)"},
  });
  ScriptedMenu menu("o ii");
  menu("hover 0");
  for (int code = 0; code < 256; ++code) {
    std::ostringstream command;
    command << "key " << std::hex << code;
    const bool known = code == 0x1B || code == 0x26 || code == 0x28;
    EXPECT_EQ(known ? "" : menu(command.str()), "") << code;
  }
}

TEST(MenuInput, TheTip) {
  Play({
      {"once in a visit of the bar", "o ii", R"(
       hover bar; tick 11 ->
       tick 1 -> tip: Drag to make this menu float
       tick 100 ->
       hover 0; tick 1 -> hide tip
       tick 1 ->
       hover bar; tick 12 -> tip: Drag to make this menu float
       key 1B -> release capture, hide tip, hide, unload)"},
      {"counted from the beginning of the visit", "o ii", R"(
       hover bar; tick 8; hover 0; tick 1; hover bar; tick 11 ->)"},
      {"counted anew when the menu is opened", "o ii", R"(
       hover bar; tick 8; popup; hover bar; tick 11 ->)"},
      {"none torn off", "f ii", R"(
       hover bar; tick 20 ->)"},
  });
}

TEST(MenuInput, Closing) {
  Play({
      {"the user turns elsewhere", "o ii", R"(
       deactivate -> release capture, hide, unload
       deactivate ->)"},
      {"the mouse is lost", "o ii", "lose -> hide, unload"},
      {"torn off", "f ii", R"(
       lose ->
       deactivate ->
       state -> floating detachable torn loaded window)"},
      {"the mouse is not taken yet", "ii", R"(
       lose ->
       on pending events: lose
       popup; state -> docked detachable loaded window captured timer)"},
      {"asked by the user", "o ii", "query 0 ->\nquery 3 ->\nquery 4 ->"},
      {"by the program", "o ii", "query 1 -> release capture, hide, unload"},
      {"by Windows", "o ii", "query 2 -> release capture, hide, unload"},
      {"torn off, asked by the user", "f ii", "query 0 ->\nquery 3 ->\nquery 4 ->"},
      {"torn off, by the program", "f ii", "query 1 -> hide, unload"},
      {"torn off, by Windows", "f ii", "query 2 -> hide, unload"},
      {"unloading needs a form", "ii", R"(
       unload ->
       load; unload -> unload
       unload ->)"},
      {"unloaded again in its last events", "o ii", R"(
       on pending events: popup & unload; on HideMenu: unload
       deactivate; ended -> 2 of 2
       state -> hidden detachable)"},
  });
}

}  // namespace
}  // namespace snip::test
