#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"

namespace snip {

/// A modal dialog of the system's dialog manager, which does Tab, Enter, Escape and the default button. There
/// is no template: the controls are made in `OnInit`, where texts can be measured.
class Dialog {
 public:
  Dialog() = default;
  Dialog(const Dialog&) = delete;
  Dialog& operator=(const Dialog&) = delete;
  virtual ~Dialog() = default;

 protected:
  HWND hWnd() const { return hWnd_; }

  /// Shows the dialog and returns when it has ended, with the value given to `End` (or -1 when it could not
  /// be shown). The owner is disabled meanwhile.
  INT_PTR ShowModal(HWND owner, DWORD style);
  void End(INT_PTR result) { EndDialog(hWnd_, result); }

  /// Makes the controls and sizes the dialog.
  virtual void OnInit() = 0;
  /// A control's notification; for a button, `notification` is BN_CLICKED. Escape comes as IDCANCEL, whether
  /// or not there is such a button.
  virtual void OnCommand(int id, int notification) = 0;
  /// The close box, or Alt+F4.
  virtual void OnClose() = 0;

  /// Gives the dialog that inner size and puts it in the middle of its owner, or of the screen, but whole on
  /// it.
  void SizeAndCentre(Size client);

 private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND hWnd_ = nullptr;
};

/// The area of the screen, in pixels, that windows may cover: of the monitor on which `window` is.
Rect WorkArea(HWND window);

}  // namespace snip
