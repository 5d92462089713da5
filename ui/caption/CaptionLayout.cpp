#include "ui/caption/CaptionLayout.h"

#include <algorithm>

namespace snip {
namespace {

constexpr int kShades = 256;
constexpr int kButtonMargin = 2;
/// The system does not scale this button.
constexpr int kSmallButton = 11;

std::vector<Rect> PlaceButtons(const CaptionParts& parts, const Rect& area) {
  if (!parts.closeButton) return {};
  if (parts.small) {
    const int left = area.right() - (area.height + 2 + kSmallButton) / 2;
    return {{left, area.top + (area.height - kSmallButton) / 2, kSmallButton, kSmallButton}};
  }
  const Size button{parts.buttonCell.width - kButtonMargin, parts.buttonCell.height - 2 * kButtonMargin};
  const int top = area.top + kButtonMargin;
  const int close = area.right() - parts.buttonCell.width;
  std::vector<Rect> buttons = {{close, top, button.width, button.height}};
  if (parts.sizeButtons) {
    const int maximise = close - parts.buttonCell.width;
    buttons.push_back({maximise, top, button.width, button.height});
    buttons.push_back({maximise - button.width, top, button.width, button.height});
  }
  return buttons;
}

/// The colour component at bit `shift` of the mixture that is `index` of `last` steps from `start` to `end`.
std::uint32_t Mix(std::uint32_t start, std::uint32_t end, int shift, int index, int last) {
  const int from = static_cast<int>(start >> shift & 0xFF);
  const int to = static_cast<int>(end >> shift & 0xFF);
  return static_cast<std::uint32_t>(from + (to - from) * index / last) << shift;
}

}  // namespace

CaptionLayout::CaptionLayout(const CaptionParts& parts)
    : area_{parts.titleBar.left, parts.titleBar.top, std::max(parts.titleBar.width, 0),
            std::max(parts.titleBar.height - 1, 0)},
      buttons_(PlaceButtons(parts, area_)) {
  const int margin = area_.height / 8;
  const int left = area_.left + margin;
  icon_ = {left, area_.top + (area_.height - parts.icon.height) / 2, parts.icon.width, parts.icon.height};
  const int textLeft = parts.icon.width > 0 ? icon_.right() + 2 * margin : left;
  const int textRight = (buttons_.empty() ? area_.right() : buttons_.back().left) - margin;
  text_ = {textLeft, area_.top, std::max(textRight - textLeft, 0), area_.height};
}

int CaptionLayout::BandCount() const {
  return std::min(area_.width, kShades);
}

Rect CaptionLayout::Band(int index) const {
  const int left = area_.width * index / BandCount();
  const int right = area_.width * (index + 1) / BandCount();
  return {area_.left + left, area_.top, right - left, area_.height};
}

std::uint32_t CaptionLayout::BandColor(int index, std::uint32_t start, std::uint32_t end) const {
  const int last = std::max(BandCount() - 1, 1);
  return Mix(start, end, 0, index, last) | Mix(start, end, 8, index, last) | Mix(start, end, 16, index, last);
}

}  // namespace snip
