#include "ui/main/MainWindowKeys.h"

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

}  // namespace

UniqueAccelerators MakeAccelerators() {
  std::array keys{
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
  return UniqueAccelerators(CreateAcceleratorTableA(keys.data(), static_cast<int>(keys.size())));
}

}  // namespace snip
