#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "resources/resource.h"
#include "tests/support/TestCanvas.h"
#include "ui/commandbar/ButtonLook.h"
#include "ui/commandbar/ButtonPainter.h"
#include "ui/commandbar/PaintEffects.h"
#include "ui/commandbar/Picture.h"

// What is made of pictures, and the parts of a button, drawn as letters.

namespace snip::test {
namespace {

constexpr COLORREF kMask = RGB(0xC0, 0xC0, 0xC0);
constexpr COLORREF kGround = RGB(20, 40, 160);
constexpr COLORREF kDark = RGB(90, 10, 30);
constexpr COLORREF kLight = RGB(255, 240, 120);
constexpr COLORREF kStripe = RGB(250, 130, 5);
constexpr COLORREF kMagenta = RGB(120, 0, 120);  // dark, as masks go
constexpr COLORREF kHighlight = RGB(3, 230, 90);
constexpr COLORREF kShadow = RGB(70, 80, 95);
constexpr COLORREF kBack = RGB(230, 220, 200);
constexpr COLORREF kFore = RGB(10, 90, 60);
constexpr COLORREF kFace = RGB(153, 101, 250);

using Rows = std::vector<std::string>;

/// "F", "E", "A" and "T" are the system's colours of a button: face, edge of light, edge of shadow, text.
const Legend& Colors() {
  static const Legend legend = {{'.', kMask},
                                {'o', kGround},
                                {'d', kDark},
                                {'l', kLight},
                                {'s', kStripe},
                                {'m', kMagenta},
                                {'k', RGB(0, 0, 0)},
                                {'w', RGB(255, 255, 255)},
                                {'H', kHighlight},
                                {'S', kShadow},
                                {'b', kBack},
                                {'f', kFore},
                                {'L', Lightened(kFace)},
                                {'F', GetSysColor(COLOR_BTNFACE)},
                                {'E', GetSysColor(COLOR_BTNHIGHLIGHT)},
                                {'A', GetSysColor(COLOR_BTNSHADOW)},
                                {'T', GetSysColor(COLOR_BTNTEXT)}};
  return legend;
}

Image Drawn(const Rows& rows) {
  return Draw(rows, Colors());
}

Picture BitmapPicture(const Rows& rows) {
  return Picture(BitmapOf(Drawn(rows)));
}

/// Transparent at the dots.
Picture IconPicture(const Rows& rows) {
  return Picture(IconOf(Drawn(rows), kMask));
}

TestCanvas PlainCanvas(int width, int height) {
  return {width, height, kGround};
}

using Paint = std::function<void(const PaintEffects& effects, HDC dc, const Picture* picture)>;

// The effects with all that they are given but the picture.

Paint Normal(int x, int y, int width, int height, int fromX, int fromY) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.PaintNormalStdPic(dc, x, y, width, height, picture, fromX, fromY);
  };
}
Paint Transparent(int x, int y, int width, int height, int fromX, int fromY, COLORREF mask = kMask,
                  HPALETTE palette = nullptr) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.PaintTransparentStdPic(dc, x, y, width, height, picture, fromX, fromY, mask, palette);
  };
}
Paint Disabled(int x, int y, int width, int height, int fromX, int fromY, COLORREF mask = kMask,
               COLORREF highlight = kHighlight, COLORREF shadow = kShadow, HPALETTE palette = nullptr) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.PaintDisabledStdPic(dc, x, y, width, height, picture, fromX, fromY, mask, highlight, shadow,
                                palette);
  };
}
Paint BySystem(int x, int y, int width, int height) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.PaintDisabledStdPic2(dc, x, y, width, height, picture);
  };
}
Paint OnFace(int x, int y, int width, int height, int fromX, int fromY) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.PaintDisabledStdPic3(dc, x, y, width, height, picture, fromX, fromY);
  };
}
Paint Tiles(int beginX, int beginY, int width, int height, int tileWidth = 2, int tileHeight = 2) {
  return [=](const PaintEffects& effects, HDC dc, const Picture* picture) {
    effects.BoxStdPic(dc, beginX, beginY, width, height, picture, tileWidth, tileHeight);
  };
}

/// Every effect that takes a picture.
std::vector<Paint> Effects(int width = 4, int height = 4) {
  return {Normal(1, 1, width, height, 0, 0),   Transparent(1, 1, width, height, 0, 0),
          Disabled(1, 1, width, height, 0, 0), BySystem(1, 1, width, height),
          OnFace(1, 1, width, height, 0, 0),   Tiles(0, 0, 4, 4, std::min(width, 2), std::min(height, 2))};
}

TEST(PaintEffectsTest, DrawsAPictureInEachWay) {
  const Rows icon = {"d..l", ".ks.", "l..d"};
  const Rows tile = {"dlw", "smw", "www"};
  struct Case {
    const char* name;
    Picture picture;
    Paint paint;
    Rows painted;
  };
  std::vector<Case> cases;
  const auto bitmap = [&](const char* name, const Rows& rows, Paint paint, const Rows& painted) {
    cases.push_back({name, BitmapPicture(rows), std::move(paint), painted});
  };
  const auto ofIcon = [&](const char* name, const Rows& rows, Paint paint, const Rows& painted) {
    cases.push_back({name, IconPicture(rows), std::move(paint), painted});
  };
  bitmap("part of a bitmap", {"kkkkk", "kdl.k", "kw.dk", "kkkkk"}, Normal(2, 1, 3, 2, 1, 1),
         {"oooooo", "oodl.o", "oow.do", "oooooo"});
  ofIcon("an icon in its own size", {"d..d", ".ll.", "k..w"}, Normal(1, 1, 2, 1, 0, 0),
         {"oooooo", "odoodo", "oolloo", "okoowo"});
  bitmap("transparent", {"kkkkk", "kd.lk", "k.w.k", "kkk.k"}, Transparent(2, 1, 3, 3, 1, 1),
         {"oooooo", "oodolo", "ooowoo", "ookkoo"});
  bitmap("transparent in a system colour", {"TdT.", "dTTd"},
         Transparent(0, 0, 4, 2, 0, 0, SystemColor(COLOR_BTNTEXT)), {"odo.", "dood"});
  for (const COLORREF mask : {kMask, kMagenta, kHighlight}) {
    ofIcon("an icon whatever the mask", icon, Transparent(1, 1, 4, 3, 0, 0, mask),
           {"oooooo", "odoolo", "ooksoo", "oloodo"});
  }
  ofIcon("part of an icon", icon, Transparent(1, 1, 2, 2, 2, 1), {"oooo", "osoo", "oodo", "oooo"});
  bitmap("embossed", {"mmmmmm", "mddlmm", "mdwwdm", "mmlkmm", "mmmmmm"}, Disabled(1, 2, 4, 3, 1, 1, kMagenta),
         {"ooooooo", "ooooooo", "oSSoooo", "oSHHSoo", "ooHSoHo", "ooooHoo"});
  // The mask is the colour of text: without it, it would be the darkest shape of all.
  bitmap("embossed in system colours", {"TTTT", "TddT", "TdlT", "TTTT"},
         Disabled(1, 1, 4, 4, 0, 0, SystemColor(COLOR_BTNTEXT), SystemColor(COLOR_BTNHIGHLIGHT),
                  SystemColor(COLOR_BTNSHADOW)),
         {"oooooo", "oooooo", "ooAAoo", "ooAEEo", "oooEoo", "oooooo"});
  bitmap("on a button's face", {"kkkkkk", "kd.d.k", "klddwk", "k..dkk"}, OnFace(2, 1, 4, 3, 1, 1),
         {"oooooooo", "ooAFAFoo", "ooFAAEoo", "ooFFAAoo", "oooooEEo", "oooooooo"});
  ofIcon("an icon on a button's face", {"kkkk", "d..k", "l.dk"}, OnFace(1, 1, 3, 2, 0, 1),
         {"oooooo", "oAFFoo", "oFEAoo", "ooooEo"});
  // The tile that begins just at the width is still drawn, and whole.
  bitmap("tiles up to a place", tile, Tiles(0, 0, 4, 1), {"dldldlooo", "smsmsmooo", "ooooooooo"});
  bitmap("tiles from a number on", tile, Tiles(1, 2, 5, 4),
         {"ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo", "oodldlooo", "oosmsmooo"});
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    const TestCanvas canvas = PlainCanvas(static_cast<int>(expected.painted.front().size()),
                                          static_cast<int>(expected.painted.size()));
    expected.paint(PaintEffects(), canvas.dc(), &expected.picture);
    EXPECT_EQ(canvas.Read(), Drawn(expected.painted));
  }
}

TEST(PaintEffectsTest, AMonochromeSourceHasItsContextsColours) {
  const WORD bits[] = {0x00A0, 0x0050};  // 1010 and 0101: the first byte of a row is the low one
  const UniqueBitmap bitmap(CreateBitmap(4, 2, 1, 1, bits));
  const MemoryDC source(bitmap.get());
  const PaintEffects effects;
  SetTextColor(source.get(), kDark);
  SetBkColor(source.get(), kLight);
  const TestCanvas canvas = PlainCanvas(4, 2);
  effects.PaintTransparentDC(canvas.dc(), 0, 0, 4, 2, source.get(), 0, 0, kMask);
  EXPECT_EQ(canvas.Read(), Drawn({"ldld", "dldl"}));
  effects.PaintTransparentDC(canvas.dc(), 0, 0, 4, 1, source.get(), 0, 1, kLight);
  EXPECT_EQ(canvas.Read(), Drawn({"dddd", "dldl"}));
}

int CALLBACK CountCopy(HDC, HANDLETABLE*, const ENHMETARECORD* step, int, LPARAM counter) {
  if (step->iType == EMR_BITBLT || step->iType == EMR_STRETCHBLT) ++*reinterpret_cast<int*>(counter);
  return 1;
}

TEST(PaintEffectsTest, TransparentChangesTheDestinationOnce) {
  const Picture picture = BitmapPicture({"d..l", ".ld."});
  const HDC recorder = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
  Transparent(0, 0, 4, 2, 0, 0)(PaintEffects(), recorder, &picture);
  const UniqueMetafile record(CloseEnhMetaFile(recorder));
  int copies = 0;
  EnumEnhMetaFile(nullptr, record.get(), &CountCopy, &copies, nullptr);
  EXPECT_EQ(copies, 1);
}

TEST(PaintEffectsTest, ADisabledIconComesInTheSystemsIconSize) {
  const int size = GetSystemMetrics(SM_CXICON);
  Image left{16, 16, std::vector<COLORREF>(256, kMask)};
  for (int i = 0; i < 256; ++i) left.At(i % 16, i / 16) = i % 16 < 8 ? kDark : i % 16 == 8 ? kLight : kMask;
  const Picture picture(IconOf(left, kMask));
  const TestCanvas canvas = PlainCanvas(size + 3, size + 4);
  Disabled(2, 3, size, size, 0, 0, kMagenta)(PaintEffects(), canvas.dc(), &picture);
  const Image drawn = canvas.Read();
  for (const int y : {3, size + 2}) EXPECT_EQ(drawn.At(2, y), kShadow);
  EXPECT_EQ(drawn.At(1 + size / 2, size + 2), kShadow);
  EXPECT_EQ(drawn.At(2 + size / 2, size + 3), kHighlight);
  for (const int x : {3 + size / 2, size}) EXPECT_EQ(drawn.At(x, size + 2), kGround) << "light, transparent";
}

TEST(PaintEffectsTest, ThePictureOrTheAreaMayBeMissing) {
  const Picture empty;
  const Picture metafile(
      UniqueMetafile(CloseEnhMetaFile(CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr))));
  const Picture bitmap = BitmapPicture({"dddd", "dddd", "dddd", "dddd"});
  const Picture icon = IconPicture({"dddd", "dddd", "dddd", "dddd"});
  const PaintEffects effects;
  const TestCanvas canvas = PlainCanvas(6, 6);
  const Image ground = canvas.Read();
  std::string failed;
  for (const Paint& paint : Effects()) {
    paint(effects, canvas.dc(), nullptr);
    paint(effects, canvas.dc(), &empty);
    try {
      paint(effects, canvas.dc(), &metafile);
      failed += '-';
    } catch (const InvalidPicture& error) {
      failed += error.Number() == 481 ? 'x' : '?';
    }
  }
  EXPECT_EQ(failed, "xxxx--");
  for (const auto& [width, height] : {SIZE{0, 4}, SIZE{4, 0}, SIZE{-2, 2}, SIZE{2, -2}}) {
    for (const Picture* picture : {&bitmap, &icon}) {
      for (const std::size_t effect : {1U, 2U, 4U, 5U})
        Effects(width, height)[effect](effects, canvas.dc(), picture);
    }
  }
  EXPECT_EQ(canvas.Read(), ground);
}

/// Colours given as an index show which palette the images are seen through, on a screen that needs none too.
TEST(PaintEffectsTest, ImagesAreSeenThroughTheCallersPaletteOrElseTheHalftoneOne) {
  constexpr UINT kIndex = 1;
  const UniquePalette halftone(CreateHalftonePalette(WindowDC(nullptr).get()));
  const UniquePalette palette(CreateHalftonePalette(WindowDC(nullptr).get()));
  const PALETTEENTRY magenta{GetRValue(kMagenta), GetGValue(kMagenta), GetBValue(kMagenta), 0};
  SetPaletteEntries(palette.get(), kIndex, 1, &magenta);
  PALETTEENTRY entry{};
  ASSERT_EQ(GetPaletteEntries(halftone.get(), kIndex, 1, &entry), 1U);
  Legend legend = Colors();
  legend['h'] = RGB(entry.peRed, entry.peGreen, entry.peBlue);
  const Image image = Draw({"mlhl", "llll"}, legend);
  const Picture bitmap(BitmapOf(image));
  const Picture icon(IconOf(image, kMask));
  for (const bool given : {true, false}) {
    SCOPED_TRACE(given);
    const HPALETTE through = given ? palette.get() : nullptr;
    for (const Picture* picture : {&bitmap, &icon}) {
      const TestCanvas canvas = PlainCanvas(4, 2);
      Transparent(0, 0, 4, 2, 0, 0, PALETTEINDEX(kIndex), through)(PaintEffects(), canvas.dc(), picture);
      EXPECT_EQ(canvas.Read(), Draw({given ? "olhl" : "mlol", "llll"}, legend));
    }
    const TestCanvas canvas = PlainCanvas(4, 2);
    Disabled(0, 0, 4, 2, 0, 0, PALETTEINDEX(kIndex), kHighlight, kShadow, through)(PaintEffects(),
                                                                                   canvas.dc(), &bitmap);
    EXPECT_EQ(canvas.Read(), given ? Drawn({"ooSo", "oooH"}) : Drawn({"Sooo", "oHoo"}));
  }
  EXPECT_EQ(GetObjectType(palette.get()), static_cast<DWORD>(OBJ_PAL));
}

class ButtonPainterTest : public testing::Test {
 protected:
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

TEST_F(ButtonPainterTest, DrawsTheParts) {
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW);
  ASSERT_NE(arrow, nullptr);
  const Picture picture = BitmapPicture({".d.", "lm.", "kw."});
  const Picture empty;
  const TestCanvas canvas = PlainCanvas(65, 7);
  const ButtonPainter on = On(canvas);
  on.DrawGrip(6);
  on.Erase({12, 1, 3, 2});
  on.DrawEdge({17, 1, 4, 3}, on.Raised());
  on.DrawEdge({23, 1, 4, 3}, on.Sunken());
  for (const auto& edge : {on.Sunken(), on.Flat()}) on.DrawEdge({29, 1, 4, 3}, edge);
  on.DrawSeparator({35, 1, 5, 3});
  on.DrawSeparator({41, 1, 6, 3});
  on.DrawArrow(arrow.get(), {49, 1, arrow->size().width, arrow->size().height});
  on.DrawPicture(&picture, {56, 1, 3, 3}, kMask, true);
  on.DrawPicture(&picture, {61, 1, 3, 3}, kMagenta, true);
  on.FillChecked({1, 6, 2, 1});
  for (const Picture* none : {static_cast<const Picture*>(nullptr), &empty}) {
    for (const bool enabled : {true, false}) on.DrawPicture(none, {1, 1, 3, 3}, kMask, enabled);
    on.DrawArrow(none, {1, 1, 3, 3});
  }
  EXPECT_EQ(canvas.Read(), Drawn({"ooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo",
                                  "oooooooooooobbbooHHHSooSSSHoobbbboooSHoooooSHoooofffffooodooo.d.o",
                                  "oooHHSHHSooobbbooHooSooSooHoobooboooSHoooooSHooooofffooolmooolo.o",
                                  "oooHoSHoSooooooooSSSSooHHHHoobbbboooSHoooooSHoooooofooookwoookw.o",
                                  "oooHoSHoSoooooooooooooooooooooooooooooooooooooooooooooooooooooooo",
                                  "oooSSSSSSoooooooooooooooooooooooooooooooooooooooooooooooooooooooo",
                                  "oLLoooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"}));
  for (const int style : {0, 1, -1}) {
    const TestCanvas bar = PlainCanvas(5, 4);
    On(bar).DrawBorder({0, 0, 5, 4}, style);
    EXPECT_EQ(bar.Read(),
              style == 0 ? PlainCanvas(5, 4).Read() : Drawn({"HHHHS", "HoooS", "HoooS", "SSSSS"}));
  }
  const TestCanvas system = PlainCanvas(8, 3);
  const ButtonPainter painter(system.dc(), effects_);
  painter.Erase({0, 0, 8, 3});
  painter.DrawEdge({0, 0, 4, 3}, painter.Raised());
  painter.DrawEdge({4, 0, 4, 3}, painter.Sunken());
  EXPECT_EQ(system.Read(), Drawn({"EEEAAAAE", "EFFAAFFE", "AAAAEEEE"}))
      << "the system's colours unless given";
}

TEST_F(ButtonPainterTest, ACaptionIsDrawnOnceWithinItsAreaAndEtchedWhenDisabled) {
  for (const std::string caption :
       {"&Copy", "Save && close", "two\r\nlines", "Much too long a caption", ""}) {
    SCOPED_TRACE(caption);
    const TestCanvas canvas = PlainCanvas(140, 40);
    On(canvas).DrawCaption(caption, {5, 3, 90, 9}, font_.get(), true);

    const TestCanvas reference = PlainCanvas(140, 40);
    const SelectedObject font(reference.dc(), font_.get());
    SetBkMode(reference.dc(), TRANSPARENT);
    SetTextColor(reference.dc(), kFore);
    RECT area{5, 3, 95, 12};
    DrawTextA(reference.dc(), caption.c_str(), -1, &area, DT_SINGLELINE);
    const Image letters = reference.Read();
    EXPECT_EQ(std::ranges::count(letters.pixels, kFore) > 0, !caption.empty());
    EXPECT_EQ(canvas.Read(), letters);
  }
  const TestCanvas etched = PlainCanvas(140, 40);
  ButtonPainter(etched.dc(), effects_, {.fore = kHighlight})
      .DrawCaption("&Rename", {6, 4, 120, 30}, font_.get(), true);
  ButtonPainter(etched.dc(), effects_, {.fore = kShadow})
      .DrawCaption("&Rename", {5, 3, 120, 30}, font_.get(), true);
  const TestCanvas disabled = PlainCanvas(140, 40);
  On(disabled).DrawCaption("&Rename", {5, 3, 120, 30}, font_.get(), false);
  EXPECT_EQ(disabled.Read(), etched.Read());
}

TEST_F(ButtonPainterTest, ADisabledPictureIsItsDarkPixelsInTheSystemsStyle) {
  const auto bySystem = [](const Picture& picture, LPARAM handle, UINT type) {
    const TestCanvas reference = PlainCanvas(9, 8);
    DrawStateA(reference.dc(), nullptr, nullptr, handle, 0, 2, 2, picture.size().width, picture.size().height,
               type | DSS_DISABLED);
    Image drawn = reference.Read();
    EXPECT_NE(drawn, PlainCanvas(9, 8).Read());
    return drawn;
  };
  // On white, which the system takes for the ground; here the mask colour, light or dark, has to be it.
  const Picture shape = BitmapPicture({"wwwww", "wkkkw", "wkwww", "wwwww"});
  const Image expected = bySystem(shape, reinterpret_cast<LPARAM>(shape.bitmap()), DST_BITMAP);
  for (const char mask : {'.', 'd'}) {
    SCOPED_TRACE(mask);
    Rows rows = {"?????", "?kkk?", "?kll?", "??w??"};
    for (std::string& row : rows) std::ranges::replace(row, '?', mask);
    const Picture picture = BitmapPicture(rows);
    const TestCanvas canvas = PlainCanvas(9, 8);
    On(canvas).DrawPicture(&picture, {2, 2, 5, 4}, Colors().at(mask), false);
    EXPECT_EQ(canvas.Read(), expected);
  }
  const TestCanvas whole = PlainCanvas(9, 8);
  BySystem(2, 2, 5, 4)(effects_, whole.dc(), &shape);
  EXPECT_EQ(whole.Read(), expected);

  const Picture icon = IconPicture({".....", ".kkk.", ".k...", "....."});
  const TestCanvas canvas = PlainCanvas(9, 8);
  On(canvas).DrawPicture(&icon, {2, 2, 5, 4}, kMask, false);
  EXPECT_EQ(canvas.Read(), bySystem(icon, reinterpret_cast<LPARAM>(icon.icon()), DST_ICON));
}

/// All that a painting routine could leave changed in a device context.
std::vector<std::intptr_t> StateOf(HDC dc) {
  std::vector<std::intptr_t> state = {static_cast<std::intptr_t>(GetTextColor(dc)),
                                      static_cast<std::intptr_t>(GetBkColor(dc)), GetBkMode(dc)};
  for (const UINT type : std::initializer_list<UINT>{OBJ_BRUSH, OBJ_PEN, OBJ_FONT, OBJ_BITMAP, OBJ_PAL})
    state.push_back(reinterpret_cast<std::intptr_t>(GetCurrentObject(dc, type)));
  return state;
}

TEST_F(ButtonPainterTest, TenThousandPaintsLeaveContextsAsTheyWereAndNoObjectBehind) {
  const Rows rows = {"dl.d", "l.dd", ".ddl", "ddl."};
  const Picture pictures[] = {BitmapPicture(rows), IconPicture(rows)};
  const UniqueBitmap sourceBitmap = BitmapOf(Drawn(rows));
  const MemoryDC source(sourceBitmap.get());
  const TestCanvas canvas = PlainCanvas(60, 30);
  const HDC dc = canvas.dc();
  for (const HDC each : {dc, source.get()}) SetTextColor(each, kStripe), SetBkColor(each, kDark);
  const auto before = StateOf(dc);
  const auto sourceBefore = StateOf(source.get());
  const ButtonPainter painter = On(canvas);
  const auto paintAll = [&] {
    const PaintEffects own;
    for (const Picture& picture : pictures) {
      for (const Paint& paint : Effects()) {
        paint(own, dc, &picture);
        ASSERT_EQ(StateOf(dc), before);
      }
      for (const bool enabled : {true, false}) painter.DrawPicture(&picture, {2, 2, 4, 4}, kMask, enabled);
    }
    own.PaintTransparentDC(dc, 0, 0, 4, 4, source.get(), 0, 0, kMask);
    own.PaintDisabledDC(dc, 0, 0, 4, 4, source.get(), 0, 0, kMask, kHighlight, kShadow);
    for (const bool enabled : {true, false})
      painter.DrawCaption("&Copy", {20, 2, 40, 20}, font_.get(), enabled);
    painter.FillChecked({0, 0, 60, 30});
    painter.DrawSeparator({50, 2, 5, 20});
    painter.DrawGrip(28);
    painter.DrawBorder({0, 0, 60, 30}, 1);
    ASSERT_EQ(StateOf(dc), before);
    ASSERT_EQ(StateOf(source.get()), sourceBefore);
  };
  paintAll();  // what the system itself makes on first use
  const int free = FreeGdiHandles();
  for (int paints = 0; paints < 10000; paints += 22) paintAll();
  EXPECT_EQ(FreeGdiHandles(), free);
}

}  // namespace
}  // namespace snip::test
