#include "ui/main/MainToolbars.h"

#include <algorithm>
#include <array>
#include <span>

#include "resources/resource.h"
#include "ui/commandbar/Picture.h"
#include "ui/main/MainWindowKeys.h"

namespace snip {
namespace {

struct Button {
  const char* caption;
  ButtonType type;
  int picture;  ///< Resource number, 0 for none.
};

constexpr Button kSeparator{"", ButtonType::Separator, 0};

constexpr std::array kMainButtons{
    Button{"New Library", ButtonType::Push, IDB_NEW_LIBRARY},
    Button{kSaveLibrary, ButtonType::Push, IDB_SAVE_LIBRARY},
    Button{"Rename Library", ButtonType::Push, IDB_RENAME_LIBRARY},
    kSeparator,
    Button{kPasteToCodeWindow, ButtonType::DropDown, IDB_PASTE_TO_CODE},
    kSeparator,
    Button{"New Snippet", ButtonType::Push, IDB_NEW_SNIPPET},
    Button{"Edit Snippet", ButtonType::Push, IDB_EDIT_SNIPPET},
    Button{"Delete Snippet", ButtonType::Push, IDB_DELETE_SNIPPET},
    kSeparator,
    Button{"Settings...", ButtonType::Push, IDB_SETTINGS},
    Button{"Keep on Top", ButtonType::Toggle, IDB_KEEP_ON_TOP},
    kSeparator,
    Button{"About...", ButtonType::Push, IDB_ABOUT},
    Button{"Visual Basic Documentation on the Web", ButtonType::Push, IDB_WEB_PAGE},
    kSeparator,
};

constexpr std::array kEditButtons{
    Button{"Commit", ButtonType::Push, IDB_COMMIT},
    kSeparator,
    Button{"Syntax Highlighting", ButtonType::Toggle, IDB_SYNTAX_HIGHLIGHTING},
};

constexpr std::array kOutputModes{
    OutputMode{kPasteToCodeWindow, IDB_PASTE_TO_CODE},
    OutputMode{kCopyToClipboard, IDB_COPY},
    OutputMode{kCreateNewModule, IDB_NEW_MODULE},
};

/// The first button has the command `firstCommand`, and so on.
void Fill(BnCommandBar& bar, std::span<const Button> buttons, int firstCommand, DisplayType display,
          Size pictureSize) {
  while (bar.ButtonCount() > 0) bar.RemoveButton(0);  // those of the window's last time
  for (const Button& button : buttons) {
    const PictureRef picture =
        button.picture != 0 ? Picture::FromResource(button.picture, pictureSize) : nullptr;
    bar.AddButton(button.caption, picture, button.type, display);
    const int index = bar.ButtonCount() - 1;
    bar.SetShortcut(index, ButtonPart::Push, KeysOf(firstCommand + index));
  }
}

}  // namespace

const OutputMode& OutputModeAt(int index) {
  return kOutputModes[static_cast<std::size_t>(
      std::clamp(index, 0, static_cast<int>(kOutputModes.size()) - 1))];
}

void FillMainToolbar(BnCommandBar& cmd, Size pictureSize) {
  Fill(cmd, kMainButtons, Command::kMainButton, DisplayType::Picture, pictureSize);
  cmd.SetShortcut(MainButton::kOutput, ButtonPart::Arrow, KeysOf(Command::kOutputMenu));
}

void FillEditToolbar(BnCommandBar& cmdEdit, Size pictureSize) {
  Fill(cmdEdit, kEditButtons, Command::kEditButton, DisplayType::PictureAndCaption, pictureSize);
}

void GrayLibraryButtons(BnCommandBar& cmd, bool grayed) {
  // A new library can always be made, and the rest has nothing to do with the library.
  for (int index = MainButton::kSaveLibrary; index <= MainButton::kDeleteSnippet; ++index) {
    cmd.SetGrayed(index, grayed);
  }
}

}  // namespace snip
