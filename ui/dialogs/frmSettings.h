#pragma once

#include <string>

#include "platform/Handle.h"
#include "settings/SettingsStore.h"
#include "ui/caption/CaptionedDialog.h"
#include "ui/dialogs/SettingsChoices.h"
#include "ui/dialogs/SettingsTarget.h"

namespace snip {

/// The settings dialog. It begins with what the running program is set to; OK applies and saves, Cancel and
/// closing do nothing.
class frmSettings : public CaptionedDialog {
 public:
  enum Control : int {
    chkFirstSwitch = 100,
    lstFontName = 200,
    cboFontSize,
    lblDisp,
    cmdFont,
  };

  static constexpr int IdOf(Switch which) { return chkFirstSwitch + static_cast<int>(which); }

  frmSettings(SettingsTarget& target, const SettingsStore& store, CaptionPainter& caption)
      : CaptionedDialog(caption), target_(target), store_(store) {}

  /// Shows the dialog and waits until it is closed.
  void ShowMe(HWND owner);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void AddControls();
  void Form_Load();
  void lstFontName_Click();
  void cboFontSize_Change();
  void cboFontSize_Click();
  void cmdFont_Click();
  void cmdOK_Click();

  HWND Item(Control control) const { return GetDlgItem(hWnd(), control); }
  void SelectFontName(const std::string& name);
  void SetFontSizeText(int points);
  void TakeFontSize(const std::string& text);
  void ShowSample();

  SettingsTarget& target_;
  const SettingsStore& store_;
  SettingsChoices choices_;
  UniqueFont sampleFont_;
};

}  // namespace snip
