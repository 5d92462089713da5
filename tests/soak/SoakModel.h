#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/soak/SoakAction.h"

namespace snip::test {

enum class Field { None, List, Code, Description, Name, FileName, Chooser };

/// What can be seen of the program from outside.
struct Shown {
  std::vector<std::string> rows;
  int row = -1;
  std::string code;
  std::string description;
  bool locked = true;
  std::vector<std::string> entries;
  int entry = -1;
  std::optional<std::string> nameBox;      ///< Its text while it is visible.
  std::optional<std::string> fileNameBox;  ///< Its text while it is visible.
  Field focus = Field::List;
  bool onTop = false;

  friend bool operator==(const Shown&, const Shown&) = default;
};

struct ExpectedDialog {
  std::string text;   ///< The message, or the title of another dialog.
  int answer = 1;     ///< The id of the button that is pressed.
  std::string typed;  ///< Into the field with the id 100, before a button is pressed.
  bool types = false;
};

enum class GestureKind {
  Command,  ///< `a` is the number that a key stands for.
  SelectRow,
  ClickRow,
  Key,  ///< `a` is the virtual key.
  Click,
  DoubleClick,
  Type,  ///< Selects `a` to `b` first, in the field's own positions.
  Erase,
  Cut,
  Paste,
  SelectEntry,
  CheckClipboard,
  DragSplitter,
  Resize,
  Minimise,
  Maximise,
  Menu,  ///< `a` is the command that opens it, 0 for the list's own; `text` the item chosen, if any.
  Close,
  Kill,
  Start,
};

/// What the hand does, and the dialogs that come of it.
struct Gesture {
  GestureKind kind{};
  Field field = Field::None;
  int a = 0;
  int b = 0;
  std::string text{};
  bool real = false;
  bool ends = false;  ///< The program ends.
  std::vector<ExpectedDialog> dialogs{};
};

/// Does what the model says, and looks whether the program then shows what the model predicts.
class Hands {
 public:
  virtual ~Hands() = default;
  virtual void Perform(const Gesture& gesture) = 0;
  /// The libraries of the folder as the system lists them, without extension.
  virtual std::vector<std::string> Listing() = 0;
};

/// What the program has to do, told a second time and in the simplest way: texts, an index and a few
/// switches.
class SoakModel {
 public:
  explicit SoakModel(Hands& hands) : hands_(hands) {}

  /// The libraries that the folder holds before the first start.
  static std::map<std::string, std::string> FirstFiles();

  void StartProgram();
  void Do(const Action& action);

  const Shown& shown() const { return shown_; }
  /// The exact bytes of every library, by its name.
  const std::map<std::string, std::string>& files() const { return files_; }

 private:
  struct Snippet {
    std::string name, attachment, description, code;
  };

  void Perform(Gesture gesture);
  void PerformCommand(int command, const Action& action);
  void MoveFocus(Field field);
  void FieldLeft();
  void Tell(const std::string& text, int answer = 1);
  bool Ask(const std::string& text);

  void ShowRow();
  void ShowNothing(const std::string& code);
  void CommitCode();
  void Store(std::string& stored, const std::string& shown);
  bool SettleName();
  bool NameTaken() const;
  void EndRename();
  void StartRename();
  void EditSnippet();
  void NewSnippet();
  void DeleteSnippet();
  void Save();
  void Write();

  bool Read(const std::string& bytes);
  void ReadRecords(const std::vector<std::string>& lines, bool version1);
  void Open(const std::string& name);
  void OfferToSave();
  int ListLibrary();
  void ChooseEntry();
  void NewLibrary(const Action& action);
  void RenameLibrary();
  void AcceptFileName();
  void AcceptName();
  void CopyCode();
  void HideFileNameBox();
  void CloseProgram(const Action& action);

  void ClickField(Field field);
  void ChangeCode(GestureKind kind, const Action& action);
  void TypeDescription(const Action& action, bool empties);
  void UseSnippetsMenu(const Action& action);
  bool HasRow() const { return shown_.row >= 0 && shown_.row < static_cast<int>(snippets_.size()); }
  Snippet& Current() { return snippets_[static_cast<std::size_t>(shown_.row)]; }

  Hands& hands_;
  std::map<std::string, std::string> files_ = FirstFiles();
  Shown shown_;
  std::vector<Snippet> snippets_;
  std::string name_;
  bool saved_ = true;
  bool disabled_ = false;
  int editIndex_ = -1;
  int renamed_ = -1;
  Field beforeFileName_ = Field::None;
  bool keptOnTop_ = false;                ///< As the settings have it.
  std::optional<std::string> clipboard_;  ///< Nothing when it cannot be known.
  int fieldsLeft_ = 0;
  std::uint32_t answers_ = 0;
  std::vector<ExpectedDialog> dialogs_;
};

}  // namespace snip::test
