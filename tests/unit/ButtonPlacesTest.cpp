#include "ui/commandbar/ButtonPlaces.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/unit/Printing.h"
#include "tests/unit/TestBar.h"

namespace snip::test {
namespace {

constexpr ButtonLook kFlat{};
constexpr ButtonLook kShifted{.shifted = true, .push = Edge::Sunken};
constexpr Rect kNone{};

/// The only button of a bar; "&Copy" is 28 pixels wide.
BarButton Laid(ButtonType type, DisplayType display, int height = 26, Size picture = {16, 16}) {
  CommandBarButtons buttons(WesternLetterCase());
  buttons.Add({.Caption = "&Copy",
               .Picture = SomePicture(),
               .PictureSize = picture,
               .ButtonType = type,
               .DisplayType = display},
              Metrics(height));
  return *buttons.Find(0);
}

ButtonPlaces Places(const BarButton& button, const ButtonLook& look = kFlat, int height = 26) {
  return PlacesOf(button, look, {.lineHeight = 13, .arrow = {5, 3}, .scaleHeight = height});
}

TEST(ButtonPlacesTest, APictureHasTheSameSpaceAllRound) {
  const ButtonPlaces places = Places(Laid(ButtonType::Push, DisplayType::Picture));
  EXPECT_EQ(places.all, (Rect{3, 2, 22, 22}));
  EXPECT_EQ(places.pushPart, places.all);
  EXPECT_EQ(places.picture, (Rect{6, 5, 16, 16}));
  EXPECT_EQ(places.caption, kNone);
  EXPECT_EQ(places.arrowPart, kNone);
  EXPECT_EQ(places.arrow, kNone);
}

TEST(ButtonPlacesTest, PicturesOfAllSizesAreCentredInTheirPart) {
  for (const int height : {20, 26, 27, 40, 41}) {
    for (const Size picture : {Size{16, 16}, Size{15, 8}, Size{32, 4}, Size{1, 1}, Size{0, 0}}) {
      const BarButton button = Laid(ButtonType::Push, DisplayType::Picture, height, picture);
      const auto [all, pushPart, arrowPart, place, caption, arrow] = Places(button, kFlat, height);
      SCOPED_TRACE(testing::Message()
                   << testing::PrintToString(picture) << " on a bar " << height << " high");
      EXPECT_EQ(place.width, picture.width);
      EXPECT_EQ(place.height, picture.height);
      EXPECT_LE(std::abs((place.left - all.left) - (all.right() - place.right())), 1);
      EXPECT_LE(std::abs((place.top - all.top) - (all.bottom() - place.bottom())), 1);
    }
  }
}

TEST(ButtonPlacesTest, ACaptionAloneStartsBehindThreePixels) {
  const ButtonPlaces places = Places(Laid(ButtonType::Push, DisplayType::Caption));
  EXPECT_EQ(places.all, (Rect{3, 2, 35, 22}));
  EXPECT_EQ(places.picture, kNone);
  EXPECT_EQ(places.caption.left, 6);
  EXPECT_EQ(places.caption.left + 28 + 3, places.all.right() - 1);  // and ends before as many and the edge
  EXPECT_EQ(places.caption.right(), places.all.right() - 1);
  EXPECT_EQ(places.caption.top, 6);  // 4 pixels above the line of 13, 5 below
  EXPECT_EQ(places.caption.height, 13);
}

TEST(ButtonPlacesTest, ACaptionBesideAPictureLeavesThreePixelsBehindIt) {
  const ButtonPlaces places = Places(Laid(ButtonType::Push, DisplayType::PictureAndCaption));
  EXPECT_EQ(places.all, (Rect{3, 2, 52, 22}));
  EXPECT_EQ(places.picture, (Rect{6, 5, 16, 16}));
  EXPECT_EQ(places.caption.left, 24);
  EXPECT_EQ(places.caption.left + 28 + 3, places.all.right());
  EXPECT_EQ(places.caption.right(), places.all.right() - 1);
}

TEST(ButtonPlacesTest, ADropDownButtonIsDividedBehindTheNinthColumnFromTheRightEdge) {
  struct Case {
    DisplayType display;
    Rect all, pushPart, arrowPart;
  };
  for (const auto& [display, all, pushPart, arrowPart] : std::vector<Case>{
           {DisplayType::Picture, {3, 2, 30, 22}, {3, 2, 21, 22}, {24, 2, 9, 22}},
           {DisplayType::Caption, {3, 2, 43, 22}, {3, 2, 34, 22}, {37, 2, 9, 22}},
           {DisplayType::PictureAndCaption, {3, 2, 60, 22}, {3, 2, 51, 22}, {54, 2, 9, 22}},
       }) {
    SCOPED_TRACE(static_cast<int>(display));
    const BarButton button = Laid(ButtonType::DropDown, display);
    const ButtonPlaces places = Places(button);
    EXPECT_EQ(places.all, all);
    EXPECT_EQ(places.pushPart, pushPart);
    EXPECT_EQ(places.arrowPart, arrowPart);
    EXPECT_EQ(places.pushPart.right() - 1, button.Right - 9);
    EXPECT_EQ(places.arrow, (Rect{button.Right - 6, 11, 5, 3}));
    // A mouse in a column hits the part that is drawn there.
    EXPECT_EQ(button.PartAt(places.pushPart.right() - 1), ButtonPart::Push);
    EXPECT_EQ(button.PartAt(places.arrowPart.left), ButtonPart::Arrow);
  }
}

TEST(ButtonPlacesTest, TheFaceOfADropDownButtonStaysInItsPushPart) {
  const ButtonPlaces withCaption = Places(Laid(ButtonType::DropDown, DisplayType::Caption));
  EXPECT_EQ(withCaption.caption.left, 6);
  EXPECT_EQ(withCaption.caption.right(), withCaption.pushPart.right() - 1);
  const ButtonPlaces withPicture = Places(Laid(ButtonType::DropDown, DisplayType::Picture));
  EXPECT_EQ(withPicture.picture, (Rect{6, 5, 16, 16}));  // where a push button has it
}

TEST(ButtonPlacesTest, APressedFaceIsOnePixelFurtherRightAndDown) {
  for (const auto type : {ButtonType::Push, ButtonType::DropDown}) {
    const BarButton button = Laid(type, DisplayType::PictureAndCaption);
    const ButtonPlaces up = Places(button);
    const ButtonPlaces down = Places(button, kShifted);
    EXPECT_EQ(down.all, up.all);
    EXPECT_EQ(down.pushPart, up.pushPart);
    EXPECT_EQ(down.arrowPart, up.arrowPart);
    EXPECT_EQ(down.arrow, up.arrow);
    EXPECT_EQ(down.picture, (Rect{up.picture.left + 1, up.picture.top + 1, 16, 16}));
    EXPECT_EQ(down.caption.left, up.caption.left + 1);
    EXPECT_EQ(down.caption.top, up.caption.top + 1);
    EXPECT_EQ(down.caption.right(), up.caption.right());  // the edge stays free
  }
}

TEST(ButtonPlacesTest, TheArrowIsCentredOnTheHeightOfTheBar) {
  const BarButton button = Laid(ButtonType::DropDown, DisplayType::Picture);
  for (const auto& [scaleHeight, arrowHeight, top] :
       {std::array{26, 3, 11}, std::array{26, 4, 11}, std::array{27, 3, 12}, std::array{40, 1, 19}}) {
    const ButtonPlaces places =
        PlacesOf(button, kFlat, {.lineHeight = 13, .arrow = {5, arrowHeight}, .scaleHeight = scaleHeight});
    EXPECT_EQ(places.arrow.top, top) << scaleHeight << ", " << arrowHeight;
  }
}

TEST(ButtonPlacesTest, ASeparatorHasNeitherPictureNorCaption) {
  for (const auto display : {DisplayType::Picture, DisplayType::Caption, DisplayType::PictureAndCaption}) {
    const ButtonPlaces places = Places(Laid(ButtonType::Separator, display));
    EXPECT_EQ(places.all, (Rect{3, 2, 6, 22}));
    EXPECT_EQ(places.picture, kNone);
    EXPECT_EQ(places.caption, kNone);
  }
}

TEST(ButtonPlacesTest, NoAreaIsSmallerThanNothing) {
  for (const int height : {0, 3, 4, 6, 8}) {
    for (const auto type : {ButtonType::Push, ButtonType::DropDown}) {
      SCOPED_TRACE(height);
      const ButtonPlaces places = Places(Laid(type, DisplayType::Picture, height, {}), kShifted, height);
      for (const Rect& area : {places.all, places.pushPart, places.arrowPart, places.picture}) {
        EXPECT_GE(area.width, 0);
        EXPECT_GE(area.height, 0);
      }
      EXPECT_EQ(places.pushPart.width + places.arrowPart.width, places.all.width);
      if (type == ButtonType::DropDown) {
        EXPECT_EQ(places.arrowPart.left, places.pushPart.right());
      }
    }
  }
  BarButton narrow = Laid(ButtonType::Push, DisplayType::Caption);
  narrow.Right = 5;
  EXPECT_EQ(Places(narrow).caption.width, 0);
}

}  // namespace
}  // namespace snip::test
