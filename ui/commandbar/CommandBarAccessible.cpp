#include "ui/commandbar/CommandBarAccessible.h"

#include <algorithm>

#include "platform/Win32Text.h"
#include "ui/commandbar/BnCommandBar.h"
#include "ui/commandbar/ButtonPlaces.h"

namespace snip {
namespace {

LONG RoleOf(const BarButton& button) {
  switch (button.ButtonType) {
    case ButtonType::Menu:
      return ROLE_SYSTEM_BUTTONMENU;
    case ButtonType::Toggle:
      return ROLE_SYSTEM_CHECKBUTTON;
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
  if (button.Is(ButtonType::Menu)) state |= STATE_SYSTEM_HASPOPUP;
  if (hot && button.Enabled) state |= STATE_SYSTEM_HOTTRACKED;
  if (pressed) state |= STATE_SYSTEM_PRESSED;
  return state;
}

std::string AccessKeyOf(const BarButton& button) {
  if (button.AccessKey == 0) return {};
  char key = static_cast<char>(button.AccessKey);
  CharUpperBuffA(&key, 1);
  return std::string("Alt+") + key;
}

}  // namespace

int CommandBarAccessible::AccessibleCount() const {
  return ItemOf(bar_.ButtonCount());
}

int CommandBarAccessible::ItemOf(int button) const {
  const auto& buttons = bar_.buttons().All();
  return button +
         static_cast<int>(std::count_if(buttons.begin(), buttons.begin() + button,
                                        [](const BarButton& b) { return b.Is(ButtonType::DropDown); }));
}

CommandBarAccessible::PartId CommandBarAccessible::IdOf(int item) const {
  for (const BarButton& button : bar_.buttons().All()) {
    if (item-- == 0) return {button.Id, ButtonPart::Push};
    if (button.Is(ButtonType::DropDown) && item-- == 0) return {button.Id, ButtonPart::Arrow};
  }
  return {};
}

AccessibleItem CommandBarAccessible::DescribeItem(int item) const {
  const auto [id, part] = IdOf(item);
  const int index = bar_.buttons().IndexOf(id);
  const BarButton& button = *bar_.buttons().Find(index);
  const ButtonPlaces places = PlacesOf(button, {}, {});
  const std::string name = DisplayName(button.Caption);
  const std::string shortcut = bar_.Shortcut(index, part);
  if (part == ButtonPart::Arrow) {
    return {.name = name + " menu",
            .role = ROLE_SYSTEM_BUTTONDROPDOWN,
            .state = STATE_SYSTEM_HASPOPUP | (button.Enabled ? 0 : STATE_SYSTEM_UNAVAILABLE),
            .place = places.arrowPart,
            .shortcut = shortcut.empty() ? AccessKeyOf(button) : shortcut,
            .defaultAction = button.Enabled ? "Open" : ""};
  }
  // The access key of a drop-down button opens its menu.
  const bool hasAccessKey = shortcut.empty() && !button.Is(ButtonType::DropDown);
  return {.name = name,
          .role = RoleOf(button),
          .state = StateOf(button, bar_.input().HotButton() == index, bar_.input().PressedButton() == index),
          .place = places.pushPart,
          .shortcut = hasAccessKey ? AccessKeyOf(button) : shortcut,
          .defaultAction = ActionOf(button)};
}

void CommandBarAccessible::DoDefaultAction(int item) {
  const auto [id, part] = IdOf(item);
  bar_.DoDefaultAction(bar_.buttons().IndexOf(id), part);
}

}  // namespace snip
