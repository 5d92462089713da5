#pragma once

#include <windows.h>

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "platform/Handle.h"

namespace snip::test {

/// Pixels, row by row from the top.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<COLORREF> pixels;

  COLORREF& At(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
  COLORREF At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
  friend bool operator==(const Image&, const Image&) = default;
};

/// One row of hexadecimal COLORREFs per line, for messages.
std::ostream& operator<<(std::ostream& stream, const Image& image);

/// What the characters of a drawing stand for.
using Legend = std::map<char, COLORREF>;

/// An image written down as rows of characters.
Image Draw(const std::vector<std::string>& rows, const Legend& legend);

/// A bitmap in the screen's format.
UniqueBitmap BitmapOf(const Image& image);

/// An icon that is transparent where the image has the colour `transparent`.
UniqueIcon IconOf(const Image& image, COLORREF transparent);

/// A device context to paint on, whose pixels can be read back.
class TestCanvas {
 public:
  TestCanvas(int width, int height, COLORREF ground);

  HDC dc() const { return dc_.get(); }
  Image Read() const;

 private:
  int width_;
  int height_;
  UniqueBitmap bitmap_;
  MemoryDC dc_;
};

/// How many more GDI objects this process can make: with one of them leaked the number is one lower.
int FreeGdiHandles();

}  // namespace snip::test
