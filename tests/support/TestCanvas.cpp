#include "tests/support/TestCanvas.h"

#include <iomanip>
#include <ostream>
#include <stdexcept>

namespace snip::test {
namespace {

BITMAPINFO TrueColor(int width, int height) {
  BITMAPINFO description{};
  description.bmiHeader.biSize = sizeof description.bmiHeader;
  description.bmiHeader.biWidth = width;
  description.bmiHeader.biHeight = -height;
  description.bmiHeader.biPlanes = 1;
  description.bmiHeader.biBitCount = 32;
  description.bmiHeader.biCompression = BI_RGB;
  return description;
}

/// A device-independent pixel has its red and blue parts the other way round.
DWORD SwapRedAndBlue(DWORD color) {
  return RGB(GetBValue(color), GetGValue(color), GetRValue(color));
}

UniqueBitmap MakeDibSection(int width, int height, DWORD*& pixels) {
  const BITMAPINFO description = TrueColor(width, height);
  void* bits = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap) throw std::runtime_error("no DIB section");
  pixels = static_cast<DWORD*>(bits);
  return bitmap;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Image& image) {
  const auto flags = stream.flags();
  stream << std::hex << std::setfill('0');
  for (int y = 0; y < image.height; ++y) {
    stream << '\n';
    for (int x = 0; x < image.width; ++x) stream << std::setw(6) << image.At(x, y) << ' ';
  }
  stream.flags(flags);
  return stream << std::setfill(' ');
}

Image Draw(const std::vector<std::string>& rows, const Legend& legend) {
  Image image{static_cast<int>(rows.front().size()), static_cast<int>(rows.size()), {}};
  for (const std::string& row : rows) {
    if (row.size() != rows.front().size()) throw std::invalid_argument("rows of different lengths");
    for (const char c : row) image.pixels.push_back(legend.at(c));
  }
  return image;
}

UniqueBitmap BitmapOf(const Image& image) {
  const BITMAPINFO description = TrueColor(image.width, image.height);
  std::vector<DWORD> bits;
  for (const COLORREF color : image.pixels) bits.push_back(SwapRedAndBlue(color));
  return UniqueBitmap(CreateDIBitmap(WindowDC(nullptr).get(), &description.bmiHeader, CBM_INIT, bits.data(),
                                     &description, DIB_RGB_COLORS));
}

UniqueIcon IconOf(const Image& image, COLORREF transparent) {
  // One bit per pixel, set where the icon is transparent; rows are padded to 16 bits.
  const int bytesPerRow = (image.width + 15) / 16 * 2;
  std::vector<BYTE> maskBits(static_cast<std::size_t>(bytesPerRow * image.height));
  Image colors = image;
  BYTE* row = maskBits.data();
  for (int y = 0; y < image.height; ++y, row += bytesPerRow) {
    for (int x = 0; x < image.width; ++x) {
      if (image.At(x, y) != transparent) continue;
      row[x / 8] |= static_cast<BYTE>(0x80 >> x % 8);
      colors.At(x, y) = RGB(0, 0, 0);
    }
  }
  const UniqueBitmap mask(CreateBitmap(image.width, image.height, 1, 1, maskBits.data()));
  const UniqueBitmap color = BitmapOf(colors);
  ICONINFO description{TRUE, 0, 0, mask.get(), color.get()};
  return UniqueIcon(CreateIconIndirect(&description));
}

TestCanvas::TestCanvas(int width, int height, COLORREF ground)
    : width_(width),
      height_(height),
      bitmap_(CreateCompatibleBitmap(WindowDC(nullptr).get(), width, height)),
      dc_(bitmap_.get()) {
  const RECT all{0, 0, width, height};
  const UniqueBrush brush(CreateSolidBrush(ground));
  FillRect(dc(), &all, brush.get());
}

Image TestCanvas::Read() const {
  DWORD* pixels = nullptr;
  const UniqueBitmap copy = MakeDibSection(width_, height_, pixels);
  const MemoryDC target(copy.get());
  BitBlt(target.get(), 0, 0, width_, height_, dc(), 0, 0, SRCCOPY);
  GdiFlush();
  Image image{width_, height_, {}};
  for (int i = 0; i < width_ * height_; ++i) image.pixels.push_back(SwapRedAndBlue(pixels[i]));
  return image;
}

int FreeGdiHandles() {
  std::vector<UniqueBrush> brushes;
  for (;;) {
    UniqueBrush brush(CreateSolidBrush(RGB(1, 2, 3)));
    if (!brush) return static_cast<int>(brushes.size());
    brushes.push_back(std::move(brush));
  }
}

}  // namespace snip::test
