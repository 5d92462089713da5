#pragma once

#include <functional>
#include <map>
#include <sstream>
#include <string>

#include "tests/app/MainWindowUser.h"

namespace snip::test {

/// Carries out scripts (SoakScript.h) at the real program, and holds it to what must be so after each line:
/// it takes input again, files change by what writes them alone, and each is a library. What is not so is a
/// std::runtime_error.
class ScriptPlayer : public MainWindowUser {
 public:
  /// Carries out one line; what is to be seen afterwards, in the words of a script's "->".
  std::string Do(const std::string& line);
  /// Whether this is to be seen after the last line, if not at once.
  bool Sees(const std::string& state) const;
  ProcessUse Use() const { return UseOf(program_.Id()); }

 private:
  struct Span {
    int from = 0;
    int to = -1;  ///< The end when negative.
  };
  using FileBytes = std::map<std::string, std::string>;

  /// As often as the program can answer.
  static bool Wait(const std::function<bool()>& condition);
  static void Need(bool condition, const std::string& what);
  static bool IsShown(HWND window) { return IsWindowVisible(window) != 0; }
  bool SetUp(const std::string& verb, std::istream& words) const;
  void Start();
  void Perform(const std::function<void()>& gesture);
  void Settle();
  void AnswerDialogs();
  void Answer(HWND dialog);
  void EndAndStart(bool kills);

  // What is done (ScriptPlayerGestures.cpp).
  void ClickListRow(int number, int times);
  bool IsUnderNameBox(int row) const;
  bool ClickInto(HWND field, int times = 1);
  void Replace(HWND field, Span span, const std::string& text);
  void TakeCode(Span span, WORD key);
  void PressKeys(const std::string& keys);
  void PressButton(const std::string& name);
  void ClickRight(const std::string& place, int row);
  static void ChooseItem(const std::string& item);
  void UseMenu(const std::string& item);
  void Choose(const std::string& library);
  void Browse(const std::string& library);
  void WaitForDraft() const;
  void ShowHistory(int version);
  void PressInHistory(const std::string& caption);
  void GoToAnotherWindow() const;
  void Resize(int width, int height) const;
  void Split(bool columns, int by) const;
  void SizeTo(WPARAM command, bool (*done)(HWND));

  // What is to be seen.
  std::string State() const;
  static std::string Copied();
  std::string Saved(const std::string& library) const;
  static std::string HistoryState(HWND window);
  FileBytes FilesNow() const;
  void CheckFiles(const std::string& verb, const FileBytes& before) const;

  TemporaryFolder elsewhere_;
  std::function<std::string()> look_;  ///< What the last line lets be seen.
  std::string told_;                   ///< The messages since the line began.
  bool agrees_ = true;
  std::string libraryName_;  ///< What is typed into the dialog for a new library; it is cancelled when empty.
  std::string chosenPath_;   ///< The same in the file dialog.
  WPARAM token_ = 0;
};

}  // namespace snip::test
