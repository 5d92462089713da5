#pragma once

#include <functional>
#include <string>

#include "platform/ExactTextField.h"
#include "platform/Window.h"

namespace snip {

/// The code field: a window around the platform's rich-edit control. It makes that control anew when another
/// long text is to be shown, because replacing one takes the control many times longer than filling it.
class BnRichEdit : public Window {
 public:
  struct Events {
    std::function<void()> gotFocus;
    std::function<void()> lostFocus;
    std::function<void(char key)> keyPress;  ///< A character in the ANSI code page, before it is taken in.
    std::function<void()> dblClick;
    std::function<void(int button, POINT screen)> mouseDown;  ///< 1 is the left button, 2 the right one.
    std::function<void(POINT screen)> contextMenu;            ///< Asked for by a key.
  };

  explicit BnRichEdit(Events events);
  ~BnRichEdit() override;

  bool CreateIn(HWND parent, int id, HFONT font);

  std::string text() const { return field_.Text(); }
  void SetText(const std::string& text);

  /// Read-only while locked; text can still be selected and copied.
  bool locked() const { return locked_; }
  void SetLocked(bool locked);

  void SetFont(HFONT font);
  bool SyntaxColors() const { return syntaxColors_; }
  void SetSyntaxColors(bool colors) { syntaxColors_ = colors; }
  int SelLength() const;
  void SetSelection(int start, int length);
  int TextLength() const;
  std::string SelText() const;
  void ReplaceSelection(const std::string& text);
  bool CanUndo() const { return SendMessageA(control_, EM_CANUNDO, 0, 0) != 0; }
  void Undo() { SendMessageA(control_, EM_UNDO, 0, 0); }

  void Focus() const { SetFocus(control_); }
  bool HasFocus() const { return GetFocus() == control_; }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void MakeControl();
  /// Looks at an input message before the control does; true when the control is not to see it.
  bool FilterInput(UINT message, WPARAM wParam, LPARAM lParam);
  void SelectWordAt(POINTL place);

  Events events_;
  bool hasRichEdit_;
  HWND control_ = nullptr;  ///< Belongs to this window and goes with it.
  HFONT font_ = nullptr;
  ExactTextField field_;
  bool locked_ = true;
  bool remaking_ = false;
  bool syntaxColors_ = true;
};

}  // namespace snip
