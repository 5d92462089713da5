#pragma once

#include <string>

#include "platform/ExactTextField.h"
#include "ui/caption/CaptionedDialog.h"

namespace snip {

/// Asks for the name of a new library.
class frmNew : public CaptionedDialog {
 public:
  static constexpr int kNameId = 100;  ///< txtName

  explicit frmNew(CaptionPainter& caption) : CaptionedDialog(caption) {}

  /// Shows the dialog with `name` to begin with, all of it selected. Returns the name entered, empty when the
  /// dialog was cancelled or closed. The owner is disabled until then.
  std::string ShowMe(HWND owner, const std::string& name = {});

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;

 private:
  void cmdOK_Click();

  std::string name_;
  ExactTextField field_;
};

}  // namespace snip
