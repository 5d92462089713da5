#pragma once

#include <utility>

#include "platform/Handle.h"
#include "platform/MessageFunction.h"
#include "ui/caption/CaptionedDialog.h"

namespace snip {

/// The About box.
class frmAbout : public CaptionedDialog {
 public:
  // Ids of `lblVersion`, `img` and `cmdSysInfo`; `cmdOK` is IDOK.
  static constexpr int kVersionId = 100;
  static constexpr int kImageId = 101;
  static constexpr int kSysInfoId = 102;

  frmAbout(ShowMessageFunction showMessage, CaptionPainter& caption)
      : CaptionedDialog(caption), showMessage_(std::move(showMessage)) {}

  /// Shows the box and waits until it is closed.
  void ShowMe(HWND owner);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void AddHeader();
  /// Credits and legal notice; returns where they end, in pixels.
  int AddTexts();

  ShowMessageFunction showMessage_;
  UniqueFont titleFont_;
  UniqueIcon picture_;
  int headerHeight_ = 0;  ///< Height in pixels of the band at the top, which has the colour of a text area.
};

}  // namespace snip
