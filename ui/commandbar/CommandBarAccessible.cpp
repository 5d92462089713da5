#include "ui/commandbar/CommandBarAccessible.h"

#include "platform/Win32Text.h"
#include "ui/commandbar/BnCommandBar.h"

namespace snip {
namespace {

LONG RoleOf(const BarButton& button) {
  switch (button.ButtonType) {
    case ButtonType::Menu:
      return ROLE_SYSTEM_BUTTONMENU;
    case ButtonType::Toggle:
      return ROLE_SYSTEM_CHECKBUTTON;
    case ButtonType::DropDown:
      return ROLE_SYSTEM_BUTTONDROPDOWN;
    case ButtonType::Separator:
      return ROLE_SYSTEM_SEPARATOR;
    default:
      return ROLE_SYSTEM_PUSHBUTTON;
  }
}

std::string ActionOf(const BarButton& button) {
  if (!button.Enabled || button.Is(ButtonType::Separator)) return {};
  if (button.Is(ButtonType::Menu)) return "Open";
  if (button.Is(ButtonType::Toggle)) return button.IsToggledOn() ? "Uncheck" : "Check";
  return "Press";
}

LONG StateOf(const BarButton& button, bool hot, bool pressed) {
  LONG state = 0;
  if (!button.Enabled) state |= STATE_SYSTEM_UNAVAILABLE;
  if (button.IsToggledOn()) state |= STATE_SYSTEM_CHECKED | STATE_SYSTEM_PRESSED;
  if (button.Is(ButtonType::Menu) || button.Is(ButtonType::DropDown)) state |= STATE_SYSTEM_HASPOPUP;
  if (hot && button.Enabled) state |= STATE_SYSTEM_HOTTRACKED;
  if (pressed) state |= STATE_SYSTEM_PRESSED;
  return state;
}

std::string ShortcutOf(const BarButton& button) {
  if (button.AccessKey == 0) return {};
  char key = static_cast<char>(button.AccessKey);
  CharUpperBuffA(&key, 1);
  return std::string("Alt+") + key;
}

}  // namespace

AccessibleWhole CommandBarAccessible::DescribeWhole() const {
  return {.name = WindowText(bar_.hWnd()), .role = ROLE_SYSTEM_TOOLBAR, .state = 0};
}

int CommandBarAccessible::AccessibleCount() const {
  return bar_.ButtonCount();
}

AccessibleItem CommandBarAccessible::DescribeItem(int item) const {
  const BarButton& button = bar_.buttons().All()[static_cast<std::size_t>(item)];
  return {.name = DisplayName(button.Caption),
          .role = RoleOf(button),
          .state = StateOf(button, bar_.input().HotButton() == item, bar_.input().PressedButton() == item),
          .place = button.Area(),
          .shortcut = ShortcutOf(button),
          .defaultAction = ActionOf(button)};
}

void CommandBarAccessible::DoDefaultAction(int item) {
  bar_.DoDefaultAction(item);
}

}  // namespace snip
