#pragma once

#include <functional>
#include <string>

#include "ui/caption/CaptionedDialog.h"
#include "ui/find/HotKey.h"

namespace snip {

/// `RefusalOf` with the keyboard that is here.
std::string RefusalHere(HotKey key);

/// Lets the user choose the key that brings the palette over any program.
class frmFindKey : public CaptionedDialog {
 public:
  static constexpr int kKeyId = 100;
  static constexpr int kReasonId = 101;
  static constexpr int kOffId = 102;

  /// `use` makes a key the one that works, and says why not, or nothing.
  frmFindKey(CaptionPainter& caption, std::function<std::string(HotKey)> use)
      : CaptionedDialog(caption), use_(std::move(use)) {}

  /// Shows the dialog with the key that works now.
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
