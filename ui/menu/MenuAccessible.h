#pragma once

#include <optional>

#include "platform/AccessibleList.h"

namespace snip {

class frmMenu;

/// What a menu tells assistive programs: a pop-up menu whose children are its items, in order. A torn-off
/// menu stays one.
class MenuAccessible final : public AccessibleItems {
 public:
  explicit MenuAccessible(frmMenu& menu) : menu_(menu) {}

  LONG WholeRole() const override { return ROLE_SYSTEM_MENUPOPUP; }
  int AccessibleCount() const override;
  AccessibleItem DescribeItem(int item) const override;
  /// The hot item of a docked menu, which the arrow keys move; a torn-off one does not have the keyboard.
  std::optional<int> FocusedItem() const override;
  void DoDefaultAction(int item) override;

 private:
  frmMenu& menu_;
};

}  // namespace snip
