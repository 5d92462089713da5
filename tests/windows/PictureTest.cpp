#include "ui/commandbar/Picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "resources/resource.h"
#include "tests/support/TestCanvas.h"

namespace snip::test {
namespace {

constexpr COLORREF kMask = RGB(0xC0, 0xC0, 0xC0);

Image Drawn(const std::vector<std::string>& rows) {
  return Draw(rows, {{'.', kMask}, {'d', RGB(90, 10, 30)}, {'k', RGB(0, 0, 0)}});
}

Image PixelsOf(const Picture& picture) {
  const TestCanvas canvas(picture.size().width, picture.size().height, kMask);
  const MemoryDC source(picture.bitmap());
  BitBlt(canvas.dc(), 0, 0, picture.size().width, picture.size().height, source.get(), 0, 0, SRCCOPY);
  return canvas.Read();
}

TEST(PictureTest, KnowsItsTypeAndSizeAndReleasesWhatItOwns) {
  EXPECT_TRUE(Picture().empty() && Picture(UniqueBitmap()).empty() && Picture(UniqueIcon()).empty() &&
              Picture(UniqueMetafile()).empty());
  EXPECT_EQ(Picture().size(), Size{});
  const Image drawn = Drawn({"dk.dk", "k.dkk"});
  Picture bitmap(BitmapOf(drawn));
  Picture icon(IconOf(drawn, kMask));
  const HBITMAP bitmapHandle = bitmap.bitmap();
  const HICON iconHandle = icon.icon();
  EXPECT_EQ(static_cast<int>(bitmap.type()), 1);
  EXPECT_EQ(static_cast<int>(icon.type()), 3);
  for (const Picture* picture : {&bitmap, &icon}) EXPECT_EQ(picture->size(), (Size{5, 2}));
  EXPECT_TRUE(bitmap.icon() == nullptr && icon.bitmap() == nullptr);
  EXPECT_EQ(GetObjectType(bitmapHandle), static_cast<DWORD>(OBJ_BITMAP));
  bitmap = Picture();
  icon = Picture();
  ICONINFO description{};
  EXPECT_EQ(GetObjectType(bitmapHandle), 0U);
  EXPECT_EQ(GetIconInfo(iconHandle, &description), 0);
  // An icon in black and white is half as high as its mask.
  const UniqueBitmap masks(CreateBitmap(16, 24, 1, 1, nullptr));
  description = {TRUE, 0, 0, masks.get(), nullptr};
  EXPECT_EQ(Picture(UniqueIcon(CreateIconIndirect(&description))).size(), (Size{16, 12}));
}

TEST(PictureTest, ToolbarPicturesAreResources) {
  for (int id = IDB_PASTE_TO_CODE; id <= IDB_SYNTAX_HIGHLIGHTING; ++id) {
    const auto picture = Picture::FromResource(id);
    ASSERT_NE(picture, nullptr) << id;
    EXPECT_EQ(picture->type(), Picture::Type::Bitmap) << id;
    EXPECT_EQ(picture->size(), (Size{16, 16})) << id;
  }
  EXPECT_EQ(PixelsOf(*Picture::FromResource(IDB_DROP_ARROW)), Drawn({"kkkkk", ".kkk.", "..k.."}));
  // A whole multiple repeats every pixel.
  EXPECT_EQ(PixelsOf(*Picture::FromResource(IDB_DROP_ARROW, {10, 6})),
            Drawn({"kkkkkkkkkk", "kkkkkkkkkk", "..kkkkkk..", "..kkkkkk..", "....kk....", "....kk...."}));
  EXPECT_EQ(Picture::FromResource(32000), nullptr);
  EXPECT_EQ(Picture::FromResource(32000, {16, 16}), nullptr);
}

TEST(PictureTest, ScalingMakesNoNewColours) {
  const auto colors = [](const Image& image) { return std::set(image.pixels.begin(), image.pixels.end()); };
  // The toolbar's picture size at 120, 144 and 192 dpi, and a smaller one.
  for (const int side : {20, 24, 32, 12}) {
    for (const int id : {IDB_CUT, IDB_SAVE_LIBRARY, IDB_WEB_PAGE}) {
      SCOPED_TRACE(std::to_string(id) + " at " + std::to_string(side));
      const Image pixels = PixelsOf(*Picture::FromResource(id, {side, side}));
      EXPECT_EQ(pixels.width, side);
      EXPECT_TRUE(std::ranges::includes(colors(PixelsOf(*Picture::FromResource(id))), colors(pixels)));
      const auto masked = std::ranges::count(pixels.pixels, kMask);
      EXPECT_TRUE(masked > 0 && masked < std::ssize(pixels.pixels));
    }
  }
}

}  // namespace
}  // namespace snip::test
