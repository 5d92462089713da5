#pragma once

#include <utility>

#include "platform/AccessibleList.h"
#include "ui/commandbar/CommandBarButtons.h"

namespace snip {

class BnCommandBar;

/// What a command bar tells assistive programs: a tool bar whose children are its buttons, in order. The
/// arrow of a drop-down button is a child of its own, the next one.
class CommandBarAccessible final : public AccessibleItems {
 public:
  explicit CommandBarAccessible(BnCommandBar& bar) : bar_(bar) {}

  LONG WholeRole() const override { return ROLE_SYSTEM_TOOLBAR; }
  int AccessibleCount() const override;
  AccessibleItem DescribeItem(int item) const override;
  void DoDefaultAction(int item) override;

  using PartId = std::pair<ButtonId, ButtonPart>;
  PartId IdOf(int item) const;
  /// The item that is a button's push part.
  int ItemOf(int button) const;

 private:
  BnCommandBar& bar_;
};

}  // namespace snip
