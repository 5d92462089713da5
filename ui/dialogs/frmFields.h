#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/CodeFields.h"
#include "platform/Handle.h"
#include "ui/caption/CaptionedDialog.h"
#include "ui/commandbar/PropertyBag.h"
#include "ui/dialogs/FieldRows.h"

namespace snip {

/// Asks for the texts of the fields of some code, and shows the filled code.
class frmFields : public CaptionedDialog {
 public:
  static constexpr int kPreviewId = 100;
  static constexpr int kFirstFieldId = 101;  ///< The ids of the other fields follow.

  using Preview = std::function<std::string(const FieldTexts&)>;

  frmFields(CaptionPainter& caption, FontProperty codeFont)
      : CaptionedDialog(caption), codeFontProperty_(std::move(codeFont)) {}

  /// Nothing if the dialog was cancelled or closed. Fields beyond a hundred keep their defaults, and the
  /// dialog says so. The owner is disabled while it is open.
  std::optional<FieldTexts> ShowMe(HWND owner, const std::vector<CodeField>& fields, const Preview& preview);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;

 private:
  void AddFields();
  HWND FieldAt(int index) const { return GetDlgItem(rows_.hWnd(), kFirstFieldId + index); }
  void ReadFields();
  /// Updates the preview and scrolls to what has changed.
  void ShowPreview();

  const std::vector<CodeField>* fields_ = nullptr;
  const Preview* preview_ = nullptr;
  int count_ = 0;  ///< Of the fields that are asked for.
  FieldTexts texts_;
  std::string shown_;  ///< The code in the preview.
  FieldRows rows_;
  FontProperty codeFontProperty_;
  UniqueFont codeFont_;
};

}  // namespace snip
