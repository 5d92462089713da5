#include "ui/main/MainWindowKeys.h"

#include <span>
#include <vector>

namespace snip {
namespace {

constexpr std::array kOtherKeys{
    ACCEL{kControlShiftKey, VK_RETURN, Command::kOutputMenu},
    ACCEL{kControlShiftKey, 'C', Command::kCopyCode},
    ACCEL{kControlShiftKey, 'A', Command::kAttachmentMenu},
    ACCEL{kControlKey, 'F', Command::kFind},
    ACCEL{kPlainKey, VK_F3, Command::kFindNext},
    ACCEL{kShiftKey, VK_F3, Command::kFindPrevious},
    // Commands of menus also need keys, because an open menu understands only Up, Down and Escape.
    ACCEL{kControlShiftKey, 'P', Command::kPasteCode},
    ACCEL{kControlShiftKey, 'M', Command::kNewModule},
    ACCEL{kControlShiftKey, 'V', Command::kPasteWithFields},
    ACCEL{kControlShiftKey, 'I', Command::kTakeCode},
    ACCEL{kControlKey, 'O', Command::kViewAttachment},
    ACCEL{kControlShiftKey, 'O', Command::kSetAttachment},
    ACCEL{kControlShiftKey, 'H', Command::kHistory},
    ACCEL{kPlainKey, VK_F6, Command::kNotice},
    ACCEL{kAltShiftKey, VK_LEFT, Command::kNarrowList},
    ACCEL{kAltShiftKey, VK_RIGHT, Command::kWidenList},
    ACCEL{kAltShiftKey, VK_UP, Command::kLowerDescription},
    ACCEL{kAltShiftKey, VK_DOWN, Command::kHeightenDescription},
};

std::vector<ACCEL> AllKeys() {
  std::vector<ACCEL> keys(kOtherKeys.begin(), kOtherKeys.end());
  const auto add = [&keys](std::span<const ToolbarButton> buttons, int command) {
    for (const ToolbarButton& button : buttons) {
      if (button.key != 0) keys.push_back({button.held, button.key, static_cast<WORD>(command)});
      ++command;
    }
  };
  add(kMainButtons, Command::kMainButton);
  add(kEditButtons, Command::kEditButton);
  return keys;
}

std::string NameOf(WORD key) {
  if (key == VK_RETURN) return "Enter";
  if (key >= VK_F1 && key <= VK_F24) return "F" + std::to_string(key - VK_F1 + 1);
  return {static_cast<char>(key)};  // digits and letters are their own codes
}

}  // namespace

UniqueAccelerators MakeAccelerators() {
  std::vector<ACCEL> keys = AllKeys();
  return UniqueAccelerators(CreateAcceleratorTableA(keys.data(), static_cast<int>(keys.size())));
}

std::string KeysOf(int command) {
  const std::vector<ACCEL> all = AllKeys();
  const auto found = std::ranges::find(all, static_cast<WORD>(command), &ACCEL::cmd);
  if (found == all.end()) return {};
  std::string keys;
  if ((found->fVirt & FCONTROL) != 0) keys += "Ctrl+";
  if ((found->fVirt & FALT) != 0) keys += "Alt+";
  if ((found->fVirt & FSHIFT) != 0) keys += "Shift+";
  return keys + NameOf(found->key);
}

}  // namespace snip
