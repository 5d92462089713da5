#include "ui/menu/MenuLook.h"

#include <gtest/gtest.h>

#include <vector>

namespace snip::test {
namespace {

using enum MenuColor;

TEST(MenuLook, OfEveryKindOfItem) {
  struct Case {
    const char* name;
    MenuItemState item;
    MenuItemLook look;
  };
  const auto none = MenuFrame::None;
  const auto cell = MenuFrame::PictureCell;
  const auto row = MenuFrame::Row;
  const std::vector<Case> cases = {
      {"docked", {}, {ButtonText, ButtonFace, ButtonFace, ButtonFace, none, false}},
      {"docked with a picture",
       {.hasPicture = true},
       {ButtonText, ButtonFace, ButtonFace, ButtonFace, cell, false}},
      {"docked and hot",
       {.hot = true},
       {HighlightText, Highlight, ButtonHighlight, ButtonShadow, none, false}},
      {"docked and hot with a picture",
       {.hot = true, .hasPicture = true},
       {HighlightText, Highlight, ButtonHighlight, ButtonShadow, cell, false}},
      {"docked and disabled",
       {.enabled = false, .hasPicture = true},
       {ButtonText, ButtonFace, ButtonHighlight, ButtonShadow, none, true}},
      {"docked, disabled and hot",
       {.hot = true, .enabled = false, .hasPicture = true},
       {HighlightText, ButtonFace, ButtonHighlight, ButtonShadow, none, true}},
      {"floating", {.floating = true}, {ButtonText, ButtonFace, ButtonFace, ButtonFace, row, false}},
      {"floating and hot",
       {.hot = true, .hasPicture = true, .floating = true},
       {ButtonText, Highlight, ButtonHighlight, ButtonShadow, row, false}},
      {"floating and disabled",
       {.enabled = false, .floating = true},
       {ButtonText, ButtonFace, ButtonHighlight, ButtonShadow, none, true}},
      {"floating, disabled and hot",
       {.hot = true, .enabled = false, .floating = true},
       {ButtonText, ButtonFace, ButtonHighlight, ButtonShadow, none, true}},
  };
  for (const Case& drawn : cases) {
    SCOPED_TRACE(drawn.name);
    EXPECT_EQ(LookOf(drawn.item), drawn.look);
  }
}

TEST(MenuLook, TheDragBarIsActiveUnderThePointerAndWhileTornOff) {
  EXPECT_EQ(DragBarColor(false, false), InactiveCaption);
  EXPECT_EQ(DragBarColor(true, false), ActiveCaption);
  EXPECT_EQ(DragBarColor(false, true), ActiveCaption);
  EXPECT_EQ(DragBarColor(true, true), ActiveCaption);
}

}  // namespace
}  // namespace snip::test
