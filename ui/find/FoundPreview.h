#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "ui/editor/BnRichEdit.h"
#include "ui/find/FindTarget.h"

namespace snip {

/// The field below the palette's list: shows the code of the selected row, with what was found marked in it.
class FoundPreview {
 public:
  /// Null before `CreateIn`.
  HWND hWnd() const { return field_.hWnd(); }
  /// In the order of the Tab key it follows `before`.
  void CreateIn(HWND parent, int id, HWND before, const FontProperty& font);

  /// Uses the font and the colouring of the main window's code field.
  void SetLook(const FontProperty& font, bool coloursCode);
  /// Shows the code with those places marked, and scrolls to `current`, or to the first. The same code with
  /// the same marks stays scrolled as the user left it.
  void Show(const std::string& code, const std::vector<TextRange>& places, std::optional<TextRange> current);
  void Clear();

  /// Whether it has the focus and the user has selected something in it.
  bool HasSelection() const { return field_.HasFocus() && field_.SelLength() > 0; }

 private:
  BnRichEdit field_{{}};
  std::string code_;  ///< The code that is shown.
  Marks marks_;
};

}  // namespace snip
