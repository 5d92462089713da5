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

class Picture;  ///< Items only keep pictures for the painter.

struct MenuItem {
  /// Stands for the item's own index as its ID.
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

/// The items of a menu, by index from 0, and the width of the widest.
///
/// Opening and closing the menu does not change them. The owner may change them at any time, also while the
/// menu is open and in its events.
class MenuItems {
 public:
  static constexpr std::size_t kMaxItems = 32767;  ///< Items are counted in 16 bits.

  /// The width of a text in the menu's font, in pixels, including every "&".
  using TextWidth = std::function<int(std::string_view text)>;

  void Clear();
  /// Appends an item; does nothing if there are `kMaxItems`.
  void Add(MenuItem item, const MenuMetrics& metrics, const TextWidth& textWidth);

  std::int16_t iCount() const { return static_cast<std::int16_t>(items_.size()); }

  // An index that does not exist is not an error: its flags read as false and cannot be set.
  bool IEnabled(int index) const;
  void SetIEnabled(int index, bool enabled);
  bool IChecked(int index) const;
  void SetIChecked(int index, bool isChecked);

  /// How many of the first `count` items are separators.
  int SeparatorCount(int count) const;

  /// In twips: the widest caption, with the picture column and the margins.
  int MaxWidth() const { return maxWidth_; }

  std::span<const MenuItem> All() const { return items_; }
  /// nullptr if there is no such index.
  const MenuItem* Find(int index) const;

 private:
  MenuItem* Modifiable(int index);

  std::vector<MenuItem> items_;
  int maxWidth_ = 0;
};

}  // namespace snip
