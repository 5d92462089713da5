#include "ui/find/PalettePlace.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/Rects.h"
#include "platform/ScreenTwips.h"
#include "settings/SettingsText.h"

namespace snip {
namespace {

constexpr Size kDefaultSize{8400, 6600};  // twips
constexpr Size kLeastSize{3600, 3000};

constexpr const char* kLeft = "FindLeft";
constexpr const char* kTop = "FindTop";
constexpr const char* kWidth = "FindWidth";
constexpr const char* kHeight = "FindHeight";

}  // namespace

Rect StoredPalettePlace(const SettingsStore& settings, HWND owner) {
  const TwipsPerPixel twips = ScreenTwips();
  const auto stored = [&](const char* name) {
    return static_cast<int>(std::clamp(Val(settings.LoadMore(name)), -400000.0, 400000.0));
  };
  Rect place{0, 0, stored(kWidth), stored(kHeight)};
  const bool isStored = place.width >= kLeastSize.width && place.height >= kLeastSize.height;
  if (!isStored) place = {0, 0, kDefaultSize.width, kDefaultSize.height};
  place = twips.ToPixels(place);
  if (isStored) {
    place.left = twips.ToPixelsX(stored(kLeft));
    place.top = twips.ToPixelsY(stored(kTop));
  } else {
    RECT before{};
    GetWindowRect(owner, &before);
    place.left = (before.left + before.right - place.width) / 2;
    place.top = before.top + (before.bottom - before.top) / 8;
  }
  const Rect screen = ScreenAt({place.left + place.width / 2, place.top + place.height / 2});
  place.width = std::min(place.width, screen.width);
  place.height = std::min(place.height, screen.height);
  place.left = std::clamp(place.left, screen.left, screen.right() - place.width);
  place.top = std::clamp(place.top, screen.top, screen.bottom() - place.height);
  return place;
}

void StorePalettePlace(const SettingsStore& settings, const Rect& place) {
  const TwipsPerPixel twips = ScreenTwips();
  const std::pair<const char*, int> values[] = {{kLeft, twips.ToTwipsX(place.left)},
                                                {kTop, twips.ToTwipsY(place.top)},
                                                {kWidth, twips.ToTwipsX(place.width)},
                                                {kHeight, twips.ToTwipsY(place.height)}};
  for (const auto& [name, value] : values) {
    const std::string text = NumberText(value);
    if (settings.LoadMore(name) != text) settings.SaveMore(name, text);
  }
}

Size LeastPaletteSize() {
  const TwipsPerPixel twips = ScreenTwips();
  return {twips.ToPixelsX(kLeastSize.width), twips.ToPixelsY(kLeastSize.height)};
}

}  // namespace snip
