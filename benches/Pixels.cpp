#include "benches/Pixels.h"

#include "platform/Handle.h"
#include "platform/Window.h"

namespace snip::bench {

std::vector<std::uint32_t> Pixels(HWND window) {
  const Size size = ClientSize(window);
  BITMAPINFO format{};
  format.bmiHeader = {.biSize = sizeof(BITMAPINFOHEADER),
                      .biWidth = size.width,
                      .biHeight = size.height,
                      .biPlanes = 1,
                      .biBitCount = 32,
                      .biCompression = BI_RGB,
                      .biSizeImage = 0,
                      .biXPelsPerMeter = 0,
                      .biYPelsPerMeter = 0,
                      .biClrUsed = 0,
                      .biClrImportant = 0};
  const WindowDC source(window);
  void* bits = nullptr;
  const UniqueBitmap bitmap(CreateDIBSection(source.get(), &format, DIB_RGB_COLORS, &bits, nullptr, 0));
  {
    const MemoryDC target(bitmap.get());
    BitBlt(target.get(), 0, 0, size.width, size.height, source.get(), 0, 0, SRCCOPY);
    GdiFlush();
  }
  const auto* pixels = static_cast<const std::uint32_t*>(bits);
  return {pixels, pixels + size.width * size.height};
}

}  // namespace snip::bench
