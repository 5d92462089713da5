#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"
#include "platform/Handle.h"

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
  /// be shown). The owner is disabled until it returns.
  INT_PTR ShowModal(HWND owner, DWORD style);
  void End(INT_PTR result) { EndDialog(hWnd_, result); }

  /// Makes the controls and sizes the dialog.
  virtual void OnInit() = 0;
  /// A control's notification; for a button, `notification` is BN_CLICKED. Escape comes as IDCANCEL, whether
  /// or not there is such a button.
  virtual void OnCommand(int id, int notification) = 0;
  /// The close box, or Alt+F4.
  virtual void OnClose() = 0;
  /// Any other message, answered as a dialog procedure does: TRUE when nothing further is to happen, FALSE
  /// for the usual; for WM_CTLCOLOR messages a brush or null.
  virtual INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  /// The window is about to go.
  virtual void OnDestroy() {}

  /// The font of the controls that `Add` makes; it is also what dialog units are measured by.
  void UseFont(UniqueFont font);
  HFONT font() const { return font_.get(); }
  /// From dialog units into pixels.
  int Across(int units) const { return MulDiv(units, character_.width, 4); }
  int Down(int units) const { return MulDiv(units, character_.height, 8); }
  Rect Pixels(const Rect& units) const;

  /// Makes a visible control; `units` is its place in dialog units.
  HWND Add(const char* className, const char* text, DWORD style, int id, const Rect& units,
           DWORD exStyle = 0);
  HWND AddLabel(const char* text, const Rect& units, int id = -1);
  HWND AddButton(const char* text, int id, const Rect& units, DWORD style = BS_PUSHBUTTON);
  /// The button that Enter presses.
  HWND AddDefaultButton(const char* text, int id, const Rect& units);

  /// Gives the dialog that inner size and puts it in the middle of its owner, or of the screen, but whole on
  /// it.
  void SizeAndCentre(Size client);

 private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

  HWND hWnd_ = nullptr;
  UniqueFont font_;
  Size character_;
};

/// The area of the screen, in pixels, that windows may cover: of the monitor on which `window` is.
Rect WorkArea(HWND window);

}  // namespace snip
