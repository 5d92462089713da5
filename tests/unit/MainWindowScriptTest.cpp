#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <utility>

#include "library/BnsFormat.h"
#include "tests/unit/FakeMainWindow.h"
#include "tests/unit/Script.h"
#include "ui/main/Attachments.h"

namespace snip::test {
namespace {

/// Plain text for what a script writes: "_" is a blank, "~" a line ending and "^" a zero byte.
std::string Plain(const std::string& written) {
  std::string text;
  for (const char c : written) {
    if (c == '~') text += '\r';
    text += c == '_' ? ' ' : c == '~' ? '\n' : c == '^' ? '\0' : c;
  }
  return text;
}

std::string Written(const std::string& text) {
  std::string written;
  for (const char c : text) {
    if (c != '\r') written += c == '\n' ? '~' : c == '\0' ? '^' : c;
  }
  return written;
}

/// The logic of the main window in a folder with these libraries, told apart from others by their names.
class ScriptedWindow : public FakeMainWindow, private AttachmentView {
 public:
  explicit ScriptedWindow(const std::vector<std::string>& libraries) {
    store.files = {{Path("Numbers"), WriteBns(std::vector{Named("one"), Named("two"), Named("three")})},
                   {Path("Strings"), WriteBns(std::vector{Named("Left"), Named("Right")})},
                   {Path("Dates"), WriteBns(std::vector{Named("Today")})},
                   {"D:\\Else\\Outside.bns", WriteBns(std::vector{Named("Out")})}};
    store.names = libraries;
    whileShown = [this] {
      EXPECT_TRUE(store.open.expired()) << "nobody else can save it as long as the message stays";
      shownUnderMessage_ = library.LibraryName + ": " + Joined(view.rows);
      chooser.gone = chooser.gone || goes_;
    };
    chooser.whileChoosing = [this] { chooser.gone = goes_; };
    store.whileBusy = [this] { EXPECT_TRUE(view.waiting || verb_ == "make" || verb_ == "close"); };
    operations.LoadFiles();
  }

  std::string operator()(const std::string& command) {
    const std::size_t blank = std::min(command.find(' '), command.size());
    verb_ = command.substr(0, blank);
    const std::string text = Plain(Trimmed(command.substr(blank)));
    const auto found = steps_.find(verb_);
    if (found == steps_.end()) return "there is no " + verb_;
    const std::string answer = found->second(text);
    EXPECT_FALSE(view.waiting);
    EXPECT_TRUE(verb_ != "edit" || view.locked || view.focus == Focus::Code);
    EXPECT_TRUE(view.rows.empty() || view.codeSetWhileWaiting);
    EXPECT_EQ(view.focus == Focus::NameBox, view.nameBoxRow.has_value());
    if (editing.ListsSnippets()) {
      Rows names;
      for (const Snippet& snippet : library.Snippets) names.push_back(snippet.Name);
      EXPECT_EQ(view.rows, names);
    }
    return Written(answer);
  }

 private:
  using Step = std::function<std::string(const std::string& text)>;

  static Snippet Named(const std::string& name) {
    return {.Name = name, .Attachment = "C:\\" + name, .Code = "'" + name, .Description = "about " + name};
  }
  static std::string Path(const std::string& library) { return "C:\\Snip\\" + library + ".bns"; }

  /// The rows, the selected one marked; the fields; what is going on; snippets that are neither as they came
  /// nor as a new one is; what was done.
  std::string State() {
    std::string state;
    for (int row = 0; row < view.RowCount(); ++row) {
      state += (row == view.selected ? ">" : "") + view.rows[static_cast<std::size_t>(row)] + " ";
    }
    state += "| " + view.code + " | " + view.description;
    if (!view.locked) state += " | editing";
    if (view.editingDisabled) state += " | disabled";
    if (view.nameBoxRow) state += " | naming " + std::to_string(*view.nameBoxRow) + " " + view.nameBoxText;
    for (const Snippet& snippet : library.Snippets) {
      if (snippet == Named(snippet.Name) || snippet == DefaultSnippet()) continue;
      state +=
          " | " + snippet.Name + "=" + snippet.Code + "," + snippet.Description + "," + snippet.Attachment;
    }
    state += library.Saved ? "" : " | changed";
    return Trimmed(state + (calls.empty() ? "" : " ! " + Done()));
  }
  std::string ChooserState() const {
    Rows entries = chooser.files;
    if (chooser.selected >= 0) entries.at(static_cast<std::size_t>(chooser.selected)).insert(0, ">");
    return library.LibraryName + ": " + Joined(entries);
  }
  /// What was done since it was asked last: messages without their title, files of the folder by their names.
  std::string Done() {
    std::string done = Joined(std::exchange(calls, {}));
    for (const char* known : {" [Brennic Snipstore 2.x]", "C:\\Snip\\", ".bns"}) {
      for (std::size_t at; (at = done.find(known)) != std::string::npos;) done.erase(at, std::strlen(known));
    }
    return done;
  }
  std::string Choose(const std::string& entry) {
    const auto found = std::ranges::find(chooser.files, entry);
    if (found == chooser.files.end()) return "there is no " + entry;
    ChooseFile(static_cast<int>(found - chooser.files.begin()));
    return "";
  }
  static Step Quiet(const std::function<void(const std::string&)>& act) {
    return [act](const std::string& text) { return act(text), ""; };
  }

  std::optional<std::string> ChooseAttachment() override {
    calls.emplace_back("choose");
    return chosen_;
  }
  bool MinimizeOnView() const override { return minimizes_; }
  void Minimize() override { calls.emplace_back("minimize"); }
  void ShellOpen(const std::string& path) override { calls.push_back("open " + path); }

  const std::map<std::string, Step> steps_ = {
      // The list, the code and the description.
      {"row", Quiet([this](auto& row) { ClickRow(std::stoi(row)); })},
      {"hold", Quiet([this](auto& row) { view.selected = std::stoi(row); })},  // not told yet
      {"edit", Quiet([this](auto&) { editing.EditSnippet(); })},
      {"double", Quiet([this](auto&) { editing.txtCode_DblClick(); })},
      {"code", Quiet([this](auto& text) { view.code = text; })},
      {"type", Quiet([this](auto& text) {
         view.code += text;
         editing.txtCode_KeyPress(text.at(0));
         const auto before = std::exchange(library.Changes, 0);
         editing.txtCode_Change();
         EXPECT_EQ(library.Changes, view.locked ? 0 : 1);
         library.Changes += before;
       })},
      {"store", Quiet([this](auto&) { editing.StoreShownCode(); })},
      {"leave", [this](auto&) { return std::string(editing.txtCode_LostFocus() ? "" : "no"); }},
      {"describe", Quiet([this](auto& text) { TypeDescription(text); })},
      {"rename", Quiet([this](auto&) { editing.lstCode_DblClick(); })},
      {"undo", Quiet([this](auto&) { editing.Undo(); })},
      {"redo", Quiet([this](auto&) { editing.Redo(); })},
      {"move", Quiet([this](auto& row) { editing.MoveShown(std::stoi(row)); })},
      {"back", Quiet([this](auto& name) { editing.PutBack(Named(name)); })},
      {"all", Quiet([this](auto& name) { editing.PutAllBack({Named(name)}); })},
      {"name", Quiet([this](auto& text) { view.nameBoxText = text; })},
      {"enter", Quiet([this](auto&) { editing.SettleName(); })},
      {"escape", Quiet([this](auto&) { editing.txtName_Cancel(); })},
      {"new", Quiet([this](auto&) { editing.NewSnippet(); })},
      {"delete", Quiet([this](auto&) { editing.DeleteSelectedSnippet(); })},
      {"remove", Quiet([this](auto& row) { editing.DeleteSnippet(std::stoi(row)); })},
      {"nothing", Quiet([this](auto& text) { editing.ShowNothing(text); })},
      {"show", Quiet([this](auto&) { editing.ShowLibrary(); })},
      {"disable", Quiet([this](auto&) { editing.DisableEdit(true); })},
      {"enable", Quiet([this](auto&) { editing.DisableEdit(false); })},
      {"see", [this](auto&) { return State(); }},
      // Libraries and their files.
      {"choose", [this](auto& entry) { return Choose(entry); }},
      {"browse",
       [this](auto& path) {
         chooser.chosenPath = path.empty() ? std::nullopt : std::optional(path);
         return Choose(kBrowseEntry);
       }},
      {"drop", [this](auto& path) { return std::string(operations.OpenOutside(path) ? "" : "no"); }},
      {"go-to", [this](auto& path) { return std::string(operations.Choose(path) ? "" : "no"); }},
      {"instead", Quiet([this](auto& name) { operations.OpenInstead({Named(name)}); })},
      {"save", Quiet([this](auto&) { operations.SaveLibrary(); })},
      {"close", [this](auto&) { return std::string(operations.OfferToSave() ? "" : "no"); }},
      {"answer", Quiet([this](auto& text) {
         answers = {text == "yes"  ? MessageResult::Yes
                    : text == "no" ? MessageResult::No
                                   : MessageResult::Ok};
       })},
      {"make", Quiet([this](auto& names) {
         const auto asked = Split(names, '/');
         chooser.names.assign(asked.begin(), asked.end());
         naming.GetNewLib();
       })},
      {"box", Quiet([this](auto&) { naming.RenameLibrary(); })},
      {"filename", Quiet([this](auto& text) {
         chooser.fileNameText = text;
         chooser.fileNameSelected = false;
         naming.txtFileName_Change();
       })},
      {"accept", Quiet([this](auto&) { naming.AcceptName(); })},
      {"give-up", Quiet([this](auto&) { naming.txtFileName_LostFocus(); })},
      {"boxed",
       [this](auto&) {
         if (!chooser.fileNameBoxShown) return std::string("hidden");
         return chooser.fileNameText + (chooser.fileNameSelected ? " selected" : "");
       }},
      {"libraries", [this](auto&) { return ChooserState(); }},
      {"others",
       [this](auto&) {
         const auto others = operations.OtherLibraries();
         return std::to_string(others.size()) + " from " + others.at(0).path;
       }},
      {"elsewhere", [this](auto&) { return operations.SavedElsewhere(); }},
      {"file",
       [this](auto& name) { return store.files.contains(Path(name)) ? store.files[Path(name)] : "no"; }},
      {"outside", [this](auto& path) { return store.files.at(path); }},
      {"put", Quiet([this](auto& text) {
         const std::size_t end = text.find(' ');
         store.files[Path(text.substr(0, end))] = text.substr(std::min(end, text.size() - 1) + 1);
       })},
      {"lose", Quiet([this](auto& name) { store.files.erase(Path(name)); })},
      {"refuse", Quiet([this](auto& all) { store.failing = true, store.keeping = all.empty(); })},
      {"allow", Quiet([this](auto&) { store.failing = false; })},
      {"done", [this](auto&) { return Done(); }},
      {"under-message", [this](auto&) { return shownUnderMessage_; }},
      // Attachments.
      {"view", Quiet([this](auto&) { attachments_.ViewAttachment(); })},
      {"can-view", [this](auto&) { return std::string(attachments_.CanView() ? "yes" : "no"); }},
      {"attach", Quiet([this](auto& path) {
         chosen_ = path.empty() ? std::nullopt : std::optional(path);
         attachments_.SetAttachment();
       })},
      {"attach-dropped", Quiet([this](auto& path) { attachments_.SetAttachment(path); })},
      {"stay", Quiet([this](auto&) { minimizes_ = false; })},
      // What is as it cannot be helped.
      {"silent", Quiet([this](auto&) { view.silent = true; })},  // the fields do not tell their texts
      {"tell", Quiet([this](auto&) { view.silent = false; })},
      {"go", Quiet([this](auto&) { goes_ = true; })},  // while the next message or dialog is shown
  };

  std::string verb_;
  bool goes_ = false;
  bool minimizes_ = true;
  std::optional<std::string> chosen_;
  std::string shownUnderMessage_;
  Attachments attachments_{editing, *this};
};

/// "start" begins again in the folder of the case, and answers what that does.
class MainWindowScript {
 public:
  explicit MainWindowScript(const std::string& libraries) : libraries_(Split(libraries, ' ')) {}

  std::string operator()(const std::string& command) {
    if (command != "start") return window_.value()(command);
    window_.emplace(libraries_);
    return (*window_)("done");
  }

 private:
  std::vector<std::string> libraries_;
  std::optional<ScriptedWindow> window_;
};

TEST(MainWindowScriptTest, Scripts) {
  PlayScripts<MainWindowScript>("main-window.txt");
}

}  // namespace
}  // namespace snip::test
