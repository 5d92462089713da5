#pragma once

#include <string>

#include "platform/Dialog.h"
#include "ui/caption/CaptionHook.h"

namespace snip {

/// Asks for the name of a new library.
class frmNew : public Dialog {
 public:
  static constexpr int kNameId = 100;  ///< txtName

  explicit frmNew(CaptionPainter& caption) : caption_(caption) {}

  /// Shows the dialog with `name` to begin with, all of it selected. Returns the name entered, empty when the
  /// dialog was cancelled or closed. The owner is disabled meanwhile.
  std::string ShowMe(HWND owner, const std::string& name = {});

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;
  void OnClose() override { End(IDCANCEL); }
  void OnDestroy() override { captionHook_.Remove(); }

 private:
  void cmdOK_Click();

  CaptionPainter& caption_;
  CaptionHook captionHook_;
  std::string name_;
};

}  // namespace snip
