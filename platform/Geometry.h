#pragma once

namespace snip {

/// Plain geometry for the code that computes layouts without a window. Whether a value counts pixels or
/// twips is said where it is used. A rectangle includes its left and top edge and excludes the other two.
struct Point {
  int x = 0;
  int y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  int width = 0;
  int height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  int right() const { return left + width; }
  int bottom() const { return top + height; }
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace snip
