#pragma once

#include <string>

#include "platform/Handle.h"
#include "ui/main/MainToolbars.h"

namespace snip {

/// What keys do in the main window. Buttons of the two toolbars have the number of the button above a base,
/// so that a key does what the button does.
namespace Command {
enum : int {
  // Above the numbers that the dialog manager sends for Enter and Escape (IDOK, IDCANCEL).
  kMainButton = 100,
  kEditButton = 200,
  kRenameSnippet = 300,
  kDeleteSnippet,
  kCopyCode,
  kOutputMenu,
  kAttachmentMenu,
  // What is in no toolbar: a menu that has been opened knows the keys Up, Down and Escape alone.
  kPasteCode,
  kNewModule,
  kViewAttachment,
  kSetAttachment,
  kNarrowList,
  kWidenList,
  kLowerDescription,
  kHeightenDescription,
  kAcceptName,
  kCancelName,
  kAcceptFileName,
  kCancelFileName,
};
}  // namespace Command

/// The keys that do the same wherever the focus is.
UniqueAccelerators MakeAccelerators();

/// The keys of a command that is a button's or the output menu's, as a person reads them; empty without any.
std::string KeysOf(int command);

}  // namespace snip
