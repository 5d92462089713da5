#include "ui/caption/CaptionPainter.h"

#include <string>

#include "platform/Drawing.h"
#include "platform/HighContrast.h"
#include "platform/Rects.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

bool HasStyle(HWND window, LONG style) {
  return (GetWindowLongA(window, GWL_STYLE) & style) == style;
}

bool IsToolWindow(HWND window) {
  return (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
}

RECT WindowPlace(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return place;
}

/// In pixels from the window's left top.
Rect TitleBar(HWND window) {
  TITLEBARINFO info{};
  info.cbSize = sizeof info;
  GetTitleBarInfo(window, &info);
  const RECT place = WindowPlace(window);
  const RECT& bar = info.rcTitleBar;
  // What the system calls the title bar begins right of the window's icon. The frame's sides are equal.
  const LONG side = place.right - bar.right;
  return {static_cast<int>(side), static_cast<int>(bar.top - place.top),
          static_cast<int>(bar.right - place.left - side), static_cast<int>(bar.bottom - bar.top)};
}

CaptionLayout LayoutOf(HWND window, bool hasIcon) {
  const bool small = IsToolWindow(window);
  const bool systemMenu = HasStyle(window, WS_SYSMENU);
  CaptionParts parts;
  parts.titleBar = TitleBar(window);
  parts.buttonCell = {GetSystemMetrics(SM_CXSIZE), GetSystemMetrics(SM_CYSIZE)};
  if (hasIcon && systemMenu && !small) {
    parts.icon = {GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)};
  }
  parts.closeButton = systemMenu;
  parts.sizeButtons = !small && (HasStyle(window, WS_MINIMIZEBOX) || HasStyle(window, WS_MAXIMIZEBOX));
  parts.small = small;
  return CaptionLayout(parts);
}

}  // namespace

CaptionPainter::CaptionPainter() {
  ReadMetrics();
}

void CaptionPainter::ReadMetrics() {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  font_.Reset(CreateFontIndirectA(&metrics.lfCaptionFont));
  smallFont_.Reset(CreateFontIndirectA(&metrics.lfSmCaptionFont));
  highContrast_ = HasHighContrast();
}

bool CaptionPainter::CanPaint(HWND window) const {
  return Enabled() && HasStyle(window, WS_CAPTION) && IsWindowVisible(window) != 0 && IsIconic(window) == 0;
}

UniqueRegion CaptionPainter::Covered(HWND window) const {
  const CaptionLayout layout = LayoutOf(window, false);
  const RECT area = ToRECT(layout.Area());
  UniqueRegion region(CreateRectRgnIndirect(&area));
  for (const Rect& button : layout.Buttons()) {
    const RECT bounds = ToRECT(button);
    const UniqueRegion hole(CreateRectRgnIndirect(&bounds));
    CombineRgn(region.get(), region.get(), hole.get(), RGN_DIFF);
  }
  const RECT place = WindowPlace(window);
  OffsetRgn(region.get(), place.left, place.top);
  return region;
}

void CaptionPainter::Paint(HWND window, bool isActive, HICON icon) const {
  const CaptionLayout layout = LayoutOf(window, icon != nullptr);
  const Rect& area = layout.Area();
  if (area.width <= 0 || area.height <= 0) return;
  const Colors& colors = isActive ? active : inactive;

  // Drawn off screen first, to avoid flicker.
  const Canvas canvas({area.width, area.height});
  const HDC dc = canvas.dc();
  SetViewportOrgEx(dc, -area.left, -area.top, nullptr);
  PaintGradient(dc, layout, colors);
  if (const Rect& place = layout.Icon(); place.width > 0) {
    DrawIconEx(dc, place.left, place.top, icon, place.width, place.height, 0, nullptr, DI_NORMAL);
  }
  const std::string text = WindowText(window);
  RECT bounds = ToRECT(layout.Text());
  {
    const SelectedObject font(dc, (IsToolWindow(window) ? smallFont_ : font_).get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, colors.text);
    DrawTextA(dc, text.data(), static_cast<int>(text.size()), &bounds,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  }

  const FrameDC frame(window);
  for (const Rect& button : layout.Buttons()) {
    ExcludeClipRect(frame.get(), button.left, button.top, button.right(), button.bottom());
  }
  BitBlt(frame.get(), area.left, area.top, area.width, area.height, dc, area.left, area.top, SRCCOPY);
}

void CaptionPainter::PaintGradient(HDC dc, const CaptionLayout& layout, const Colors& colors) const {
  for (int i = 0; i < layout.BandCount(); ++i) {
    FillArea(dc, layout.Band(i), layout.BandColor(i, colors.start, colors.end));
  }
}

}  // namespace snip
