#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/CodeFields.h"
#include "platform/Handle.h"
#include "ui/caption/CaptionedDialog.h"
#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// Asks for the texts of code's fields, and shows the code that comes of them.
class frmFields : public CaptionedDialog {
 public:
  static constexpr int kPreviewId = 100;
  static constexpr int kFirstFieldId = 101;  ///< The others follow.

  /// By the names of the fields.
  using Texts = std::map<std::string, std::string>;
  using Preview = std::function<std::string(const Texts&)>;

  frmFields(CaptionPainter& caption, FontProperty codeFont)
      : CaptionedDialog(caption), codeFontProperty_(std::move(codeFont)) {}

  /// Nothing when the dialog was cancelled or closed. More fields than there is room for are asked for by one
  /// dialog after the other. The owner is disabled meanwhile.
  std::optional<Texts> ShowMe(HWND owner, const std::vector<CodeField>& fields, const Preview& preview);

 protected:
  void OnInit() override;
  void OnCommand(int id, int notification) override;

 private:
  HWND FieldAt(std::size_t index) const;
  void ReadFields();
  void ShowPreview();

  const std::vector<CodeField>* fields_ = nullptr;
  const Preview* preview_ = nullptr;
  std::size_t first_ = 0;  ///< The first field that is asked for here.
  std::size_t count_ = 0;
  Texts texts_;
  FontProperty codeFontProperty_;
  UniqueFont codeFont_;
};

}  // namespace snip
