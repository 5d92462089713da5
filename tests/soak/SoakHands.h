#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/app/Program.h"
#include "tests/soak/SoakModel.h"
#include "tests/support/AccessibleClient.h"

namespace snip::test {

/// What a process holds. The working set and the private bytes are in bytes; Wine counts no GDI or USER
/// objects.
struct ProcessUse {
  DWORD handles = 0;
  DWORD gdiObjects = 0;
  DWORD userObjects = 0;
  std::size_t workingSet = 0;
  std::size_t privateBytes = 0;
};
ProcessUse UseOf(DWORD process);

/// Drives the real program in a folder of its own and compares what it shows, and its files, with the model
/// after each gesture. Throws std::runtime_error with the difference. The thread must be a COM apartment.
class SoakHands : public Hands {
 public:
  SoakHands();

  void Watch(const SoakModel& model) { model_ = &model; }
  /// Gets a line for each gesture.
  void Trace(std::function<void(const std::string& line)> trace) { trace_ = std::move(trace); }

  void Perform(const Gesture& gesture) override;
  std::vector<std::string> Listing() override;

  ProcessUse Use() const { return UseOf(program_.Id()); }

 private:
  void Do(const Gesture& gesture);
  void Start();
  void Type(const Gesture& gesture);
  void GiveCommand(const Gesture& gesture);
  static bool PressKeysOf(int command);
  void ClickRow(const Gesture& gesture);
  void Drag(const Gesture& gesture) const;
  void Size(bool maximises) const;
  void UseMenu(const Gesture& gesture);
  void Answer(const ExpectedDialog& expected);
  void Settle();
  void WaitForInput() const;
  void Compare();
  Shown Look(bool thorough) const;
  std::string FilesDifference() const;

  LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
  void Post(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
  std::string TextOf(HWND window) const;
  HWND WindowOf(Field field) const;
  HWND VisibleWindow(const char* className) const;
  bool TakeForeground() const;

  Program program_;
  const SoakModel* model_ = nullptr;
  std::function<void(const std::string&)> trace_;
  std::map<Field, HWND> fields_;
  std::map<int, std::unique_ptr<AccessibleClient>> bars_;  ///< By the bar's id.
  HWND window_ = nullptr;
  HWND lastDialog_ = nullptr;
  DWORD thread_ = 0;
  WPARAM token_ = 0;
  int gestures_ = 0;
  bool clicksFurtherRight_ = false;
  Shown lastSeen_;
  std::map<std::string, std::string> comparedFiles_;
};

}  // namespace snip::test
