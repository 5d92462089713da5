#pragma once

#include <windows.h>

#include <algorithm>
#include <array>

#include "resources/resource.h"
#include "ui/commandbar/CommandBarButtons.h"

namespace snip {

/// The commands of the main window's buttons, menus and keys; 0 is none.
namespace Command {
enum : int {
  // The command that presses a toolbar button is one of these plus the button's index. They are above the
  // numbers that the dialog manager sends for Enter and Escape (IDOK, IDCANCEL).
  kMainButton = 100,
  kEditButton = 200,
  kRenameSnippet = 300,
  kDeleteSnippet,
  kCopyCode,
  kOutputMenu,
  kAttachmentMenu,
  // The output modes.
  kPasteCode,
  kNewModule,
  kPasteWithFields,
  kTakeCode,
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
  kNewLibrary,
  kSaveLibrary,
  kRenameLibrary,
  kOutput,
  kCopyToClipboard,
  kNewSnippet,
  kEditSnippet,
  kSettings,
  kKeepOnTop,
  kAbout,
  kWebPage,
  kCommit,
  kSyntaxHighlighting,
  kUndo,
  kCut,
  kCopy,
  kPaste,
  kSelectAll,
  kFind,
  kFindNext,
  kFindPrevious,
  kUndoList,
  kRedoList,
  kMoveUp,
  kMoveDown,
  kMoveToTop,
  kMoveToBottom,
  kHistory,
  kNotice,
};
}  // namespace Command

/// A menu item. The items of the output button's menu are also its modes; its caption tells the current one.
struct CommandItem {
  const char* caption;
  int picture = 0;  ///< Resource number, 0 for none.
  int command = 0;  ///< 0 for a separator.
};

inline constexpr std::array kOutputModes{
    CommandItem{"Paste to Current Code Window", IDB_PASTE_TO_CODE, Command::kPasteCode},
    CommandItem{"Copy to Clipboard", IDB_COPY, Command::kCopyToClipboard},
    CommandItem{"Create New Module (All Snippets)", IDB_NEW_MODULE, Command::kNewModule},
};

/// The items that are added to the window's system menu.
inline constexpr std::array kSystemMenu{
    CommandItem{"&Find Snippets...", 0, Command::kFind},
    CommandItem{"&Paste with Fields Filled", 0, Command::kPasteWithFields},
    CommandItem{"Make Snippet of &Code", 0, Command::kTakeCode},
    CommandItem{"&History...", 0, Command::kHistory},
};

inline constexpr BYTE kPlainKey = FVIRTKEY;
inline constexpr BYTE kControlKey = FVIRTKEY | FCONTROL;
inline constexpr BYTE kShiftKey = FVIRTKEY | FSHIFT;
inline constexpr BYTE kAltShiftKey = FVIRTKEY | FALT | FSHIFT;
inline constexpr BYTE kControlShiftKey = FVIRTKEY | FCONTROL | FSHIFT;

struct ToolbarButton {
  const char* caption = "";
  int picture = 0;  ///< Resource number, 0 for none.
  int command = 0;  ///< 0 for a separator.
  BYTE held = 0;    ///< Accelerator flags of `key`, which does the same as a click.
  WORD key = 0;     ///< Virtual-key code, 0 for none.
  ButtonType type = ButtonType::Push;
};

inline constexpr ToolbarButton kButtonSeparator{.type = ButtonType::Separator};

/// The buttons of the main toolbar `cmd`.
inline constexpr std::array kMainButtons{
    ToolbarButton{"New Library", IDB_NEW_LIBRARY, Command::kNewLibrary, kControlShiftKey, 'N'},
    ToolbarButton{"Save Library", IDB_SAVE_LIBRARY, Command::kSaveLibrary, kControlKey, 'S'},
    ToolbarButton{"Rename Library", IDB_RENAME_LIBRARY, Command::kRenameLibrary, kShiftKey, VK_F2},
    kButtonSeparator,
    ToolbarButton{kOutputModes[0].caption, kOutputModes[0].picture, Command::kOutput, kControlKey, VK_RETURN,
                  ButtonType::DropDown},
    kButtonSeparator,
    ToolbarButton{"New Snippet", IDB_NEW_SNIPPET, Command::kNewSnippet, kControlKey, 'N'},
    ToolbarButton{"Edit Snippet", IDB_EDIT_SNIPPET, Command::kEditSnippet, kControlKey, 'E'},
    ToolbarButton{"Delete Snippet", IDB_DELETE_SNIPPET, Command::kDeleteSnippet},
    kButtonSeparator,
    ToolbarButton{"Settings...", IDB_SETTINGS, Command::kSettings, kPlainKey, VK_F9},
    ToolbarButton{"Keep on Top", IDB_KEEP_ON_TOP, Command::kKeepOnTop, kControlKey, 'T', ButtonType::Toggle},
    kButtonSeparator,
    ToolbarButton{"About...", IDB_ABOUT, Command::kAbout, kPlainKey, VK_F1},
    ToolbarButton{"Visual Basic Documentation on the Web", IDB_WEB_PAGE, Command::kWebPage, kControlKey,
                  VK_F1},
    kButtonSeparator,
};

/// The buttons of the editor toolbar `cmdEdit`.
inline constexpr std::array kEditButtons{
    ToolbarButton{"Commit", IDB_COMMIT, Command::kCommit, kControlKey, 'K'},
    kButtonSeparator,
    ToolbarButton{"Syntax Highlighting", IDB_SYNTAX_HIGHLIGHTING, Command::kSyntaxHighlighting, kControlKey,
                  'H', ButtonType::Toggle},
};

consteval int IndexOf(const auto& buttons, int command) {
  return static_cast<int>(std::ranges::find(buttons, command, &ToolbarButton::command) - buttons.begin());
}

/// The indexes of buttons in their toolbars.
namespace MainButton {
inline constexpr int kNewLibrary = IndexOf(kMainButtons, Command::kNewLibrary);
inline constexpr int kSaveLibrary = IndexOf(kMainButtons, Command::kSaveLibrary);
inline constexpr int kOutput = IndexOf(kMainButtons, Command::kOutput);
inline constexpr int kEditSnippet = IndexOf(kMainButtons, Command::kEditSnippet);
inline constexpr int kDeleteSnippet = IndexOf(kMainButtons, Command::kDeleteSnippet);
inline constexpr int kSettings = IndexOf(kMainButtons, Command::kSettings);
inline constexpr int kKeepOnTop = IndexOf(kMainButtons, Command::kKeepOnTop);
}  // namespace MainButton
namespace EditButton {
inline constexpr int kCommit = IndexOf(kEditButtons, Command::kCommit);
inline constexpr int kSyntaxHighlighting = IndexOf(kEditButtons, Command::kSyntaxHighlighting);
}  // namespace EditButton

}  // namespace snip
