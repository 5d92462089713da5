#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/unit/MenuUnderTest.h"
#include "tests/unit/TestMenu.h"
#include "ui/menu/MenuInput.h"

namespace snip::test {
namespace {

/// What a user, the system and an owner can do, at random. An owner also acts in events, though not
/// forever.
class RandomWalk {
 public:
  explicit RandomWalk(unsigned seed) : random_(seed) {
    Refill();
    menu_.others = [this](const std::string& effect) {
      if (effect.starts_with("Clicked")) CheckClicked(effect);
      if (effect == "load" || effect.starts_with("unfold") || effect == "destroy") return;
      // Only so often, or no course of events would ever end undisturbed.
      if (depth_ >= 3 || Below(4) != 0) return;
      ++depth_;
      if (Below(2) == 0) {
        OwnerActs();
      } else {
        UserActs();
      }
      --depth_;
    };
  }

  void Step() {
    tornOff_ = menu_.input.State() == MenuState::Floating;
    if (menu_.input.State() == MenuState::Hidden && Below(2) == 0) {
      endAllowed_ = true;
      menu_.Popup();
    } else if (Below(12) == 0) {
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
  int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }

  /// Items that can be clicked have even IDs.
  void Refill() {
    menu_.items.Clear();
    const int count = Below(7);
    for (int i = 0; i < count; ++i) {
      MenuItem item;
      const int kind = Below(4);
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
    switch (Below(6)) {
      case 0:
        Refill();
        break;
      case 1:
      case 2:
      case 3:
        endAllowed_ = true;
        menu_.Popup(Below(4) != 0);
        break;
      case 4:
        menu_.input.AllowRightClick = Below(2) == 0;
        break;
      default:
        endAllowed_ = true;
        menu_.Apply(Below(2) == 0 ? menu_.input.Unload() : menu_.input.QueryUnload(CloseReason::WindowsEnds));
    }
  }

  Point Somewhere() {
    switch (Below(6)) {
      case 0:
        return MenuUnderTest::kBar;
      case 1:
        return MenuUnderTest::kCloseBox;
      default:
        return {Below(90) - 8, Below(190) - 8};
    }
  }

  void UserActs() {
    const int button = 1 << (Below(5) < 3 ? 0 : Below(3));
    switch (Below(12)) {
      case 0:
      case 1:
      case 2:
        menu_.Move(Somewhere(), Below(2) == 0 ? 0 : button);
        break;
      case 3:
      case 4:
        menu_.Down(Somewhere(), button, Below(2) == 0);
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
        menu_.Apply(menu_.input.KeyDown(Below(8) == 0   ? MenuKey::Escape
                                        : Below(2) == 0 ? MenuKey::Up
                                                        : MenuKey::Down));
        break;
      case 8:
        menu_.Tick(Below(15));
        break;
      case 9:
        if (Below(5) == 0) menu_.Apply(menu_.input.Deactivated());
        menu_.Apply(menu_.input.QueryUnload(CloseReason::TaskManager));
        break;
      case 10:
        if (Below(5) == 0) {
          menu_.captured = false;
          menu_.Apply(menu_.input.CaptureLost());
        }
        menu_.Apply(menu_.input.MouseLeave());
        break;
      default:
        menu_.Apply(menu_.input.DoDefaultAction(Below(8) - 1));
    }
  }

  /// What holds whenever nobody is acting.
  void Check() {
    const MenuState state = menu_.input.State();
    EXPECT_EQ(menu_.visible, state != MenuState::Hidden);
    EXPECT_EQ(menu_.parts, menu_.input.Loaded());
    EXPECT_EQ(menu_.window, menu_.parts);
    EXPECT_EQ(menu_.captured, menu_.input.HasCapture());
    EXPECT_EQ(menu_.tip, menu_.input.TipShown());
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

  std::mt19937 random_;
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
