#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/Subclass.h"
#include "platform/TextFieldBytes.h"

namespace snip {

/// The text of an edit or rich-edit control, byte for byte: what was put in and not touched by the user comes
/// out as it was, whatever the control makes of zero bytes and lone line endings.
///
/// What is pasted becomes what the code page has of it, so that the control shows what will be stored.
class ExactTextField {
 public:
  /// From now on the text of this edit control.
  void Attach(HWND control);

  void SetText(const std::string& text);
  /// Nothing when the control does not tell it.
  std::optional<std::string> Text() const;

 private:
  HWND control_ = nullptr;
  Subclass subclass_;
  std::string original_;
  TextFieldBytes bytes_;
};

}  // namespace snip
