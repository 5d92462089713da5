#include "ui/menu/MenuAccessible.h"

#include <string>

#include "platform/Text.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/CommandBarButtons.h"
#include "ui/menu/frmMenu.h"

namespace snip {

int MenuAccessible::AccessibleCount() const {
  return menu_.iCount();
}

AccessibleItem MenuAccessible::DescribeItem(int index) const {
  const MenuItem& item = *menu_.items().Find(index);
  AccessibleItem description;
  description.place = menu_.input().Layout().Row(index);
  description.role = ROLE_SYSTEM_SEPARATOR;
  if (item.IsSeparator()) return description;

  description.role = ROLE_SYSTEM_MENUITEM;
  description.name = Trim(DisplayName(item.Caption));
  // `Checked` is not reported, because the menu does not show it either.
  if (!item.Enabled) description.state |= STATE_SYSTEM_UNAVAILABLE;
  if (menu_.input().HotItem() == index) description.state |= STATE_SYSTEM_HOTTRACKED;
  if (item.CanBeClicked()) description.defaultAction = "Execute";
  return description;
}

std::optional<int> MenuAccessible::FocusedItem() const {
  const int hot = menu_.input().HotItem();
  if (menu_.input().State() != MenuState::Docked || menu_.items().Find(hot) == nullptr) return std::nullopt;
  return hot;
}

void MenuAccessible::DoDefaultAction(int item) {
  menu_.DoDefaultAction(item);
}

}  // namespace snip
