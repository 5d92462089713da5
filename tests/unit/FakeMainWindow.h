#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "library/LibraryStore.h"
#include "platform/Text.h"
#include "tests/unit/AllBytes.h"
#include "tests/unit/Printing.h"
#include "ui/main/LibraryNaming.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/MainWindowViews.h"
#include "ui/main/SnippetEditing.h"

namespace snip::test {

/// The messages, file accesses and file dialogs in their order: "64 [title] prompt", "read path",
/// "write path", "browse".
using Calls = std::vector<std::string>;
using Rows = std::vector<std::string>;

enum class Focus { Elsewhere, List, Code, NameBox };

/// Behaves as the window's controls do: the list keeps its selection as a list box does, and the name box
/// reports at once that it was left.
class FakeSnippetView : public SnippetView {
 public:
  Rows rows;
  int selected = -1;
  std::string description, code, nameBoxText;
  bool locked = true, editingDisabled = false, waiting = false, codeSetWhileWaiting = false;
  std::optional<int> nameBoxRow;  ///< Set while the box is shown.
  Focus focus = Focus::Elsewhere;
  std::function<void()> nameBoxLeft;
  bool silent = false;  ///< The fields do not tell their texts.

  std::optional<std::string> Told(const std::string& text) const {
    return silent ? std::nullopt : std::optional(text);
  }

  void MoveFocus(Focus target) {
    const bool left = focus == Focus::NameBox && target != Focus::NameBox;
    focus = target;
    if (left) nameBoxLeft();
  }

  void FillRows(std::span<const Snippet> snippets) override {
    rows.clear();
    selected = -1;
    for (const Snippet& snippet : snippets) rows.push_back(snippet.Name);
  }
  void InsertRow(int row, const std::string& name) override {
    ASSERT_TRUE(row >= 0 && row <= RowCount()) << row;
    rows.insert(rows.begin() + row, name);
    if (selected >= row) ++selected;
  }
  void RemoveRow(int row) override {
    ASSERT_TRUE(row >= 0 && row < RowCount()) << row;
    rows.erase(rows.begin() + row);
    if (selected == row) selected = -1;
    if (selected > row) --selected;
  }
  void SetRowText(int row, const std::string& name) override {
    rows.at(static_cast<std::size_t>(row)) = name;
  }
  int RowCount() const { return static_cast<int>(rows.size()); }
  void SelectRow(int row) override { selected = row < RowCount() ? row : -1; }
  void FocusList() override { MoveFocus(Focus::List); }

  std::optional<std::string> Description() const override { return Told(description); }
  void SetDescription(const std::string& text) override { description = text; }

  std::optional<std::string> Code() const override { return Told(code); }
  void SetCode(const std::string& text) override {
    code = text;
    codeSetWhileWaiting = waiting;
  }
  void FocusCode() override { MoveFocus(Focus::Code); }

  void ShowNameBox(int row, const std::string& name) override {
    nameBoxRow = row;
    nameBoxText = name;
    MoveFocus(Focus::NameBox);
  }
  std::optional<std::string> NameBoxText() const override { return Told(nameBoxText); }
  void FocusNameBox() override { MoveFocus(Focus::NameBox); }
  void HideNameBox() override {
    nameBoxRow.reset();
    if (focus == Focus::NameBox) MoveFocus(Focus::List);
  }

  void SetEditingDisabled(bool disabled) override { editingDisabled = disabled; }
  void SetEditMode(bool editing) override { locked = !editing; }
  void SetWaitCursor(bool isWaiting) override { waiting = isWaiting; }
};

class FakeLibraryView : public LibraryView {
 public:
  explicit FakeLibraryView(Calls& calls) : calls_(calls) {}

  Rows files;
  int selected = -1;
  std::string fileNameText;
  bool gone = false, fileNameBoxShown = false, fileNameSelected = false;
  std::deque<std::string> names;          ///< What the user enters, one after the other; then he cancels.
  std::optional<std::string> chosenPath;  ///< What the user picks in the dialog; nothing cancels it.
  std::function<void()> whileChoosing = [] {};
  mutable int textsBeforeMemoryRunsOut = -1;  ///< Counted down at each entry that is read.

  bool Gone() const override { return gone; }
  void InsertFile(int entry, const std::string& text) override {
    ASSERT_TRUE(entry >= 0 && entry <= FileCount()) << entry;
    files.insert(files.begin() + entry, text);
    if (selected >= entry) ++selected;
  }
  int FileCount() const override { return static_cast<int>(files.size()); }
  std::string FileText(int entry) const override {
    if (textsBeforeMemoryRunsOut-- == 0) throw std::bad_alloc();
    return files.at(static_cast<std::size_t>(entry));
  }
  int SelectedFile() const override { return selected; }
  void SelectFile(int entry) override { selected = entry; }
  void ReplaceFile(int entry, const std::string& text) override {
    files.at(static_cast<std::size_t>(entry)) = text;
  }
  std::optional<std::string> FileNameText() const override { return fileNameText; }
  void SetFileNameText(const std::string& text) override { fileNameText = text; }
  void SelectFileNameText() override { fileNameSelected = true; }
  void ShowFileNameBox(const std::string& text) override { fileNameText = text, fileNameBoxShown = true; }
  void HideFileNameBox() override { fileNameBoxShown = false; }
  std::string AskForLibraryName(const std::string& before) override {
    calls_.push_back("name" + (before.empty() ? "" : " " + before));
    if (names.empty()) return "";
    const std::string name = names.front();
    names.pop_front();
    return name;
  }
  std::optional<std::string> ChooseLibraryFile() override {
    calls_.emplace_back("browse");
    whileChoosing();
    return chosenPath;
  }

 private:
  Calls& calls_;
};

/// Files by their full paths; the library folder is "C:\Snip".
class FakeStore : public LibraryStore {
 public:
  explicit FakeStore(Calls& calls) : calls_(calls) {}

  std::vector<std::string> names;
  std::map<std::string, std::string> files;
  bool failing = false;                  ///< The folder cannot be written to: what is replaced is lost.
  bool keeping = true;                   ///< What is thrown away can be kept somewhere else.
  std::size_t room = std::string::npos;  ///< Bytes that the disk has left for a file.
  mutable std::weak_ptr<bool> open;      ///< Of the file that was opened last, as long as it is.
  std::function<void()> whileBusy = [] {};

  std::vector<std::string> Names() const override { return names; }
  bool Exists(const std::string& path) const override { return files.contains(path); }
  bool Rename(const std::string& path, const std::string& newPath) override {
    calls_.push_back("rename " + path + " to " + newPath);
    if (failing || !files.contains(path) || files.contains(newPath)) return false;
    files[newPath] = files[path];
    files.erase(path);
    return true;
  }
  std::string PathOf(const std::string& name) const override { return "C:\\Snip\\" + name + ".bns"; }
  std::optional<FileStamp> Stamp(const std::string& path) const override {
    const auto file = files.find(path);
    return file == files.end() ? FileStamp{} : FileStamp{true, file->second.size()};
  }
  std::unique_ptr<ByteSource> Open(const std::string& path) const override {
    calls_.push_back("read " + path);
    whileBusy();
    const auto file = files.find(path);
    if (file == files.end()) return nullptr;
    auto bytes = std::make_unique<OpenFile>(file->second);
    open = bytes->held;
    return bytes;
  }
  bool Replace(const std::string& path, ByteSource&& bytes) override {
    calls_.push_back("write " + path);
    whileBusy();
    files.erase(path);
    if (failing) return false;
    const std::string all = AllBytes(bytes);
    files[path] = all.substr(0, room);
    return all.size() <= room;
  }
  bool ThrownAway(ByteSource&&) override { return keeping; }

 private:
  struct OpenFile : BytesInMemory {
    using BytesInMemory::BytesInMemory;
    std::shared_ptr<bool> held = std::make_shared<bool>(true);
  };

  Calls& calls_;
};

/// The logic of the main window with fakes all around, and what a user does with it.
struct FakeMainWindow {
  FakeMainWindow() {
    view.nameBoxLeft = [this] { editing.SettleName(); };
  }
  FakeMainWindow(const FakeMainWindow&) = delete;
  FakeMainWindow& operator=(const FakeMainWindow&) = delete;

  /// That a field was left comes to the logic after the row was chosen, as a posted message does.
  void ClickRow(int row) {
    view.selected = row;
    editing.lstCode_Click(row);
    view.MoveFocus(Focus::List);
  }
  void TypeCode(const std::string& text) {
    editing.EditSnippet();
    ASSERT_FALSE(view.locked);
    view.code = text;
  }
  void TypeDescription(const std::string& text) {
    view.description = text;
    editing.txtDesc_Change();
  }
  void ChooseFile(int entry) {
    view.MoveFocus(Focus::Elsewhere);
    chooser.selected = entry;
    operations.cboFiles_Click();
  }

  Calls calls;
  std::deque<MessageResult> answers;  ///< To the questions that are expected.
  std::function<void()> whileShown = [] {};
  ShowMessageFunction showMessage = [this](const std::string& prompt, int style, const std::string& title) {
    calls.push_back(std::to_string(style) + " [" + title + "] " + prompt);
    whileShown();
    if ((style & 4) == 0) return MessageResult::Ok;
    if (answers.empty()) {
      ADD_FAILURE() << "unexpected question: " << prompt;
      return MessageResult::No;
    }
    const MessageResult answer = answers.front();
    answers.pop_front();
    return answer;
  };
  FakeSnippetView view;
  FakeLibraryView chooser{calls};
  FakeStore store{calls};
  Library library;
  SnippetEditing editing{library, view, showMessage, &EqualsIgnoringAsciiCase};
  LibraryOperations operations{library, editing, view, chooser, store, showMessage, &EqualsIgnoringAsciiCase};
  LibraryNaming naming{editing, operations, chooser, store, showMessage};
};

}  // namespace snip::test
