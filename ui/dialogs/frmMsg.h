#pragma once

#include <string>
#include <vector>

#include "platform/Dialog.h"
#include "platform/Handle.h"
#include "platform/MessageFunction.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/dialogs/MessageBoxLayout.h"

namespace snip {

/// The program's message box. A button's control id is its result; `lbl` and `img` have ids of their own, by
/// which a test or a screen reader's script finds them.
class frmMsg : public Dialog {
 public:
  static constexpr int kLabelId = 100;
  static constexpr int kImageId = 101;

  explicit frmMsg(const SoundEffects& sounds) : sounds_(sounds) {}

  /// Shows the box before the thread's active window and waits until it is closed. A box that is closed
  /// without a button pressed reports OK.
  MessageResult Display(const std::string& prompt, int style, const std::string& title);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;
  void OnClose() override { End(static_cast<INT_PTR>(MessageResult::Ok)); }

 private:
  MessageBoxLayout LayOut() const;

  const SoundEffects& sounds_;
  std::string prompt_;
  std::string title_;
  MessageBoxStyle style_;
  UniqueFont font_;
};

/// Shows a message and returns the button that was pressed.
MessageResult ShowMessage(const SoundEffects& sounds, const std::string& prompt, int style,
                          const std::string& title);

}  // namespace snip
