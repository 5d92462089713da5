#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/Subclass.h"
#include "platform/TextFieldBytes.h"

namespace snip {

/// The text of an edit or rich-edit control, byte for byte: what was put in and not touched by the user comes
/// out as it was, whatever the control makes of zero bytes and lone line ends.
///
/// What is pasted becomes what the code page has of it, so that the control shows what will be stored.
class ExactTextField {
 public:
  ExactTextField() = default;
  /// Of a control that has just been made: what has been put in front of its procedure does not see the texts
  /// that are set.
  explicit ExactTextField(HWND control);

  void SetText(const std::string& text);
  /// Nothing when the control does not tell it.
  std::optional<std::string> Text() const;

 private:
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

  HWND control_ = nullptr;
  WNDPROC own_ = &DefWindowProcA;  ///< The control's.
  std::unique_ptr<Subclass> pasting_;
  std::string original_;
  TextFieldBytes bytes_;
};

}  // namespace snip
