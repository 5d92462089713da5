#include "ui/main/SnippetTips.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace snip::test {
namespace {

/// A list of ten pixels a row and letter, twelve letters wide, at (100, 200) of the screen and scrolled by 3.
class FakeSurroundings : public TipSurroundings {
 public:
  Place place = Place::List;
  std::int32_t entry = 0;
  bool visible = false;
  std::string wide = "as wide as it gets";
  int topEntry = 3;
  std::vector<std::string> done;

  Place PlaceOfPointer() override { return place; }
  std::int32_t EntryAtPointer() const override { return entry; }
  std::string EntryText(std::int32_t index) const override {
    return index % 2 == 0 && index < 0x10000 ? "short" : wide;
  }
  Point OnScreen(int y) const override { return {100, 200 + y}; }
  int TopEntry() const override { return topEntry; }
  int EntryHeight() const override { return 10; }
  int TextWidth(const std::string& text) override { return static_cast<int>(text.size()) * 10; }
  int ListWidth() const override { return 120; }
  bool TipVisible() const override { return visible; }
  void ShowTip(const std::string& text, int x, int y) override {
    visible = true;
    done.push_back(text + " " + std::to_string(x) + "," + std::to_string(y));
  }
  void HideTip() override {
    if (visible) done.emplace_back("hide");
    visible = false;
  }
};

TEST(TipsTest, ATipLiesOverTheEntryThatDoesNotFit) {
  FakeSurroundings around;
  SnippetTips tips(around);
  using Place = TipSurroundings::Place;
  struct Tick {
    Place place;
    std::int32_t entry;
    std::vector<std::string> done;
  };
  const std::string third = "as wide as it gets 98,198";  // 200 + (3 - 3) * 10 - 1 - 1
  const std::string fifth = "as wide as it gets 98,218";
  const std::vector<Tick> ticks = {
      {Place::List, 3, {third}},   // moving onto a long entry
      {Place::List, 3, {}},        // staying there
      {Place::Tip, 3, {}},         // the tip covers the entry now
      {Place::List, 5, {fifth}},   // another long one
      {Place::List, 4, {"hide"}},  // a short one
      {Place::List, 4, {}},
      {Place::List, 5, {fifth}},         // back
      {Place::List, 0x10000, {"hide"}},  // below the last entry
      {Place::List, 5, {fifth}},
      {Place::Elsewhere, 5, {"hide"}},
      {Place::Elsewhere, 5, {}},
      {Place::List, 5, {fifth}},  // the same entry, but the tip was hidden
  };
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    around.place = ticks[i].place;
    around.entry = ticks[i].entry;
    around.done.clear();
    tips.tTip_Timer();
    EXPECT_EQ(around.done, ticks[i].done) << i;
  }
}

TEST(TipsTest, ATipGoesWithWhatItStandsFor) {
  FakeSurroundings around;
  SnippetTips tips(around);
  const std::vector<std::function<void()>> changes = {[&] { around.wide = "renamed, and still too wide"; },
                                                      [&] { around.topEntry = 4; }};
  for (const auto& change : changes) {
    around.place = TipSurroundings::Place::List;
    around.entry = 5;
    tips.tTip_Timer();
    ASSERT_TRUE(around.visible);
    around.place = TipSurroundings::Place::Tip;
    tips.tTip_Timer();
    EXPECT_TRUE(around.visible);
    change();
    tips.tTip_Timer();
    EXPECT_FALSE(around.visible);
  }
}

TEST(TipsTest, StaysSidewaysOnTheScreenThatItComesUpOn) {
  constexpr Rect screen{0, 0, 1000, 700}, left{-800, 0, 800, 600};
  struct Case {
    std::optional<int> x, y;
    int textWidth;
    Rect screen, expected;
  };
  // The pointer is at (500, 300); a line is 13 pixels high.
  for (const Case& tip : {Case{40, 60, 100, screen, {40, 60, 100, 17}},
                          {0, 0, 100, screen, {0, 0, 100, 17}},
                          {{}, 60, 100, screen, {500, 60, 100, 17}},
                          {40, {}, 100, screen, {40, 320, 100, 17}},
                          {-30, 60, 100, screen, {-30, 60, 100, 17}},
                          {900, 60, 100, screen, {900, 60, 100, 17}},
                          {901, 60, 100, screen, {900, 60, 100, 17}},
                          {{}, 60, 600, screen, {400, 60, 600, 17}},
                          {40, 60, 1200, screen, {0, 60, 1200, 17}},
                          {-700, 60, 100, left, {-700, 60, 100, 17}},
                          {-50, 60, 100, left, {-100, 60, 100, 17}},
                          {-50, 60, 900, left, {-800, 60, 900, 17}}}) {
    EXPECT_EQ(PlaceTip({.x = tip.x,
                        .y = tip.y,
                        .pointer = {500, 300},
                        .text = {tip.textWidth, 13},
                        .screen = tip.screen}),
              tip.expected);
  }
}

}  // namespace
}  // namespace snip::test
