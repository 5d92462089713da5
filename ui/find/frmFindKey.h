#pragma once

#include <functional>
#include <string>

#include "ui/caption/CaptionedDialog.h"
#include "ui/find/HotKey.h"

namespace snip {

/// `RefusalOf` with the user's keyboard layout.
std::string RefusalHere(HotKey key);

/// The dialog that sets the system-wide key of the palette.
class frmFindKey : public CaptionedDialog {
 public:
  static constexpr int kKeyId = 100;
  static constexpr int kReasonId = 101;
  static constexpr int kOffId = 102;

  /// `use` applies a key and returns why that failed, or an empty text.
  frmFindKey(CaptionPainter& caption, std::function<std::string(HotKey)> use)
      : CaptionedDialog(caption), use_(std::move(use)) {}

  /// Shows the dialog with the current key.
  void ShowMe(HWND owner, HotKey key);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;

 private:
  void Use(HotKey key);

  std::function<std::string(HotKey)> use_;
  HotKey key_;
  HWND field_ = nullptr;
  HWND reason_ = nullptr;
};

}  // namespace snip
