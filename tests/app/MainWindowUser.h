#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "library/Library.h"
#include "platform/Com.h"
#include "platform/Geometry.h"
#include "platform/Twips.h"
#include "tests/app/Program.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {

using Names = std::vector<std::string>;

/// The text of the clipboard; empty when it holds none.
std::string ClipboardNow();

/// Someone at the main window of the real program: sees what is on the screen, has a mouse and a keyboard,
/// and can look at the files and the registry. What does not come as it should is a std::runtime_error.
class MainWindowUser {
 public:
  MainWindowUser();

  /// A library of snippets with these names; each has a description and a code that tell it.
  void WriteLibrary(const std::string& library, const Names& snippets) const;
  static Snippet Named(const std::string& name);
  static void SetSetting(const std::string& section, const std::string& value, const std::string& text);
  static std::string Setting(const std::string& section, const std::string& value);
  std::string File(const std::string& library) const { return program_.folder().Read(library + ".bns"); }

  /// Starts the program and waits until it shows its first library.
  void Open();
  /// Closes the window, which has nothing to ask.
  void Close();

  // What there is to be seen.
  HWND Control(int id) const { return FindControl(window_, id); }
  HWND List() const;
  HWND Files() const;
  HWND Code() const;
  HWND Description() const;
  HWND NameBox() const;
  HWND FileNameBox() const;
  int Selected() const;
  static Names RowsOf(HWND list);
  Names Rows() const { return RowsOf(List()); }
  Names Libraries() const;
  bool CodeLocked() const;
  /// The focus, the capture and so on of the program's thread.
  GUITHREADINFO GuiThread() const;
  HWND Focus() const { return GuiThread().hwndFocus; }
  bool FocusComes(HWND control) const;
  AccessibleChild Button(int bar, const std::string& name) const;
  bool Checked(int bar, const std::string& name) const { return Button(bar, name).Has(STATE_SYSTEM_CHECKED); }
  /// The prompt of the message box that is open; empty when there is none.
  std::string Prompt() const;
  /// In pixels of the screen.
  static Rect Place(HWND window);

  // What there is to be done.
  void ClickRow(int row, int times = 1, MouseButton button = MouseButton::Left);
  /// The arrow at the right of the output button.
  void ClickArrow() const;
  /// Waits for a menu, docked or torn off; null when it does not come.
  static HWND Menu(const std::string& title);
  static void ClickItem(const std::string& menu, const std::string& item);
  void ChooseFromOpenList(const std::string& entry) const;
  /// Waits for one of the system's file dialogs and types a path; Escape when it is empty.
  void ChooseFile(const std::string& title, const std::string& path) const;
  /// Drags a splitter by so many pixels; `end` lets it go. By how many pixels it has moved then: the display
  /// may echo an earlier place of the pointer just before.
  int Drag(
      HWND splitter, POINT by, const std::function<void()>& end = [] { ReleaseMouse(); }) const;

  ComApartment apartment_;
  TwipsPerPixel twips_;
  Program program_;
  HWND window_ = nullptr;

 protected:
  /// The place, or one beside it when the last click may have been there: two would be a double click.
  POINT Aside(POINT place);

 private:
  bool clicksAside_ = false;
};

class MainWindowFixture : public testing::Test, protected MainWindowUser {};

}  // namespace snip::test
