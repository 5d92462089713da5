#include "ui/main/MainWindowKeys.h"

#include <algorithm>
#include <array>

namespace snip {
namespace {

constexpr BYTE kPlain = FVIRTKEY;
constexpr BYTE kControl = FVIRTKEY | FCONTROL;
constexpr BYTE kShift = FVIRTKEY | FSHIFT;
constexpr BYTE kAltShift = FVIRTKEY | FALT | FSHIFT;
constexpr BYTE kControlShift = FVIRTKEY | FCONTROL | FSHIFT;

constexpr ACCEL Main(BYTE held, WORD key, int button) {
  return {held, key, static_cast<WORD>(Command::kMainButton + button)};
}

constexpr ACCEL Edit(BYTE held, WORD key, int button) {
  return {held, key, static_cast<WORD>(Command::kEditButton + button)};
}

constexpr std::array kKeys{
    Main(kControlShift, 'N', MainButton::kNewLibrary),
    Main(kControl, 'S', MainButton::kSaveLibrary),
    Main(kShift, VK_F2, MainButton::kRenameLibrary),
    Main(kControl, VK_RETURN, MainButton::kOutput),
    Main(kControl, 'N', MainButton::kNewSnippet),
    Main(kControl, 'E', MainButton::kEditSnippet),
    Main(kPlain, VK_F9, MainButton::kSettings),
    Main(kControl, 'T', MainButton::kKeepOnTop),
    Main(kPlain, VK_F1, MainButton::kAbout),
    Main(kControl, VK_F1, MainButton::kWebPage),
    Edit(kControl, 'K', EditButton::kCommit),
    Edit(kControl, 'H', EditButton::kSyntaxHighlighting),
    ACCEL{kControlShift, VK_RETURN, Command::kOutputMenu},
    ACCEL{kControlShift, 'C', Command::kCopyCode},
    ACCEL{kControlShift, 'A', Command::kAttachmentMenu},
    ACCEL{kControlShift, 'P', Command::kPasteCode},
    ACCEL{kControlShift, 'M', Command::kNewModule},
    ACCEL{kControl, 'O', Command::kViewAttachment},
    ACCEL{kControlShift, 'O', Command::kSetAttachment},
    ACCEL{kAltShift, VK_LEFT, Command::kNarrowList},
    ACCEL{kAltShift, VK_RIGHT, Command::kWidenList},
    ACCEL{kAltShift, VK_UP, Command::kLowerDescription},
    ACCEL{kAltShift, VK_DOWN, Command::kHeightenDescription},
};

std::string NameOf(WORD key) {
  if (key == VK_RETURN) return "Enter";
  if (key >= VK_F1 && key <= VK_F24) return "F" + std::to_string(key - VK_F1 + 1);
  return {static_cast<char>(key)};  // digits and letters are their own codes
}

}  // namespace

UniqueAccelerators MakeAccelerators() {
  auto keys = kKeys;
  return UniqueAccelerators(CreateAcceleratorTableA(keys.data(), static_cast<int>(keys.size())));
}

std::string KeysOf(int command) {
  const auto* const found = std::ranges::find(kKeys, static_cast<WORD>(command), &ACCEL::cmd);
  if (found == kKeys.end()) return {};
  std::string keys;
  if ((found->fVirt & FCONTROL) != 0) keys += "Ctrl+";
  if ((found->fVirt & FALT) != 0) keys += "Alt+";
  if ((found->fVirt & FSHIFT) != 0) keys += "Shift+";
  return keys + NameOf(found->key);
}

}  // namespace snip
