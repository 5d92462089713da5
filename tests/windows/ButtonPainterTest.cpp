#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "resources/resource.h"
#include "tests/support/TestCanvas.h"
#include "ui/commandbar/ButtonPainter.h"

namespace snip::test {
namespace {

constexpr COLORREF kMask = RGB(0xC0, 0xC0, 0xC0);
constexpr COLORREF kGround = RGB(20, 40, 160);
constexpr COLORREF kBack = RGB(230, 220, 200);
constexpr COLORREF kFore = RGB(10, 90, 60);
constexpr COLORREF kFace = RGB(153, 101, 250);
constexpr COLORREF kHighlight = RGB(255, 250, 180);
constexpr COLORREF kShadow = RGB(70, 80, 95);
constexpr COLORREF kDark = RGB(90, 10, 30);
constexpr COLORREF kLight = RGB(255, 240, 120);
constexpr COLORREF kMagenta = RGB(255, 0, 255);

const Legend& Colors() {
  static const Legend legend = {{'o', kGround},
                                {'b', kBack},
                                {'f', kFore},
                                {'H', kHighlight},
                                {'S', kShadow},
                                {'.', kMask},
                                {'d', kDark},
                                {'l', kLight},
                                {'m', kMagenta},
                                {'k', RGB(0, 0, 0)},
                                {'w', RGB(255, 255, 255)}};
  return legend;
}

Image Drawn(const std::vector<std::string>& rows) {
  return Draw(rows, Colors());
}

class ButtonPainterTest : public testing::Test {
 protected:
  static TestCanvas PlainCanvas(int width, int height) { return {width, height, kGround}; }

  ButtonPainter On(const TestCanvas& canvas) const {
    return {canvas.dc(),
            effects_,
            {.back = kBack, .fore = kFore, .face = kFace, .highlight = kHighlight, .shadow = kShadow}};
  }

  PaintEffects effects_;
  // Without smoothed edges, so that every pixel of a letter has the text's colour.
  const UniqueFont font_{CreateFontA(-16, 0, 0, 0, FW_NORMAL, 0, 0, 0, ANSI_CHARSET, OUT_DEFAULT_PRECIS,
                                     CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH, "Tahoma")};
};

TEST_F(ButtonPainterTest, ErasesInTheBackColour) {
  const TestCanvas canvas = PlainCanvas(5, 4);
  On(canvas).Erase({1, 1, 3, 2});
  EXPECT_EQ(canvas.Read(), Drawn({"ooooo", "obbbo", "obbbo", "ooooo"}));
}

TEST_F(ButtonPainterTest, DrawsEdgesJustInsideTheArea) {
  struct Case {
    const char* name;
    ButtonPainter::Edge (ButtonPainter::*edge)() const;
    std::vector<std::string> painted;
  };
  const std::vector<Case> cases = {
      {"raised", &ButtonPainter::Raised, {"oooooo", "oHHHSo", "oHooSo", "oSSSSo", "oooooo"}},
      {"sunken", &ButtonPainter::Sunken, {"oooooo", "oSSSHo", "oSooHo", "oHHHHo", "oooooo"}},
      {"flat", &ButtonPainter::Flat, {"oooooo", "obbbbo", "oboobo", "obbbbo", "oooooo"}},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    const TestCanvas canvas = PlainCanvas(6, 5);
    const ButtonPainter painter = On(canvas);
    painter.DrawEdge({1, 1, 4, 3}, (painter.*expected.edge)());
    EXPECT_EQ(canvas.Read(), Drawn(expected.painted));
  }
}

TEST_F(ButtonPainterTest, AFlatEdgeTakesAnEarlierOneAway) {
  const TestCanvas canvas(6, 5, kBack);
  const Image before = canvas.Read();
  const ButtonPainter painter = On(canvas);
  painter.DrawEdge({1, 1, 4, 3}, painter.Sunken());
  EXPECT_NE(canvas.Read(), before);
  painter.DrawEdge({1, 1, 4, 3}, painter.Flat());
  EXPECT_EQ(canvas.Read(), before);
}

TEST_F(ButtonPainterTest, ACheckedFaceIsAFifthLighter) {
  const auto lighter = [](int channel) {
    return static_cast<BYTE>(std::min(255L, std::lround(channel + channel * 0.2)));
  };
  for (const COLORREF face : {RGB(153, 101, 250), RGB(0, 212, 213), RGB(1, 2, 3), RGB(4, 254, 128)}) {
    const TestCanvas canvas = PlainCanvas(4, 3);
    ButtonPainter(canvas.dc(), effects_, {.face = face}).FillChecked({1, 1, 2, 1});
    Legend legend = Colors();
    legend['L'] = RGB(lighter(GetRValue(face)), lighter(GetGValue(face)), lighter(GetBValue(face)));
    EXPECT_EQ(canvas.Read(), Draw({"oooo", "oLLo", "oooo"}, legend));
  }
}

TEST_F(ButtonPainterTest, ColoursAreTheSystemsUnlessGiven) {
  const TestCanvas canvas = PlainCanvas(8, 3);
  const ButtonPainter painter(canvas.dc(), effects_);
  painter.Erase({0, 0, 8, 3});
  painter.DrawEdge({0, 0, 4, 3}, painter.Raised());
  painter.DrawEdge({4, 0, 4, 3}, painter.Sunken());
  Legend legend = Colors();
  legend['F'] = GetSysColor(COLOR_BTNFACE);
  legend['H'] = GetSysColor(COLOR_BTNHIGHLIGHT);
  legend['S'] = GetSysColor(COLOR_BTNSHADOW);
  EXPECT_EQ(canvas.Read(), Draw({"HHHSSSSH",  //
                                 "HFFSSFFH",  //
                                 "SSSSHHHH"},
                                legend));
}

TEST_F(ButtonPainterTest, AnEnabledCaptionIsDrawnOnceInTheForeColour) {
  for (const std::string caption : {"&Copy", "Save && close", "two\r\nlines", ""}) {
    SCOPED_TRACE(caption);
    const TestCanvas canvas = PlainCanvas(140, 40);
    On(canvas).DrawCaption(caption, {5, 3, 130, 30}, font_.get(), true);

    const TestCanvas reference = PlainCanvas(140, 40);
    const SelectedObject font(reference.dc(), font_.get());
    SetBkMode(reference.dc(), TRANSPARENT);
    SetTextColor(reference.dc(), kFore);
    RECT area{5, 3, 135, 33};
    DrawTextA(reference.dc(), caption.c_str(), -1, &area, DT_SINGLELINE);
    const Image expected = reference.Read();
    EXPECT_EQ(std::ranges::count(expected.pixels, kFore) > 0, !caption.empty());
    EXPECT_EQ(canvas.Read(), expected);
  }
}

TEST_F(ButtonPainterTest, ADisabledCaptionIsEtched) {
  const TestCanvas enabled = PlainCanvas(140, 40);
  On(enabled).DrawCaption("&Rename", {5, 3, 120, 30}, font_.get(), true);
  const Image letters = enabled.Read();
  const TestCanvas canvas = PlainCanvas(140, 40);
  const Image ground = canvas.Read();
  On(canvas).DrawCaption("&Rename", {5, 3, 120, 30}, font_.get(), false);
  EXPECT_EQ(canvas.Read(), Emboss(ground, letters, kFore, 0, 0, kHighlight, kShadow));
}

TEST_F(ButtonPainterTest, ACaptionStaysWithinItsArea) {
  const TestCanvas canvas = PlainCanvas(60, 40);
  On(canvas).DrawCaption("Much too long a caption", {5, 3, 20, 9}, font_.get(), true);
  const Image painted = canvas.Read();
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 60; ++x) {
      if (x >= 5 && x < 25 && y >= 3 && y < 12) continue;
      ASSERT_EQ(painted.At(x, y), kGround) << x << ',' << y;
    }
  }
}

TEST_F(ButtonPainterTest, AnEnabledPictureShowsTheGroundAtTheMaskColour) {
  const Picture picture(BitmapOf(Drawn({".d.", "lm.", "kw."})));
  const TestCanvas canvas = PlainCanvas(5, 5);
  On(canvas).DrawPicture(&picture, {1, 1, 3, 3}, kMask, true);
  EXPECT_EQ(canvas.Read(), Drawn({"ooooo", "oodoo", "olmoo", "okwoo", "ooooo"}));
  On(canvas).DrawPicture(&picture, {2, 2, 3, 3}, kMagenta, true);
  EXPECT_EQ(canvas.Read(), Drawn({"ooooo", "oodoo", "ol.d.", "oklo.", "ookw."}));
}

TEST_F(ButtonPainterTest, ADisabledBitmapIsItsDarkPixelsInTheSystemsStyle) {
  // On white, which the system takes for the ground; here the mask colour, light or dark, has to be it.
  const Picture shape(BitmapOf(Drawn({"wwwww", "wkkkw", "wkwww", "wwwww"})));
  const TestCanvas reference = PlainCanvas(9, 8);
  DrawStateA(reference.dc(), nullptr, nullptr, reinterpret_cast<LPARAM>(shape.bitmap()), 0, 2, 2, 5, 4,
             DST_BITMAP | DSS_DISABLED);
  const Image expected = reference.Read();
  ASSERT_EQ(expected.At(3, 3), GetSysColor(COLOR_BTNSHADOW));
  ASSERT_EQ(expected.At(2, 2), kGround);

  for (const char mask : {'.', 'd'}) {
    SCOPED_TRACE(mask);
    std::vector<std::string> rows = {"?????", "?kkk?", "?kll?", "??w??"};
    for (std::string& row : rows) std::ranges::replace(row, '?', mask);
    const Picture picture(BitmapOf(Drawn(rows)));
    const TestCanvas canvas = PlainCanvas(9, 8);
    On(canvas).DrawPicture(&picture, {2, 2, 5, 4}, Colors().at(mask), false);
    EXPECT_EQ(canvas.Read(), expected);
  }
}

TEST_F(ButtonPainterTest, ADisabledIconIsDrawnInTheSystemsStyle) {
  const Picture picture(IconOf(Drawn({".....", ".kkk.", ".k...", "....."}), kMask));
  const TestCanvas reference = PlainCanvas(9, 8);
  const Image ground = reference.Read();
  DrawStateA(reference.dc(), nullptr, nullptr, reinterpret_cast<LPARAM>(picture.icon()), 0, 2, 2, 5, 4,
             DST_ICON | DSS_DISABLED);
  ASSERT_NE(reference.Read(), ground);
  const TestCanvas canvas = PlainCanvas(9, 8);
  On(canvas).DrawPicture(&picture, {2, 2, 5, 4}, kMask, false);
  EXPECT_EQ(canvas.Read(), reference.Read());
}

TEST_F(ButtonPainterTest, NoPictureDrawsNothing) {
  const Picture empty;
  const TestCanvas canvas = PlainCanvas(5, 5);
  const Image ground = canvas.Read();
  for (const Picture* picture : {static_cast<const Picture*>(nullptr), &empty}) {
    for (const bool enabled : {true, false}) On(canvas).DrawPicture(picture, {1, 1, 3, 3}, kMask, enabled);
    On(canvas).DrawArrow(picture, {1, 1, 3, 3});
  }
  EXPECT_EQ(canvas.Read(), ground);
}

TEST_F(ButtonPainterTest, TheArrowHasTheCaptionsColour) {
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW);
  ASSERT_NE(arrow, nullptr);
  const TestCanvas canvas = PlainCanvas(7, 5);
  On(canvas).DrawArrow(arrow.get(), {1, 1, arrow->size().width, arrow->size().height});
  EXPECT_EQ(canvas.Read(), Drawn({"ooooooo",  //
                                  "offfffo",  //
                                  "oofffoo",  //
                                  "ooofooo",  //
                                  "ooooooo"}));
}

TEST_F(ButtonPainterTest, SeparatorsAreEtchedDownTheMiddle) {
  const TestCanvas canvas = PlainCanvas(14, 5);
  On(canvas).DrawSeparator({1, 1, 5, 3});
  On(canvas).DrawSeparator({7, 1, 6, 3});
  EXPECT_EQ(canvas.Read(), Drawn({"oooooooooooooo",  //
                                  "ooSHoooooSHooo",  //
                                  "ooSHoooooSHooo",  //
                                  "ooSHoooooSHooo",  //
                                  "oooooooooooooo"}));
}

TEST_F(ButtonPainterTest, TheGripIsTwoRaisedBars) {
  const TestCanvas canvas = PlainCanvas(11, 7);
  On(canvas).DrawGrip(6);
  EXPECT_EQ(canvas.Read(), Drawn({"ooooooooooo",  //
                                  "ooooooooooo",  //
                                  "oooHHSHHSoo",  //
                                  "oooHoSHoSoo",  //
                                  "oooHoSHoSoo",  //
                                  "oooSSSSSSoo",  //
                                  "ooooooooooo"}));
}

TEST_F(ButtonPainterTest, ABarHasABorderUnlessItsStyleIsNone) {
  const TestCanvas canvas = PlainCanvas(5, 4);
  const Image ground = canvas.Read();
  On(canvas).DrawBorder({0, 0, 5, 4}, 0);
  EXPECT_EQ(canvas.Read(), ground);
  for (const int style : {1, 2, -1}) {
    const TestCanvas bordered = PlainCanvas(5, 4);
    On(bordered).DrawBorder({0, 0, 5, 4}, style);
    EXPECT_EQ(bordered.Read(), Drawn({"HHHHS", "HoooS", "HoooS", "SSSSS"}));
  }
}

TEST_F(ButtonPainterTest, TheDeviceContextKeepsItsState) {
  const TestCanvas canvas = PlainCanvas(60, 30);
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW);
  SetTextColor(canvas.dc(), kDark);
  SetBkColor(canvas.dc(), kLight);
  SetBkMode(canvas.dc(), OPAQUE);
  const HGDIOBJ font = GetCurrentObject(canvas.dc(), OBJ_FONT);
  const HGDIOBJ brush = GetCurrentObject(canvas.dc(), OBJ_BRUSH);
  for (const bool enabled : {true, false}) {
    On(canvas).DrawCaption("&Copy", {0, 0, 60, 30}, font_.get(), enabled);
    On(canvas).DrawPicture(arrow.get(), {0, 0, 5, 3}, kMask, enabled);
  }
  On(canvas).DrawEdge({0, 0, 9, 9}, On(canvas).Raised());
  EXPECT_EQ(GetTextColor(canvas.dc()), kDark);
  EXPECT_EQ(GetBkColor(canvas.dc()), kLight);
  EXPECT_EQ(GetBkMode(canvas.dc()), OPAQUE);
  EXPECT_EQ(GetCurrentObject(canvas.dc(), OBJ_FONT), font);
  EXPECT_EQ(GetCurrentObject(canvas.dc(), OBJ_BRUSH), brush);
}

TEST_F(ButtonPainterTest, TenThousandPaintsLeaveNoObjectBehind) {
  const TestCanvas canvas = PlainCanvas(60, 30);
  const auto bitmap = Picture::FromResource(IDB_COPY);
  const Picture icon(IconOf(Drawn({".d.", "l.d", "d.."}), kMask));
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW);
  const ButtonPainter painter = On(canvas);
  const auto paintButton = [&] {
    painter.Erase({0, 0, 60, 30});
    painter.FillChecked({0, 0, 60, 30});
    for (const bool enabled : {true, false}) {
      painter.DrawCaption("&Copy", {20, 2, 40, 20}, font_.get(), enabled);
      painter.DrawPicture(bitmap.get(), {2, 2, 16, 16}, kMask, enabled);
      painter.DrawPicture(&icon, {2, 2, 3, 3}, kMask, enabled);
    }
    painter.DrawArrow(arrow.get(), {40, 5, 5, 3});
    painter.DrawEdge({0, 0, 60, 30}, painter.Raised());
    painter.DrawSeparator({50, 2, 5, 20});
    painter.DrawGrip(28);
    painter.DrawBorder({0, 0, 60, 30}, 1);
    return 13;
  };
  paintButton();  // what the system itself makes on first use
  const int before = FreeGdiHandles();
  for (int paints = 0; paints < 10000;) paints += paintButton();
  EXPECT_EQ(FreeGdiHandles(), before);
}

}  // namespace
}  // namespace snip::test
