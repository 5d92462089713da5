#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <string>

namespace snip {

/// The system's Open, Save, Colour and Font dialogs: set the fields, show one, read the results from the same
/// fields. A dialog that is cancelled leaves them as they are.
class CommonDialog {
 public:
  /// What `ShowFont` returns when it was cancelled and `CancelError` is on.
  static constexpr std::int32_t kCancelError = 2001;

  CommonDialog() { customColors_.fill(RGB(255, 255, 255)); }

  /// Owner of the file dialogs. Null is the active window, which then is stored here.
  HWND hWnd = nullptr;
  /// The dialog's flags (OFN_, CC_ or CF_); no others are added.
  DWORD Flags = 0;

  std::string Filter;     ///< description|pattern|description|pattern
  DWORD FilterIndex = 0;  ///< The filter to begin with, from 1.
  std::string InitDir;
  std::string DefaultExt;   ///< Added when the user types none.
  std::string DialogTitle;  ///< Empty for the system's own.
  /// In: the name that Save proposes. Out: the full path chosen, at most 254 bytes. The name of a file in
  /// `InitDir` is replaced by the name as it is spelt there, even if the dialog is cancelled.
  std::string FileName;

  COLORREF Color = 0;

  /// In and out. `FontName` comes back as the whole field of 32 bytes: the name, followed by zero bytes.
  std::string FontName;
  int FontSize = 0;  ///< In whole points; a fraction is dropped.
  bool FontBold = false;
  bool FontItalic = false;
  bool FontStrikethru = false;
  bool FontUnderline = false;

  /// Whether `ShowFont` returns `kCancelError` if it is cancelled.
  bool CancelError = false;

  /// The chosen file's name without its path.
  const std::string& FileTitle() const { return fileTitle_; }
  /// The 8.3 forms of `FileName` and of its name part; empty when there is no such file.
  std::string ShortFileName() const;
  std::string ShortFileTitle() const;

  /// The system's extended error code after a font dialog that was neither confirmed nor cancelled.
  DWORD LastError() const { return lastError_; }
  /// What the system's font dialog returned last.
  BOOL LastResult() const { return lastResult_; }

  /// Never proposes `FileName`.
  void ShowOpen();
  void ShowSave();
  void ShowColor();
  /// Returns `kCancelError` or 0.
  std::int32_t ShowFont();

 private:
  enum class FileMode { Open, Save };
  void ShowFileDialog(FileMode mode);
  void TakeNameFromFolder();

  std::string fileTitle_;
  DWORD lastError_ = 0;
  BOOL lastResult_ = FALSE;
  std::array<COLORREF, 16> customColors_{};  ///< Kept from one colour dialog to the next.
};

}  // namespace snip
