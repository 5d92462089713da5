#pragma once

#include "platform/AccessibleList.h"

namespace snip {

class BnCommandBar;

/// What a command bar tells assistive programs: a tool bar whose children are its buttons, in order.
class CommandBarAccessible final : public AccessibleItems {
 public:
  explicit CommandBarAccessible(BnCommandBar& bar) : bar_(bar) {}

  AccessibleWhole DescribeWhole() const override;
  int AccessibleCount() const override;
  AccessibleItem DescribeItem(int item) const override;
  void DoDefaultAction(int item) override;

 private:
  BnCommandBar& bar_;
};

}  // namespace snip
