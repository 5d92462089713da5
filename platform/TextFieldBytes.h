#pragma once

#include <string>
#include <string_view>

namespace snip {

/// Carries any bytes through an edit control, which ends its text at the first zero byte.
///
/// Every line ending is shown as CR LF, because rich-edit controls change any other. A zero byte is shown as
/// a control character that does not occur in the text and turned back when the text is read again, so that a
/// damaged or foreign library keeps every byte it came with.
class TextFieldBytes {
 public:
  TextFieldBytes() = default;
  explicit TextFieldBytes(std::string_view text);

  /// The text as the control is to hold it: without zero bytes, and with CR LF behind every line.
  const std::string& shown() const { return shown_; }

  /// The bytes of `fieldText`, which was read back from the control.
  std::string Restore(std::string fieldText) const;

 private:
  std::string shown_;
  char standIn_ = '\0';  ///< '\0' while the text holds no zero byte.
};

}  // namespace snip
