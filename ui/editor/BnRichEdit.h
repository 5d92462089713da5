#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Handle.h"
#include "platform/Subclass.h"
#include "platform/TextFieldBytes.h"
#include "platform/Window.h"
#include "ui/commandbar/PropertyBag.h"
#include "ui/editor/CodeColouring.h"
#include "ui/editor/CodeFilling.h"
#include "ui/editor/CodeMarks.h"
#include "ui/editor/MouseSelection.h"

namespace snip {

/// The code field: a window around the platform's rich-edit control, which it colours as Visual Basic code. A
/// system without that control gets a plain edit control and no colours.
///
/// It replaces the control when another long text is to be shown, because replacing one takes the control
/// many times longer than filling it. The live control is always the window's first child.
///
/// Places in the text count characters from 0 as the control does: a line end is one in a rich-edit control
/// and two in a plain one.
class BnRichEdit : public Window {
 public:
  /// Of the control in the window.
  static constexpr int kControlId = 1;

  enum MouseButton { kLeftButton = 1, kRightButton = 2 };

  /// Any may be empty, and none may end the field. Points are in pixels of the screen.
  struct Events {
    std::function<void()> gotFocus{};
    std::function<void()> lostFocus{};
    std::function<void(char key)> keyPress{};  ///< A character in the ANSI code page, before it is taken in.
    std::function<void()> change{};            ///< The user has changed the text.
    std::function<void()> dblClick{};
    /// The right button has no effect and no menu of its own; it gives the field the focus.
    std::function<void(MouseButton button, POINT screen)> mouseDown{};
    /// A menu is asked for by the keyboard; the point is below the caret.
    std::function<void(POINT screen)> contextMenu{};
  };
  enum class Engine { RichEdit, PlainEdit };

  explicit BnRichEdit(Events events, Engine preferred = Engine::RichEdit);
  ~BnRichEdit() override;

  /// `name` is what a screen reader calls it.
  bool CreateIn(HWND parent, int id, const FontProperty& font, const char* name = "Code");

  /// What was put in and not changed comes out byte for byte; a changed text has CR LF behind each line.
  /// Nothing when the control does not tell it.
  std::optional<std::string> text() const;
  /// Shows another text from its start. This is no edit: there is nothing to undo afterwards.
  void SetText(const std::string& text);
  /// In the control's characters.
  int TextLength() const;

  /// Read-only while locked; text can still be selected and copied.
  bool locked() const { return locked_; }
  void SetLocked(bool locked);

  const FontProperty& Font() const { return font_; }
  void SetFont(const FontProperty& font);

  /// A colour or a system colour (platform/OleColor.h).
  COLORREF foreColor() const { return foreColor_; }
  void SetForeColor(COLORREF color);

  /// Whether code is coloured. The system's high contrast leaves it in the fore colour all the same.
  bool SyntaxColors() const { return colouring_.syntaxColors(); }
  void SetSyntaxColors(bool colouring);

  int SelStart() const;
  int SelLength() const;
  void SetSelection(int start, int length);
  /// Scrolls the line of the selection's start into the middle, as far as there are lines.
  void ScrollToMiddle() const;
  /// Where in the control a byte of `text()` is, and back.
  int PlaceOfByte(std::size_t byte) const;
  std::size_t ByteOfPlace(int place) const;
  /// Marks parts of the text, in bytes, each as soon as it is filled in, until another text is shown. A plain
  /// control selects only.
  void Mark(Marks marks);
  /// With CR LF at line ends.
  std::optional<std::string> SelText() const;
  /// As if typed: can be undone, and is not done while locked. Zero bytes are left out.
  void ReplaceSelection(const std::string& text);

  bool CanUndo() const;
  void Undo();

  void Focus() const { ::SetFocus(control_); }
  bool HasFocus() const { return GetFocus() == control_; }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  template <class Event, class... Arguments>
  static void Raise(const Event& event, Arguments... arguments) {
    if (event) event(arguments...);
  }

  void MakeControl();
  void SetTabStops() const;
  int TabTwips() const;
  /// Shows a text that is such as `TextFieldBytes` makes it.
  void Show(const std::string& shown);
  bool ShowAsRtf(std::u16string characters, std::string columns);
  void FillMore();
  void FillAll();
  void MarkFilled();
  std::size_t CharactersIn(std::string_view part) const;
  RtfLook Look() const;
  void ShowPlain(const std::string& shown, std::string columns);
  std::optional<std::string> ShownText() const;

  LRESULT OnControlMessage(const Subclass::Message& message);
  /// Looks at an input message before the control does; true when the control is not to see it.
  bool FilterInput(const Subclass::Message& message);
  bool FilterKey(WPARAM key);
  bool SelectsWithMouse(UINT message, WPARAM wParam, LPARAM lParam);
  void Paste();
  void AskForMenu() const;
  void OnChange();
  void UpdateColours();
  bool AtStart() const;
  void FinishColouring();
  void StartWork();
  void WorkOn();
  void StopWork();

  Events events_;
  bool hasRichEdit_;
  HWND control_ = nullptr;  ///< Belongs to this window and goes with it.
  Subclass subclass_;       ///< Of the control.
  FontProperty font_;
  UniqueFont fontHandle_;
  Size characterSize_;  ///< Of the font, in pixels.
  COLORREF foreColor_;
  std::string original_;
  TextFieldBytes bytes_;
  CodeColouring colouring_;
  CodeFilling parts_{colouring_};
  CodeMarks marks_;
  MouseSelection mouse_;
  bool locked_ = true;
  bool remaking_ = false;
  bool filling_ = false;    ///< The program sets the text.
  bool touched_ = false;    ///< The user has changed the text.
  bool changed_ = false;    ///< The control has told of a change that the colours do not follow yet.
  bool working_ = false;    ///< A timer asks for slices of colouring.
  bool answering_ = false;  ///< The control is at work on a message.
};

}  // namespace snip
