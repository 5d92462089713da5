#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/TestCanvas.h"
#include "ui/commandbar/PaintEffects.h"

namespace snip::test {
namespace {

constexpr COLORREF kMask = RGB(0xC0, 0xC0, 0xC0);
constexpr COLORREF kGround = RGB(20, 40, 160);
constexpr COLORREF kStripe = RGB(250, 130, 5);
constexpr COLORREF kDark = RGB(90, 10, 30);
constexpr COLORREF kLight = RGB(255, 240, 120);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kMagenta = RGB(120, 0, 120);  // dark, as masks go
constexpr COLORREF kHighlight = RGB(3, 230, 90);
constexpr COLORREF kShadow = RGB(70, 80, 95);

const Legend& Colors() {
  static const Legend legend = {{'.', kMask},      {'o', kGround}, {'s', kStripe}, {'d', kDark},
                                {'l', kLight},     {'k', kBlack},  {'w', kWhite},  {'m', kMagenta},
                                {'H', kHighlight}, {'S', kShadow}};
  return legend;
}

Image Drawn(const std::vector<std::string>& rows) {
  return Draw(rows, Colors());
}

Picture BitmapPicture(const std::vector<std::string>& rows) {
  return Picture(BitmapOf(Drawn(rows)));
}

/// Transparent at the dots.
Picture IconPicture(const std::vector<std::string>& rows) {
  return Picture(IconOf(Drawn(rows), kMask));
}

Picture MetafilePicture() {
  return Picture(UniqueMetafile(CloseEnhMetaFile(CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr))));
}

/// Every effect that takes a picture, at (1, 1) of a canvas.
struct PictureEffect {
  const char* name;
  std::function<void(const PaintEffects&, HDC, const Picture*)> paint;
};
std::vector<PictureEffect> PictureEffects() {
  return {
      {"PaintNormalStdPic",
       [](const PaintEffects& effects, HDC dc, const Picture* picture) {
         effects.PaintNormalStdPic(dc, 1, 1, 4, 4, picture, 0, 0);
       }},
      {"PaintTransparentStdPic",
       [](const PaintEffects& effects, HDC dc, const Picture* picture) {
         effects.PaintTransparentStdPic(dc, 1, 1, 4, 4, picture, 0, 0, kMask);
       }},
      {"PaintDisabledStdPic",
       [](const PaintEffects& effects, HDC dc, const Picture* picture) {
         effects.PaintDisabledStdPic(dc, 1, 1, 4, 4, picture, 0, 0, kMask, kHighlight, kShadow);
       }},
      {"PaintDisabledStdPic2",
       [](const PaintEffects& effects, HDC dc, const Picture* picture) {
         effects.PaintDisabledStdPic2(dc, 1, 1, 4, 4, picture);
       }},
      {"PaintDisabledStdPic3",
       [](const PaintEffects& effects, HDC dc, const Picture* picture) {
         effects.PaintDisabledStdPic3(dc, 1, 1, 4, 4, picture, 0, 0);
       }},
      {"BoxStdPic", [](const PaintEffects& effects, HDC dc,
                       const Picture* picture) { effects.BoxStdPic(dc, 0, 0, 4, 4, picture, 2, 2); }},
  };
}

/// All that a painting routine could leave changed in a device context.
struct ContextState {
  explicit ContextState(HDC dc)
      : textColor(GetTextColor(dc)),
        backColor(GetBkColor(dc)),
        mode(GetBkMode(dc)),
        objects{GetCurrentObject(dc, OBJ_BRUSH), GetCurrentObject(dc, OBJ_PEN),
                GetCurrentObject(dc, OBJ_FONT), GetCurrentObject(dc, OBJ_BITMAP),
                GetCurrentObject(dc, OBJ_PAL)} {}
  COLORREF textColor;
  COLORREF backColor;
  int mode;
  std::vector<HGDIOBJ> objects;
  friend bool operator==(const ContextState&, const ContextState&) = default;
};

/// Runs on a DIB section and on a bitmap in the screen's format.
class PaintEffectsTest : public testing::TestWithParam<TestCanvas::Kind> {
 protected:
  TestCanvas CanvasOf(const std::vector<std::string>& rows) { return {Drawn(rows), GetParam()}; }
  TestCanvas PlainCanvas(int width, int height) { return {width, height, kGround, GetParam()}; }

  PaintEffects effects_;
};

INSTANTIATE_TEST_SUITE_P(PaintEffects, PaintEffectsTest,
                         testing::Values(TestCanvas::Kind::DibSection, TestCanvas::Kind::ScreenBitmap),
                         [](const auto& test) {
                           return test.param == TestCanvas::Kind::DibSection ? "DibSection" : "ScreenBitmap";
                         });

TEST_P(PaintEffectsTest, NormalCopiesThatPartOfABitmap) {
  const Picture picture = BitmapPicture({"kkkkk",  //
                                         "kdl.k",  //
                                         "kw.dk",  //
                                         "kkkkk"});
  const TestCanvas canvas = PlainCanvas(6, 5);
  effects_.PaintNormalStdPic(canvas.dc(), 2, 1, 3, 2, &picture, 1, 1);
  EXPECT_EQ(canvas.Read(), Drawn({"oooooo",  //
                                  "oodl.o",  //
                                  "oow.do",  //
                                  "oooooo",  //
                                  "oooooo"}));
}

TEST_P(PaintEffectsTest, NormalDrawsAnIconInItsNaturalSize) {
  const Picture picture = IconPicture({"d..d",  //
                                       ".ll.",  //
                                       "k..w"});
  const TestCanvas canvas = PlainCanvas(6, 5);
  effects_.PaintNormalStdPic(canvas.dc(), 1, 1, 2, 1, &picture, 0, 0);
  EXPECT_EQ(canvas.Read(), Drawn({"oooooo",  //
                                  "odoodo",  //
                                  "oolloo",  //
                                  "okoowo",  //
                                  "oooooo"}));
}

TEST_P(PaintEffectsTest, TransparentShowsTheGroundAtTheMaskColour) {
  const Picture picture = BitmapPicture({"kkkkk",  //
                                         "kd.lk",  //
                                         "k.w.k",  //
                                         "kkk.k"});
  const TestCanvas canvas = CanvasOf({"osososo",  //
                                      "sososos",  //
                                      "osososo",  //
                                      "sososos",  //
                                      "osososo"});
  SetTextColor(canvas.dc(), kDark);
  SetBkColor(canvas.dc(), kLight);
  effects_.PaintTransparentStdPic(canvas.dc(), 2, 1, 3, 3, &picture, 1, 1, kMask);
  EXPECT_EQ(GetTextColor(canvas.dc()), kDark);
  EXPECT_EQ(GetBkColor(canvas.dc()), kLight);
  EXPECT_EQ(canvas.Read(), Drawn({"osososo",  //
                                  "sodolos",  //
                                  "osowoso",  //
                                  "sokksos",  //
                                  "osososo"}));
}

TEST_P(PaintEffectsTest, TransparentTakesASystemColourForTheMask) {
  Legend legend = Colors();
  legend['F'] = GetSysColor(COLOR_HIGHLIGHT);
  const Picture picture(BitmapOf(Draw({"FdF.", "dFFd"}, legend)));
  const TestCanvas canvas = PlainCanvas(4, 2);
  effects_.PaintTransparentStdPic(canvas.dc(), 0, 0, 4, 2, &picture, 0, 0, SystemColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(canvas.Read(), Drawn({"odo.", "dood"}));
}

TEST_P(PaintEffectsTest, TransparentDrawsAMonochromeSourceInItsContextsColours) {
  const WORD bits[] = {0x00A0, 0x0050};  // 1010 and 0101: the first byte of a row is the low one
  const UniqueBitmap bitmap(CreateBitmap(4, 2, 1, 1, bits));
  const MemoryDC source(bitmap.get());
  SetTextColor(source.get(), kDark);
  SetBkColor(source.get(), kLight);
  const TestCanvas canvas = PlainCanvas(4, 2);
  effects_.PaintTransparentDC(canvas.dc(), 0, 0, 4, 2, source.get(), 0, 0, kMask);
  EXPECT_EQ(canvas.Read(), Drawn({"ldld", "dldl"}));
  effects_.PaintTransparentDC(canvas.dc(), 0, 0, 4, 1, source.get(), 0, 1, kLight);
  EXPECT_EQ(canvas.Read(), Drawn({"dddd", "dldl"}));
  SetTextColor(source.get(), kStripe);
  effects_.PaintTransparentDC(canvas.dc(), 0, 1, 4, 1, source.get(), 0, 0, kLight);
  EXPECT_EQ(canvas.Read(), Drawn({"dddd", "dsds"}));
}

TEST_P(PaintEffectsTest, TransparentChangesTheDestinationOnce) {
  const Picture picture = BitmapPicture({"d..l", ".ld."});
  const HDC recorder = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
  effects_.PaintTransparentStdPic(recorder, 0, 0, 4, 2, &picture, 0, 0, kMask);
  const HENHMETAFILE record = CloseEnhMetaFile(recorder);
  int copies = 0;
  const auto count = [](HDC, HANDLETABLE*, const ENHMETARECORD* step, int, LPARAM counter) CALLBACK -> int {
    if (step->iType == EMR_BITBLT || step->iType == EMR_STRETCHBLT) ++*reinterpret_cast<int*>(counter);
    return 1;
  };
  EnumEnhMetaFile(nullptr, record, count, &copies, nullptr);
  DeleteEnhMetaFile(record);
  EXPECT_EQ(copies, 1);
}

TEST_P(PaintEffectsTest, AnIconKeepsItsTransparencyWhateverTheMaskColour) {
  const Picture picture = IconPicture({"d..l",  //
                                       ".ks.",  //
                                       "l..d"});
  for (const COLORREF mask : {kMask, kMagenta, kWhite, kHighlight}) {
    SCOPED_TRACE(mask);
    const TestCanvas canvas = PlainCanvas(6, 5);
    effects_.PaintTransparentStdPic(canvas.dc(), 1, 1, 4, 3, &picture, 0, 0, mask);
    EXPECT_EQ(canvas.Read(), Drawn({"oooooo",  //
                                    "odoolo",  //
                                    "ooksoo",  //
                                    "oloodo",  //
                                    "oooooo"}));
  }
}

TEST_P(PaintEffectsTest, APartOfAnIconIsPaintedTransparently) {
  const Picture picture = IconPicture({"d..l",  //
                                       ".ks.",  //
                                       "l..d"});
  const TestCanvas canvas = PlainCanvas(4, 4);
  effects_.PaintTransparentStdPic(canvas.dc(), 1, 1, 2, 2, &picture, 2, 1, kMask);
  EXPECT_EQ(canvas.Read(), Drawn({"oooo",  //
                                  "osoo",  //
                                  "oodo",  //
                                  "oooo"}));
}

TEST_P(PaintEffectsTest, DisabledEmbossesWhatIsNeitherLightNorMask) {
  const UniqueBitmap bitmap = BitmapOf(Drawn({"mmmmmm",  //
                                              "mddlmm",  //
                                              "mdwwdm",  //
                                              "mmlkmm",  //
                                              "mmmmmm"}));
  const MemoryDC source(bitmap.get());
  const TestCanvas canvas = PlainCanvas(7, 6);
  effects_.PaintDisabledDC(canvas.dc(), 1, 2, 4, 3, source.get(), 1, 1, kMagenta, kHighlight, kShadow);
  EXPECT_EQ(canvas.Read(), Drawn({"ooooooo",  //
                                  "ooooooo",  //
                                  "oSSoooo",  //
                                  "oSHHSoo",  //
                                  "ooHSoHo",  //
                                  "ooooHoo"}));
}

TEST_P(PaintEffectsTest, DisabledPictureTakesSystemColours) {
  // The mask is the colour of text: without it, it would be the darkest shape of all.
  Legend legend = Colors();
  legend['T'] = GetSysColor(COLOR_BTNTEXT);
  const Image image = Draw({"TTTTT",  //
                            "TdddT",  //
                            "TdldT",  //
                            "TTdTT"},
                           legend);
  const Picture picture(BitmapOf(image));
  const TestCanvas canvas = PlainCanvas(8, 8);
  const Image ground = canvas.Read();
  effects_.PaintDisabledStdPic(canvas.dc(), 2, 1, 5, 4, &picture, 0, 0, SystemColor(COLOR_BTNTEXT),
                               SystemColor(COLOR_BTNHIGHLIGHT), SystemColor(COLOR_BTNSHADOW));
  EXPECT_EQ(canvas.Read(), Emboss(ground, image, kDark, 2, 1, GetSysColor(COLOR_BTNHIGHLIGHT),
                                  GetSysColor(COLOR_BTNSHADOW)));
}

TEST_P(PaintEffectsTest, DisabledPictureCanBeAPartOfABitmap) {
  const Picture picture = BitmapPicture({"dddd",  //
                                         "d.dd",  //
                                         "dd.d"});
  const TestCanvas canvas = PlainCanvas(4, 4);
  effects_.PaintDisabledStdPic(canvas.dc(), 0, 1, 2, 2, &picture, 1, 1, kMask, kHighlight, kShadow);
  EXPECT_EQ(canvas.Read(), Drawn({"oooo",  //
                                  "oSoo",  //
                                  "SoHo",  //
                                  "oHoo"}));
}

TEST_P(PaintEffectsTest, DisabledIconKeepsItsTransparency) {
  // In the system's icon size, so that nothing is stretched.
  Image image{GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON), {}};
  image.pixels.assign(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height), kMask);
  for (const POINT& dot : {POINT{3, 2}, POINT{4, 2}, POINT{5, 3}, POINT{20, 30}, POINT{31, 31}})
    image.At(dot.x, dot.y) = kDark;
  for (const POINT& dot : {POINT{10, 10}, POINT{11, 10}, POINT{3, 3}}) image.At(dot.x, dot.y) = kLight;
  const Picture picture(IconOf(image, kMask));
  const TestCanvas canvas = PlainCanvas(40, 40);
  const Image ground = canvas.Read();
  effects_.PaintDisabledStdPic(canvas.dc(), 2, 3, image.width, image.height, &picture, 0, 0, kMagenta,
                               kHighlight, kShadow);
  EXPECT_EQ(canvas.Read(), Emboss(ground, image, kDark, 2, 3, kHighlight, kShadow));
}

TEST_P(PaintEffectsTest, DisabledIconComesInTheSystemsIconSize) {
  Image image{16, 16, {}};
  image.pixels.assign(std::size_t{16} * 16, kDark);
  const Picture picture(IconOf(image, kMask));
  const int size = GetSystemMetrics(SM_CXICON);
  ASSERT_GT(size, 16);
  const TestCanvas canvas = PlainCanvas(size + 8, size + 8);
  effects_.PaintDisabledStdPic(canvas.dc(), 0, 0, size, size, &picture, 0, 0, kMask, kHighlight, kShadow);
  const Image painted = canvas.Read();
  EXPECT_EQ(painted.At(size - 1, size - 1), kShadow);
  EXPECT_EQ(painted.At(size, size), kHighlight);
  EXPECT_EQ(painted.At(size + 1, size + 1), kGround);
}

TEST_P(PaintEffectsTest, TheSystemDrawsDisabledBitmaps) {
  const Picture picture = BitmapPicture({"wwwww",  //
                                         "wdddw",  //
                                         "wdwww",  //
                                         "wwwww"});
  const TestCanvas canvas = PlainCanvas(8, 7);
  effects_.PaintDisabledStdPic2(canvas.dc(), 2, 1, 5, 4, &picture);
  const TestCanvas reference = PlainCanvas(8, 7);
  const Image ground = reference.Read();
  DrawStateA(reference.dc(), nullptr, nullptr, reinterpret_cast<LPARAM>(picture.bitmap()), 0, 2, 1, 5, 4,
             DST_BITMAP | DSS_DISABLED);
  EXPECT_NE(reference.Read(), ground);
  EXPECT_EQ(canvas.Read(), reference.Read());
}

TEST_P(PaintEffectsTest, TheSystemDrawsDisabledIcons) {
  const Picture picture = IconPicture({".....",  //
                                       ".ddd.",  //
                                       ".d...",  //
                                       "....."});
  const TestCanvas canvas = PlainCanvas(8, 7);
  effects_.PaintDisabledStdPic2(canvas.dc(), 2, 1, 5, 4, &picture);
  const TestCanvas reference = PlainCanvas(8, 7);
  const Image ground = reference.Read();
  DrawStateA(reference.dc(), nullptr, nullptr, reinterpret_cast<LPARAM>(picture.icon()), 0, 2, 1, 5, 4,
             DST_ICON | DSS_DISABLED);
  EXPECT_NE(reference.Read(), ground);
  EXPECT_EQ(canvas.Read(), reference.Read());
}

TEST_P(PaintEffectsTest, ButtonColoursEmbossOnAButtonsFace) {
  const Image image = Drawn({"kkkkkk",  //
                             "kd.d.k",  //
                             "klddwk",  //
                             "k..dkk"});
  const Picture picture(BitmapOf(image));
  const TestCanvas canvas = PlainCanvas(8, 7);
  effects_.PaintDisabledStdPic3(canvas.dc(), 2, 1, 4, 3, &picture, 1, 1);

  Legend legend = Colors();
  legend['F'] = GetSysColor(COLOR_BTNFACE);
  legend['H'] = GetSysColor(COLOR_BTNHIGHLIGHT);
  legend['S'] = GetSysColor(COLOR_BTNSHADOW);
  EXPECT_EQ(canvas.Read(), Draw({"oooooooo",  //
                                 "ooSFSFoo",  //
                                 "ooFSSHoo",  //
                                 "ooFFSSoo",  //
                                 "oooooHHo",  //
                                 "oooooooo",  //
                                 "oooooooo"},
                                legend));
}

TEST_P(PaintEffectsTest, ButtonColoursEmbossAnIconToo) {
  const Image image = Drawn({"kkkk",  //
                             "d..k",  //
                             "l.dk"});
  const Picture picture(IconOf(image, kMask));
  const TestCanvas canvas = PlainCanvas(6, 6);
  effects_.PaintDisabledStdPic3(canvas.dc(), 1, 1, 3, 2, &picture, 0, 1);
  const TestCanvas reference = PlainCanvas(6, 6);
  const RECT face{1, 1, 4, 3};
  FillRect(reference.dc(), &face, GetSysColorBrush(COLOR_BTNFACE));
  EXPECT_EQ(canvas.Read(), Emboss(reference.Read(), Drawn({"d..", "l.d"}), kDark, 1, 1,
                                  GetSysColor(COLOR_BTNHIGHLIGHT), GetSysColor(COLOR_BTNSHADOW)));
}

TEST_P(PaintEffectsTest, TilesBeginAtATileNumberAndEndAtAPlace) {
  const Picture picture = BitmapPicture({"dlw",  //
                                         "smw",  //
                                         "www"});
  struct Case {
    int beginX, beginY, width, height;
    std::vector<std::string> painted;
  };
  const std::vector<Case> cases = {
      // The tile that begins just at the width is still drawn, and whole.
      {0, 0, 4, 1, {"dldldlooo", "smsmsmooo", "ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo"}},
      {0, 0, 3, 2, {"dldlooooo", "smsmooooo", "dldlooooo", "smsmooooo", "ooooooooo", "ooooooooo"}},
      {1, 2, 5, 4, {"ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo", "oodldlooo", "oosmsmooo"}},
      {2, 0, 3, 5, {"ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo", "ooooooooo"}},
      {1, 1, 2, 2, {"ooooooooo", "ooooooooo", "oodlooooo", "oosmooooo", "ooooooooo", "ooooooooo"}},
  };
  for (const Case& expected : cases) {
    const TestCanvas canvas = PlainCanvas(9, 6);
    effects_.BoxStdPic(canvas.dc(), expected.beginX, expected.beginY, expected.width, expected.height,
                       &picture, 2, 2);
    EXPECT_EQ(canvas.Read(), Drawn(expected.painted));
  }
}

TEST_P(PaintEffectsTest, OtherPictureTypesAreAnErrorOfFourEffects) {
  const Picture picture = MetafilePicture();
  ASSERT_EQ(picture.type(), Picture::Type::EnhancedMetafile);
  const TestCanvas canvas = PlainCanvas(6, 6);
  const Image ground = canvas.Read();
  std::vector<std::string> failed;
  for (const PictureEffect& effect : PictureEffects()) {
    try {
      effect.paint(effects_, canvas.dc(), &picture);
    } catch (const InvalidPicture& error) {
      EXPECT_EQ(error.Number(), 481);
      failed.emplace_back(effect.name);
    }
  }
  EXPECT_EQ(failed, (std::vector<std::string>{"PaintNormalStdPic", "PaintTransparentStdPic",
                                              "PaintDisabledStdPic", "PaintDisabledStdPic2"}));
  EXPECT_EQ(canvas.Read(), ground);
}

TEST_P(PaintEffectsTest, NoPictureDrawsNothing) {
  const Picture empty;
  const Picture dot = BitmapPicture({"dd", "dd"});
  for (const PictureEffect& effect : PictureEffects()) {
    SCOPED_TRACE(effect.name);
    const TestCanvas canvas = PlainCanvas(6, 6);
    const Image ground = canvas.Read();
    EXPECT_NO_THROW(effect.paint(effects_, canvas.dc(), nullptr));
    EXPECT_NO_THROW(effect.paint(effects_, canvas.dc(), &empty));
    EXPECT_EQ(canvas.Read(), ground);
    effect.paint(effects_, canvas.dc(), &dot);
    EXPECT_NE(canvas.Read(), ground) << "it draws nothing at all";
  }
}

TEST_P(PaintEffectsTest, AnAreaWithoutPixelsStaysAsItIs) {
  const Picture bitmap = BitmapPicture({"dddd", "dddd", "dddd", "dddd"});
  const Picture icon = IconPicture({"dddd", "dddd", "dddd", "dddd"});
  const TestCanvas canvas = PlainCanvas(4, 4);
  const Image ground = canvas.Read();
  for (const Picture* picture : {&bitmap, &icon}) {
    for (const auto& [width, height] : {SIZE{0, 4}, SIZE{4, 0}, SIZE{-2, 2}, SIZE{2, -2}}) {
      effects_.PaintTransparentStdPic(canvas.dc(), 2, 2, width, height, picture, 0, 0, kMask);
      effects_.PaintDisabledStdPic(canvas.dc(), 2, 2, width, height, picture, 0, 0, kMask, kHighlight,
                                   kShadow);
      effects_.PaintDisabledStdPic3(canvas.dc(), 2, 2, width, height, picture, 0, 0);
      effects_.BoxStdPic(canvas.dc(), 0, 0, 4, 4, picture, width, height);
    }
  }
  EXPECT_EQ(canvas.Read(), ground);
}

/// Colours given as an index show which palette the images are seen through, on a screen that needs none too.
TEST_P(PaintEffectsTest, ImagesAreSeenThroughTheCallersPaletteOrElseTheHalftoneOne) {
  constexpr UINT kIndex = 1;
  struct {
    LOGPALETTE head;
    PALETTEENTRY second;
  } description{};
  description.head.palVersion = 0x300;
  description.head.palNumEntries = 2;
  description.second = {GetRValue(kMagenta), GetGValue(kMagenta), GetBValue(kMagenta), 0};
  const UniquePalette palette(CreatePalette(&description.head));
  const UniquePalette halftone(CreateHalftonePalette(WindowDC(nullptr).get()));
  PALETTEENTRY entry{};
  ASSERT_EQ(GetPaletteEntries(halftone.get(), kIndex, 1, &entry), 1U);

  Legend legend = Colors();
  legend['h'] = RGB(entry.peRed, entry.peGreen, entry.peBlue);
  const std::vector<std::string> rows = {"mlhl", "llll"};
  const Picture bitmap(BitmapOf(Draw(rows, legend)));
  const Picture icon(IconOf(Draw(rows, legend), kMask));
  for (const Picture* picture : {&bitmap, &icon}) {
    for (const bool given : {true, false}) {
      SCOPED_TRACE(given);
      SCOPED_TRACE(static_cast<int>(picture->type()));
      const TestCanvas canvas = PlainCanvas(4, 2);
      effects_.PaintTransparentStdPic(canvas.dc(), 0, 0, 4, 2, picture, 0, 0, PALETTEINDEX(kIndex),
                                      given ? palette.get() : nullptr);
      EXPECT_EQ(canvas.Read(), Draw({given ? "olhl" : "mlol", "llll"}, legend));
    }
  }
  for (const bool given : {true, false}) {
    SCOPED_TRACE(given);
    const TestCanvas canvas = PlainCanvas(4, 2);
    effects_.PaintDisabledStdPic(canvas.dc(), 0, 0, 4, 2, &bitmap, 0, 0, PALETTEINDEX(kIndex), kHighlight,
                                 kShadow, given ? palette.get() : nullptr);
    EXPECT_EQ(canvas.Read(), given ? Drawn({"ooSo", "oooH"}) : Drawn({"Sooo", "oHoo"}));
  }
  EXPECT_EQ(GetObjectType(palette.get()), static_cast<DWORD>(OBJ_PAL));
}

TEST_P(PaintEffectsTest, DeviceContextsKeepTheirState) {
  const Picture bitmap = BitmapPicture({"dl.d", "l.dd", ".ddl", "ddl."});
  const Picture icon = IconPicture({"dl.d", "l.dd", ".ddl", "ddl."});
  const UniqueBitmap sourceBitmap = BitmapOf(Drawn({"dl.d", "l.dd", ".ddl", "ddl."}));
  const MemoryDC source(sourceBitmap.get());
  const TestCanvas canvas = PlainCanvas(6, 6);
  for (const HDC dc : {canvas.dc(), source.get()}) {
    SetTextColor(dc, kStripe);
    SetBkColor(dc, kDark);
  }
  const ContextState before(canvas.dc());
  const ContextState sourceBefore(source.get());
  for (const Picture* picture : {&bitmap, &icon}) {
    for (const PictureEffect& effect : PictureEffects()) {
      effect.paint(effects_, canvas.dc(), picture);
      EXPECT_EQ(ContextState(canvas.dc()), before) << effect.name;
    }
  }
  effects_.PaintTransparentDC(canvas.dc(), 0, 0, 4, 4, source.get(), 0, 0, kMask);
  effects_.PaintDisabledDC(canvas.dc(), 0, 0, 4, 4, source.get(), 0, 0, kMask, kHighlight, kShadow);
  EXPECT_EQ(ContextState(canvas.dc()), before);
  EXPECT_EQ(ContextState(source.get()), sourceBefore);
}

TEST_P(PaintEffectsTest, TenThousandPaintsLeaveNoObjectBehind) {
  const Picture bitmap = BitmapPicture({"dl.d", "l.dd", ".ddl", "ddl."});
  const Picture icon = IconPicture({"dl.d", "l.dd", ".ddl", "ddl."});
  const Picture metafile = MetafilePicture();
  const UniqueBitmap sourceBitmap = BitmapOf(Drawn({"dl.d", "l.dd", ".ddl", "ddl."}));
  const MemoryDC source(sourceBitmap.get());
  const UniquePalette palette(CreateHalftonePalette(source.get()));
  const TestCanvas canvas = PlainCanvas(6, 6);
  const std::vector<PictureEffect> effects = PictureEffects();
  const auto paintAll = [&] {
    int paints = 0;
    const PaintEffects painter;
    for (const Picture* picture : {&bitmap, &icon, &metafile}) {
      for (const PictureEffect& effect : effects) {
        try {
          effect.paint(painter, canvas.dc(), picture);
        } catch (const InvalidPicture&) {
        }
        ++paints;
      }
    }
    painter.PaintTransparentDC(canvas.dc(), 0, 0, 4, 4, source.get(), 0, 0, kMask, palette.get());
    painter.PaintDisabledDC(canvas.dc(), 0, 0, 4, 4, source.get(), 0, 0, kMask, kHighlight, kShadow,
                            palette.get());
    return paints + 2;
  };
  paintAll();  // what the system itself makes on first use
  const int before = FreeGdiHandles();
  for (int paints = 0; paints < 10000;) paints += paintAll();
  EXPECT_EQ(FreeGdiHandles(), before);
}

}  // namespace
}  // namespace snip::test
