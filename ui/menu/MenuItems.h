#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ui/menu/MenuMetrics.h"

namespace snip {

class Picture;  ///< The painter's. The items keep pictures alive and hand them back, no more.

struct MenuItem {
  /// The ID of an item that is to be known by its own place.
  static constexpr std::int32_t kOwnIndex = -1;

  std::string Caption = {};  ///< "-" makes the item a separator.
  bool Checked = false;      ///< For the owner to read back. Menus never show a check mark.
  bool Enabled = true;
  std::shared_ptr<const snip::Picture> Picture = {};  ///< 16 x 16 pixels, or none.
  std::int32_t ID = kOwnIndex;                        ///< What `Clicked` and `Selected` tell the owner.

  bool IsSeparator() const { return Caption == "-"; }
  /// A release on any other item does nothing.
  bool CanBeClicked() const { return Enabled && !IsSeparator(); }
};

/// The items of a menu, by their 0-based place, and how wide the widest of them is.
///
/// The owner keeps them for as long as it keeps the menu: opening and closing the menu leaves them alone.
/// It may change them at any time, while the menu is open and in the menu's events as well.
class MenuItems {
 public:
  static constexpr std::size_t kMaxItems = 32767;  ///< Items are counted in 16 bits.

  /// The width of a text in the menu's font, in pixels; every "&" in it counts.
  using TextWidth = std::function<int(std::string_view text)>;

  void Clear();
  /// Appends an item. To a full menu it adds nothing.
  void Add(MenuItem item, const MenuMetrics& metrics, const TextWidth& textWidth);

  std::int16_t iCount() const { return static_cast<std::int16_t>(items_.size()); }

  // A place that does not exist is no error: its flags read as false and cannot be set.
  bool IEnabled(int index) const;
  void SetIEnabled(int index, bool enabled);
  bool IChecked(int index) const;
  void SetIChecked(int index, bool isChecked);

  /// How many of the first `count` items are separators.
  int SeparatorCount(int count) const;

  /// In twips: the widest caption, with the picture column and the margins.
  int MaxWidth() const { return maxWidth_; }

  std::span<const MenuItem> All() const { return items_; }
  /// nullptr for a place that does not exist.
  const MenuItem* Find(int index) const;

 private:
  MenuItem* Modifiable(int index);

  std::vector<MenuItem> items_;
  int maxWidth_ = 0;
};

}  // namespace snip
