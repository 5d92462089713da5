#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/app/MainWindowUser.h"

namespace snip::test {

enum class Field { None, List, Code, Description, Name, FileName, Chooser };

/// What can be seen of the program from outside.
struct Shown {
  Names rows;
  int row = -1;
  std::string code;
  std::string description;
  bool locked = true;
  Names libraries;
  int library = -1;
  std::optional<std::string> nameBox{};      ///< Its text while it is visible.
  std::optional<std::string> fileNameBox{};  ///< Its text while it is visible.
  Field focus = Field::List;
  bool disabled = false;  ///< What changes the library is grey.
  bool onTop = false;
  std::map<std::string, std::string> files{};  ///< The bytes of every library, by its path.
};

struct ExpectedDialog {
  std::string text;  ///< The message, or the title of another dialog.
  int answer = IDOK;
  std::optional<std::string> typed{};  ///< Into its field, or the path for the system's file dialog.
};

/// Someone at the real program who is told what to do and what has to come of it. Throws std::runtime_error
/// with the difference. The thread must be a COM apartment.
class SoakHands : public MainWindowUser {
 public:
  /// Starts the program; dialogs come before its window.
  void Start(const std::vector<ExpectedDialog>& dialogs);
  void Act(const std::function<void()>& gesture, const std::vector<ExpectedDialog>& dialogs);
  /// Waits until all input is dealt with, and compares; what is not there at once may come.
  void Compare(const Shown& wanted);
  void WaitForEnd();

  Names FilesIn(const std::string& folder) const;
  void Click(Field field, int times = 1);
  /// Selects what is between two places, counted as the field does, and types over it or deletes it.
  void Replace(Field field, int from, int to, const std::string& text);
  void Select(Field field, int from, int to) const;
  void PressButton(int bar, const std::string& name) const;
  void UseMenu(const std::string& item);
  /// Moves a splitter by so many pixels.
  void Split(bool columns, int by) const;
  void SizeTo(bool maximises) const;
  ProcessUse Use() const { return UseOf(program_.Id()); }
  const std::string& elsewhere() const { return elsewhere_.path(); }

 private:
  void Answer(const ExpectedDialog& expected);
  void Settle();
  std::string Difference(const Shown& wanted) const;
  HWND WindowOf(Field field) const;

  TemporaryFolder elsewhere_;
  HWND lastDialog_ = nullptr;
  WPARAM token_ = 0;
};

}  // namespace snip::test
