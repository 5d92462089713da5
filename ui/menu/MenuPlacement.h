#pragma once

#include <array>

#include "platform/Geometry.h"
#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuMetrics.h"

namespace snip {

/// What `Popup` is asked for, and what it has to know of the screen.
struct PopupRequest {
  int X = -1;  ///< Screen twips of the menu's left top corner; both -1 for the mouse pointer.
  int Y = -1;
  bool AllowDetach = false;  ///< The menu shows a drag bar and can be torn off.
  Point cursor = {};         ///< Screen pixels.
  Rect screen = {};          ///< The screen that it opens on; pixels.
};

/// The whole window of a docked menu, its border included, in screen twips. A menu that would leave the
/// screen on the right or below is moved left or up as far as needed; one that is wider or higher than the
/// screen begins beyond its left or top edge.
Rect PlacePopup(const MenuItems& items, const MenuMetrics& metrics, const PopupRequest& request);

/// The height that a menu is given when it is torn off, in twips. Its width stays.
int TornOffHeight(const MenuItems& items, const MenuMetrics& metrics);

/// How a menu comes up; pixels. It grows out of its left top corner.
struct Unfolding {
  static constexpr int kSteps = 8;
  static constexpr int kStepMilliseconds = 25;  ///< Waited before each step.

  Point corner;
  std::array<Size, kSteps> sizes;
  friend bool operator==(const Unfolding&, const Unfolding&) = default;
};

Unfolding Unfold(const Rect& place, const TwipsPerPixel& twips);

}  // namespace snip
