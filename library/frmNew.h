#pragma once

#include <string>

#include "platform/Dialog.h"

namespace snip {

/// Asks for the name of a new library.
class frmNew : public Dialog {
 public:
  static constexpr int kNameId = 100;  ///< txtName

  /// Shows the dialog with `name` to begin with, all of it selected. Returns the name entered, empty when the
  /// dialog was cancelled or closed. The owner is disabled meanwhile.
  std::string ShowMe(HWND owner, const std::string& name = {});

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;
  void OnClose() override { End(IDCANCEL); }

 private:
  void cmdOK_Click();

  std::string name_;
};

}  // namespace snip
