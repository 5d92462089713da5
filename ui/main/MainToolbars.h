#pragma once

#include <functional>

#include "platform/Geometry.h"
#include "ui/commandbar/BnCommandBar.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/MainWindowCommands.h"
#include "ui/main/frmTip.h"

namespace snip {

/// The two toolbars of the main window, and their tip.
class MainToolbars {
 public:
  struct Events {
    std::function<void(int command)> Clicked;  ///< The command of the clicked button.
    std::function<void()> Dropdown;            ///< The output button's arrow.
    std::function<void()> Resize;              ///< The main toolbar's.
  };

  MainToolbars(const SoundEffects& sounds, const ShowMessageFunction& showMessage,
               const LibraryOperations& operations, Events events);

  void CreateMain(HWND parent, int id, HFONT font);
  void CreateEdit(HWND parent, int id, HFONT font);
  void Destroy() { tip_.Destroy(); }

  /// What the output button does: the command of one of `kOutputModes`.
  int OutputMode() const;
  void SetOutputMode(int command);

  /// Greys what works on the library, or makes it available again.
  void SetEditingDisabled(bool disabled);
  /// The edit button shows what it does next: to edit, or to commit the edit.
  void SetEditMode(bool editing);

  BnCommandBar cmd;
  BnCommandBar cmdEdit;

 private:
  class Tip : public frmTip {
   public:
    explicit Tip(const LibraryOperations& operations) : operations_(operations) {}
    /// "Save Library" adds the file that it writes, if the chooser shows another one.
    void ShowTip(const std::string& text, int x, int y) override;

   private:
    const LibraryOperations& operations_;
  };

  void cmd_ButtonClicked(int index) const;
  void cmdEdit_ButtonClicked(int index) const;
  void SetLook(int button, const char* caption, int picture);

  Tip tip_;
  std::function<void(int command)> clicked_;
};

}  // namespace snip
