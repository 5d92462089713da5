#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/soak/SoakHands.h"

namespace snip::test {

/// The logic of the main window on a view in memory, with what the real window adds: where the focus goes,
/// and that a field which is left commits what was typed. Has the hands do the same at the real program, and
/// compares after each gesture.
class SoakModel {
 public:
  explicit SoakModel(SoakHands& hands);
  ~SoakModel();
  SoakModel(const SoakModel&) = delete;
  SoakModel& operator=(const SoakModel&) = delete;

  /// Carries out one line of a script; throws std::runtime_error with the difference.
  void Do(const std::string& line);
  /// Starts the program, unless it runs.
  void Start();

 private:
  class Store;
  class View;
  class Chooser;
  struct Core;
  struct Button;
  struct Span {
    int from = 0;
    int to = -1;  ///< The end when negative.
  };

  bool SetUp(const std::string& verb, std::istream& words);
  void Perform(const std::function<void()>& gesture);
  void FieldLeft();
  Shown Look() const;
  bool ClickField(Field field);
  void ClickRow(int row, int times);
  void Change(Field field, Span span, const std::string& text);
  void Replace(std::string& shown, Field field, Span span, const std::string& text);
  void TakeCode(Span span, bool cuts);
  void PressKey(const std::string& keys);
  void Press(const Button& button, const std::function<void()>& gesture);
  void Copy();
  void UseMenu(const std::string& item);
  void Choose(const std::string& library, const std::string& path);
  void MakeLibrary(const std::string& name);
  void Close(bool kills);

  SoakHands& hands_;
  std::unique_ptr<Store> store_;
  std::unique_ptr<Core> core_;
  std::vector<ExpectedDialog> dialogs_;
  std::optional<std::string> clipboard_;  ///< Nothing when it cannot be known.
  bool agrees_ = true;
  bool onTop_ = false;
  bool keptOnTop_ = false;  ///< As the settings have it.
};

}  // namespace snip::test
