#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "resources/resource.h"
#include "tests/support/TestCanvas.h"
#include "ui/commandbar/Picture.h"

namespace snip::test {
namespace {

constexpr COLORREF kMask = RGB(0xC0, 0xC0, 0xC0);
constexpr COLORREF kRed = RGB(220, 10, 20);
constexpr COLORREF kBlack = RGB(0, 0, 0);

const Legend& Colors() {
  static const Legend legend = {{'.', kMask}, {'r', kRed}, {'k', kBlack}};
  return legend;
}

Image PixelsOf(const Picture& picture) {
  const TestCanvas canvas(picture.size().width, picture.size().height, kRed);
  const MemoryDC source(picture.bitmap());
  BitBlt(canvas.dc(), 0, 0, picture.size().width, picture.size().height, source.get(), 0, 0, SRCCOPY);
  return canvas.Read();
}

TEST(PictureTest, KnowsItsTypeAndSize) {
  const Image image = Draw({"rk.rk", "k.rkk"}, Colors());
  const Picture empty;
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(static_cast<int>(empty.type()), 0);
  EXPECT_EQ(empty.size(), Size{});

  const Picture bitmap(BitmapOf(image));
  EXPECT_EQ(static_cast<int>(bitmap.type()), 1);
  EXPECT_EQ(bitmap.size(), (Size{5, 2}));
  EXPECT_NE(bitmap.bitmap(), nullptr);
  EXPECT_EQ(bitmap.icon(), nullptr);

  const Picture icon(IconOf(image, kMask));
  EXPECT_EQ(static_cast<int>(icon.type()), 3);
  EXPECT_EQ(icon.size(), (Size{5, 2}));
  EXPECT_EQ(icon.bitmap(), nullptr);
  EXPECT_NE(icon.icon(), nullptr);

  EXPECT_TRUE(Picture(UniqueBitmap()).empty());
  EXPECT_TRUE(Picture(UniqueIcon()).empty());
  EXPECT_TRUE(Picture(UniqueMetafile()).empty());
}

TEST(PictureTest, AnIconInBlackAndWhiteIsAsHighAsItsMask) {
  const UniqueBitmap masks(CreateBitmap(16, 24, 1, 1, nullptr));
  ICONINFO description{TRUE, 0, 0, masks.get(), nullptr};
  const Picture icon(UniqueIcon(CreateIconIndirect(&description)));
  EXPECT_EQ(icon.size(), (Size{16, 12}));
}

TEST(PictureTest, ReleasesWhatItOwns) {
  const Image image = Draw({"rk", "k."}, Colors());
  auto bitmap = std::make_shared<const Picture>(BitmapOf(image));
  const HBITMAP bitmapHandle = bitmap->bitmap();
  EXPECT_EQ(GetObjectType(bitmapHandle), static_cast<DWORD>(OBJ_BITMAP));
  bitmap.reset();
  EXPECT_EQ(GetObjectType(bitmapHandle), 0U);

  auto icon = std::make_shared<const Picture>(IconOf(image, kMask));
  const HICON iconHandle = icon->icon();
  ICONINFO description{};
  ASSERT_NE(GetIconInfo(iconHandle, &description), 0);
  const UniqueBitmap color(description.hbmColor);
  const UniqueBitmap mask(description.hbmMask);
  icon.reset();
  EXPECT_EQ(GetIconInfo(iconHandle, &description), 0);
}

TEST(PictureTest, ToolbarPicturesAreResources) {
  for (int id = IDB_PASTE_TO_CODE; id <= IDB_SYNTAX_HIGHLIGHTING; ++id) {
    const auto picture = Picture::FromResource(id);
    ASSERT_NE(picture, nullptr) << id;
    EXPECT_EQ(picture->type(), Picture::Type::Bitmap) << id;
    EXPECT_EQ(picture->size(), (Size{16, 16})) << id;
  }
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW);
  ASSERT_NE(arrow, nullptr);
  EXPECT_EQ(PixelsOf(*arrow), Draw({"kkkkk",  //
                                    ".kkk.",  //
                                    "..k.."},
                                   Colors()));
}

TEST(PictureTest, AMissingResourceIsNoPicture) {
  EXPECT_EQ(Picture::FromResource(32000), nullptr);
  EXPECT_EQ(Picture::FromResource(32000, {16, 16}), nullptr);
}

TEST(PictureTest, AWholeMultipleRepeatsEveryPixel) {
  const auto arrow = Picture::FromResource(IDB_DROP_ARROW, {10, 6});
  ASSERT_NE(arrow, nullptr);
  EXPECT_EQ(PixelsOf(*arrow), Draw({"kkkkkkkkkk",  //
                                    "kkkkkkkkkk",  //
                                    "..kkkkkk..",  //
                                    "..kkkkkk..",  //
                                    "....kk....",  //
                                    "....kk...."},
                                   Colors()));
}

TEST(PictureTest, ScalingMakesNoNewColours) {
  // The toolbar's picture size at 120, 144 and 192 dpi, and a smaller one.
  for (const int side : {20, 24, 32, 12}) {
    for (const int id : {IDB_CUT, IDB_SAVE_LIBRARY, IDB_WEB_PAGE}) {
      SCOPED_TRACE(side);
      SCOPED_TRACE(id);
      const Image original = PixelsOf(*Picture::FromResource(id));
      const auto scaled = Picture::FromResource(id, {side, side});
      ASSERT_EQ(scaled->size(), (Size{side, side}));
      const Image pixels = PixelsOf(*scaled);
      int masked = 0;
      for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
          // The pixel that lies there in the original, or a neighbour where the grids do not meet.
          bool found = false;
          for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
              const int originalX = x * 16 / side + dx;
              const int originalY = y * 16 / side + dy;
              found |= original.Contains(originalX, originalY) &&
                       original.At(originalX, originalY) == pixels.At(x, y);
            }
          }
          EXPECT_TRUE(found) << x << ',' << y;
          masked += pixels.At(x, y) == kMask ? 1 : 0;
        }
      }
      EXPECT_GT(masked, 0);
      EXPECT_LT(masked, side * side);
    }
  }
}

}  // namespace
}  // namespace snip::test
