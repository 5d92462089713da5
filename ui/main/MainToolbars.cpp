#include "ui/main/MainToolbars.h"

#include <span>
#include <utility>

#include "platform/ScreenTwips.h"
#include "ui/commandbar/Picture.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/main/MainWindowKeys.h"

namespace snip {
namespace {

/// The side of a picture, in twips.
constexpr int kPicture = 240;

PictureRef BarPicture(int resource) {
  const TwipsPerPixel twips = ScreenTwips();
  return resource == 0
             ? nullptr
             : Picture::FromResource(resource, {twips.ToPixelsX(kPicture), twips.ToPixelsY(kPicture)});
}

void Create(BnCommandBar& bar, HWND parent, int id, const char* name, HFONT font,
            std::span<const ToolbarButton> buttons, int firstCommand, DisplayType display) {
  LOGFONTA logFont{};
  GetObjectA(font, sizeof logFont, &logFont);
  bar.CreateIn(parent, id, name, FontPropertyOf(logFont, ScreenTwips()));
  while (bar.ButtonCount() > 0) bar.RemoveButton(0);  // those of an earlier window
  for (const ToolbarButton& button : buttons) {
    bar.AddButton(button.caption, BarPicture(button.picture), button.type, display);
    const int index = bar.ButtonCount() - 1;
    bar.SetShortcut(index, ButtonPart::Push, KeysOf(firstCommand + index));
  }
}

}  // namespace

MainToolbars::MainToolbars(const SoundEffects& sounds, const ShowMessageFunction& showMessage,
                           const LibraryOperations& operations, Events events)
    : cmd({.sounds = sounds, .tip = &tip_, .showMessage = showMessage},
          {.ButtonClicked = [this](int index) { cmd_ButtonClicked(index); },
           .Dropdown = [dropdown = std::move(events.Dropdown)](int) { dropdown(); },
           .Resize = std::move(events.Resize)}),
      cmdEdit({.sounds = sounds, .tip = &tip_, .showMessage = showMessage},
              {.ButtonClicked = [this](int index) { cmdEdit_ButtonClicked(index); }}),
      tip_(operations),
      clicked_(std::move(events.Clicked)) {}

void MainToolbars::cmd_ButtonClicked(int index) const {
  clicked_(kMainButtons[static_cast<std::size_t>(index)].command);
}

void MainToolbars::cmdEdit_ButtonClicked(int index) const {
  clicked_(kEditButtons[static_cast<std::size_t>(index)].command);
}

void MainToolbars::CreateMain(HWND parent, int id, HFONT font) {
  tip_.SetFont(font);
  Create(cmd, parent, id, "Main toolbar", font, kMainButtons, Command::kMainButton, DisplayType::Picture);
  cmd.SetShortcut(MainButton::kOutput, ButtonPart::Arrow, KeysOf(Command::kOutputMenu));
}

void MainToolbars::CreateEdit(HWND parent, int id, HFONT font) {
  Create(cmdEdit, parent, id, "Editor toolbar", font, kEditButtons, Command::kEditButton,
         DisplayType::PictureAndCaption);
}

int MainToolbars::OutputMode() const {
  return std::ranges::find(kOutputModes, cmd.Caption(MainButton::kOutput), &CommandItem::caption)->command;
}

void MainToolbars::SetOutputMode(int command) {
  const CommandItem& mode = *std::ranges::find(kOutputModes, command, &CommandItem::command);
  SetLook(MainButton::kOutput, mode.caption, mode.picture);
}

void MainToolbars::SetEditingDisabled(bool disabled) {
  // A new library can always be made, and the rest has nothing to do with the library.
  for (int index = MainButton::kSaveLibrary; index <= MainButton::kDeleteSnippet; ++index) {
    cmd.SetGrayed(index, disabled);
  }
}

void MainToolbars::SetEditMode(bool editing) {
  SetLook(MainButton::kEditSnippet, kMainButtons[MainButton::kEditSnippet].caption,
          editing ? IDB_COMMIT : IDB_EDIT_SNIPPET);
}

void MainToolbars::SetLook(int button, const char* caption, int picture) {
  cmd.SetCaption(button, caption);
  cmd.SetPicture(button, BarPicture(picture));
  cmd.RedrawButton(button);
}

void MainToolbars::Tip::ShowTip(const std::string& text, int x, int y) {
  const bool saves = text == kMainButtons[MainButton::kSaveLibrary].caption;
  const std::string file = saves ? operations_.SavedElsewhere() : std::string();
  frmTip::ShowTip(file.empty() ? text : text + ": " + file, x, y);
}

}  // namespace snip
