#include "tests/soak/SoakModel.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/unit/FakeMainWindow.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr std::size_t kMostRows = 30;
constexpr std::size_t kMostLibraries = 12;
constexpr std::size_t kLongText = 300;

/// Positions in a rich-edit control count a line end as one character.
std::string ToCharacters(std::string text) {
  std::erase(text, '\r');
  return text;
}

std::string ToText(const std::string& characters) {
  std::string text;
  for (const char c : characters) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return text;
}

struct IgnoringCase {
  bool operator()(const std::string& a, const std::string& b) const {
    return lstrcmpiA(a.c_str(), b.c_str()) < 0;
  }
};

}  // namespace

/// A folder of libraries, and what is outside of it, by their paths.
class SoakModel::Store : public LibraryStore {
 public:
  explicit Store(std::string folder) : folder_(std::move(folder)) {}

  std::map<std::string, std::string, IgnoringCase> files;
  Rows listing;

  Rows Names() const override { return listing; }
  std::string PathOf(const std::string& name) const override { return folder_ + "\\" + name + ".bns"; }
  bool Exists(const std::string& path) const override { return files.contains(path); }
  std::unique_ptr<ByteSource> Open(const std::string& path) const override {
    return files.contains(path) ? std::make_unique<BytesInMemory>(files.at(path)) : nullptr;
  }
  bool Replace(const std::string& path, ByteSource&& bytes) override {
    if (path.find('|') != std::string::npos) return false;
    files.erase(path);
    files[path] = AllBytes(bytes);
    return true;
  }
  bool Rename(const std::string& path, const std::string& newPath) override {
    const bool taken = files.contains(newPath) && lstrcmpiA(path.c_str(), newPath.c_str()) != 0;
    if (taken || !files.contains(path) || newPath.find('|') != std::string::npos) return false;
    auto file = files.extract(path);
    file.key() = newPath;
    files.insert(std::move(file));
    return true;
  }

 private:
  std::string folder_;
};

/// Where the focus is, and how often a field has lost it that the window has yet to hear of.
class SoakModel::View : public FakeSnippetView {
 public:
  Field focused = Field::List;
  int fieldsLeft = 0;

  void Move(Field field) {
    const Field before = std::exchange(focused, field);
    const bool isField = before != Field::List && before != Field::Chooser;
    if (before != field && isField) ++fieldsLeft;
  }
  void FocusList() override { Move(Field::List); }
  void FocusCode() override { Move(Field::Code); }
  void FocusNameBox() override { Move(Field::Name); }
  void ShowNameBox(int row, const std::string& name) override {
    nameBoxRow = row;
    nameBoxText = name;
    Move(Field::Name);
  }
  void HideNameBox() override {
    nameBoxRow.reset();
    if (focused == Field::Name) Move(Field::List);
  }
};

class SoakModel::Chooser : public FakeLibraryView {
 public:
  Chooser(View& view, std::vector<ExpectedDialog>& dialogs)
      : FakeLibraryView(calls_), view_(view), dialogs_(dialogs) {}

  void ShowFileNameBox() override {
    fileNameBoxShown = true;
    if (view_.focused != Field::FileName) before_ = view_.focused;
    view_.Move(Field::FileName);
  }
  void HideFileNameBox() override {
    fileNameBoxShown = false;
    if (view_.focused == Field::FileName) view_.Move(before_);
  }
  std::string AskForLibraryName(const std::string& before) override {
    const std::string name = FakeLibraryView::AskForLibraryName(before);
    dialogs_.push_back({.text = "New Code Library", .answer = name.empty() ? IDCANCEL : IDOK});
    if (!name.empty()) dialogs_.back().typed = name;
    return name;
  }
  std::optional<std::string> ChooseLibraryFile() override {
    dialogs_.push_back({.text = "Open Snippet File", .typed = chosenPath.value_or("")});
    return chosenPath;
  }

 private:
  Calls calls_;
  View& view_;
  Field before_ = Field::List;
  std::vector<ExpectedDialog>& dialogs_;
};

struct SoakModel::Core {
  Core(SoakModel& model, const ShowMessageFunction& showMessage)
      : chooser(view, model.dialogs_),
        editing(library, view, showMessage, &SameTextIgnoringCase),
        operations(library, editing, view, chooser, *model.store_, showMessage, &SameTextIgnoringCase),
        naming(editing, operations, chooser, *model.store_, showMessage) {}

  View view;
  Chooser chooser;
  Library library;
  SnippetEditing editing;
  LibraryOperations operations;
  LibraryNaming naming;
};

struct SoakModel::Button {
  const char* name;
  const char* keys;
  WORD key;
  int bar;
  std::function<void(SoakModel& model)> does;
};

SoakModel::SoakModel(SoakHands& hands)
    : hands_(hands), store_(std::make_unique<Store>(hands.program_.folder().path())) {}

SoakModel::~SoakModel() = default;

// --- What the window does by itself -----------------------------------------------------------------------

Shown SoakModel::Look() const {
  const View& view = core_->view;
  const Chooser& chooser = core_->chooser;
  Shown shown{.rows = view.rows,
              .row = view.selected,
              .code = view.code,
              .description = view.description,
              .locked = view.locked,
              .libraries = chooser.files,
              .library = chooser.selected,
              .focus = view.focused,
              .disabled = view.editingDisabled,
              .onTop = onTop_};
  if (view.nameBoxRow) shown.nameBox = view.nameBoxText;
  if (chooser.fileNameBoxShown) shown.fileNameBox = chooser.fileNameText;
  shown.files.insert(store_->files.begin(), store_->files.end());
  return shown;
}

void SoakModel::FieldLeft() {
  const Field focus = core_->view.focused;
  if (focus != Field::FileName && core_->chooser.fileNameBoxShown) core_->naming.txtFileName_LostFocus();
  if (focus != Field::Name) core_->editing.SettleName();
  if (core_->view.focused != Field::Code) core_->editing.txtCode_LostFocus();
}

void SoakModel::Perform(const std::function<void()>& gesture) {
  for (int& left = core_->view.fieldsLeft; left > 0; --left) FieldLeft();
  hands_.Act(gesture, std::exchange(dialogs_, {}));
  hands_.Compare(Look());
}

void SoakModel::Start() {
  if (core_) return;
  const ShowMessageFunction showMessage = [this](const std::string& prompt, int style, const std::string&) {
    const bool asks = (style & 4) != 0;
    const auto answer = !asks ? MessageResult::Ok : agrees_ ? MessageResult::Yes : MessageResult::No;
    dialogs_.push_back({.text = prompt, .answer = !asks ? IDOK : agrees_ ? IDYES : IDNO});
    return answer;
  };
  store_->listing = hands_.FilesIn(hands_.program_.folder().path());
  for (std::string& name : store_->listing) name.resize(name.size() - kLibraryExtension.size());
  core_ = std::make_unique<Core>(*this, showMessage);
  onTop_ = keptOnTop_;
  clipboard_.reset();
  core_->operations.LoadFiles();
  hands_.Start(std::exchange(dialogs_, {}));
  hands_.Compare(Look());
}

void SoakModel::Close(bool kills) {
  if (kills) {
    hands_.program_.Kill();
  } else {
    const bool ends = core_->editing.SettleName() && core_->operations.OfferToSave();
    if (ends) core_->view.fieldsLeft = 0;
    const auto altF4 = [] { test::PressKey(VK_F4, {VK_MENU}); };
    if (!ends) return Perform(altF4);
    hands_.Act(altF4, std::exchange(dialogs_, {}));
    hands_.WaitForEnd();
    if (hands_.program_.ExitCode() != 0) throw std::runtime_error("the program ended with an error");
    keptOnTop_ = onTop_;
  }
  hands_.Compare(Look());
  core_.reset();
  Start();
}

// --- Fields -----------------------------------------------------------------------------------------------

/// False when the focus does not get there: a name that is not taken keeps it.
bool SoakModel::ClickField(Field field) {
  if (core_->view.focused != field) {
    core_->view.Move(field);
    Perform([&] { hands_.Click(field); });
  }
  return core_->view.focused == field;
}

void SoakModel::ClickRow(int row, int times) {
  View& view = core_->view;
  const int rows = view.RowCount();
  if (rows == 0 || (times == 1 && row % rows == view.selected) || view.nameBoxRow == row % rows) return;
  if (times > 1 && view.nameBoxRow) return;
  row %= rows;
  view.Move(Field::List);
  view.selected = row;
  core_->editing.lstCode_Click(core_->view.selected);
  if (times > 1) {
    for (; view.fieldsLeft > 0; --view.fieldsLeft) FieldLeft();
    core_->editing.lstCode_DblClick();
  }
  Perform([&] { hands_.ClickRow(row, times); });
}

void SoakModel::Change(Field field, Span span, const std::string& text) {
  View& view = core_->view;
  const bool isOpen = (field != Field::Name || view.nameBoxRow) &&
                      (field != Field::FileName || core_->chooser.fileNameBoxShown);
  if (!isOpen || !ClickField(field)) return;
  switch (field) {
    case Field::Code:
      return Replace(view.code, field, span, text);
    case Field::Description:
      return Replace(view.description, field, span, text);
    case Field::Name:
      return Replace(view.nameBoxText, field, span, text);
    default:
      return Replace(core_->chooser.fileNameText, field, span, text);
  }
}

void SoakModel::Replace(std::string& shown, Field field, Span span, const std::string& text) {
  std::string characters = ToCharacters(shown);
  const int size = static_cast<int>(characters.size());
  // What a random run goes on adding to would grow for ever.
  const bool all = span.to < 0 || characters.size() > kLongText;
  const int from = all ? 0 : std::min(span.from, size);
  const int to = all ? size : std::clamp(span.to, from, size);
  const auto place = [&](int index) {
    const std::string before = characters.substr(0, static_cast<std::size_t>(index));
    return field == Field::Code ? index : static_cast<int>(ToText(before).size());
  };
  const int first = place(from);
  const int last = place(to);
  const bool hasRow = core_->library.HasIndex(core_->editing.shownIndex());
  const bool takes = field == Field::Code          ? !core_->view.locked
                     : field == Field::Description ? !core_->editing.editingDisabled() && hasRow
                                                   : true;
  if (takes) {
    const int erased = text.empty() && from == to && to < size ? 1 : to - from;
    characters.erase(static_cast<std::size_t>(from), static_cast<std::size_t>(erased));
    const auto told = [&] {
      shown = ToText(characters);
      if (field == Field::Description) core_->editing.txtDesc_Change();
      if (field == Field::FileName) core_->naming.txtFileName_Change();
    };
    auto at = static_cast<std::size_t>(from);
    if (text.empty()) told();
    for (const char c : text) {
      characters.insert(at++, 1, c);
      told();
      if (field == Field::Code) core_->editing.txtCode_KeyPress(c == '\n' ? '\r' : c);
    }
  }
  Perform([&] { hands_.Replace(field, first, last, text); });
}

void SoakModel::TakeCode(Span span, bool cuts) {
  View& view = core_->view;
  if (view.locked || (!cuts && !clipboard_) || !ClickField(Field::Code)) return;
  std::string characters = ToCharacters(view.code);
  const auto from = std::min(static_cast<std::size_t>(span.from), characters.size());
  const auto length =
      std::min(static_cast<std::size_t>(std::max(span.to - span.from, 0)), characters.size() - from);
  if (cuts && length == 0) return;
  if (cuts) clipboard_ = ToText(characters.substr(from, length));
  characters.replace(from, length, cuts ? "" : ToCharacters(*clipboard_));
  view.code = ToText(characters);
  Perform([&] {
    hands_.Select(Field::Code, static_cast<int>(from), static_cast<int>(from + length));
    test::PressKey(cuts ? 'X' : 'V', {VK_CONTROL});
  });
}

// --- Commands ---------------------------------------------------------------------------------------------

void SoakModel::Press(const Button& button, const std::function<void()>& gesture) {
  button.does(*this);
  Perform(gesture);
}

void SoakModel::PressKey(const std::string& keys) {
  static const std::map<std::string, WORD> special{{"Enter", VK_RETURN}, {"Escape", VK_ESCAPE},
                                                   {"F2", VK_F2},        {"Delete", VK_DELETE},
                                                   {"Up", VK_UP},        {"Down", VK_DOWN}};
  SnippetEditing& editing = core_->editing;
  View& view = core_->view;
  const Field focus = view.focused;
  if (focus == Field::Name && keys == "Enter") {
    editing.SettleName();
  } else if (focus == Field::Name && keys == "Escape") {
    editing.txtName_Cancel();
  } else if (focus == Field::FileName && keys == "Enter") {
    core_->naming.AcceptName();
  } else if (focus == Field::FileName && keys == "Escape") {
    core_->naming.txtFileName_LostFocus();
  } else if (focus == Field::List && keys == "F2") {
    editing.lstCode_DblClick();
  } else if (focus == Field::List && keys == "Delete") {
    editing.DeleteSelectedSnippet();
  } else if (focus == Field::List && (keys == "Up" || keys == "Down") && view.selected >= 0) {
    view.selected = std::clamp(view.selected + (keys == "Down" ? 1 : -1), 0, view.RowCount() - 1);
    editing.lstCode_Click(core_->view.selected);
  } else {
    return;
  }
  Perform([&] { test::PressKey(special.at(keys)); });
}

void SoakModel::Copy() {
  clipboard_.reset();
  if (core_->editing.ListsSnippets()) clipboard_ = core_->view.code;
}

void SoakModel::UseMenu(const std::string& item) {
  View& view = core_->view;
  if (view.nameBoxRow) return;
  view.Move(Field::List);
  for (; view.fieldsLeft > 0; --view.fieldsLeft) FieldLeft();
  const bool changes = item == "Edit Snippet" || item == "Rename Snippet" || item == "Delete Snippet";
  const bool offered = !changes || !core_->editing.editingDisabled();
  if (offered && item == "Edit Snippet") core_->editing.EditSnippet();
  if (offered && item == "Rename Snippet") core_->editing.lstCode_DblClick();
  if (offered && item == "Delete Snippet") core_->editing.DeleteSelectedSnippet();
  if (item == "Copy to Clipboard") Copy();
  Perform([&] { hands_.UseMenu(offered ? item : ""); });
}

void SoakModel::Choose(const std::string& library, const std::string& path) {
  Chooser& chooser = core_->chooser;
  if (chooser.files.empty()) return;
  const bool isNumber = !library.empty() && std::isdigit(static_cast<unsigned char>(library.front())) != 0;
  const auto entry = isNumber ? chooser.files.begin() + std::stoi(library) % chooser.FileCount()
                              : std::find(chooser.files.begin(), chooser.files.end(), library);
  const auto index = static_cast<int>(entry - chooser.files.begin());
  if (index == chooser.FileCount() || index == chooser.selected) return;
  if (isNumber && *entry == kBrowseEntry) return;
  chooser.chosenPath = path.empty() ? std::nullopt : std::optional(path);
  core_->view.Move(Field::Chooser);
  Perform([&] { ClickCentre(hands_.Files()); });
  if (core_->view.focused != Field::Chooser) return;
  const std::string text = chooser.files[static_cast<std::size_t>(index)];
  chooser.selected = index;
  core_->operations.cboFiles_Click();
  Perform([&] { hands_.ChooseFromOpenList(text); });
}

void SoakModel::MakeLibrary(const std::string& name) {
  Chooser& chooser = core_->chooser;
  chooser.names.clear();
  if (!name.empty() && chooser.files.size() < kMostLibraries) chooser.names.push_back(name);
  core_->naming.GetNewLib();
  Perform([&] { test::PressKey('N', {VK_CONTROL, VK_SHIFT}); });
}

// --- The language -----------------------------------------------------------------------------------------

bool SoakModel::SetUp(const std::string& verb, std::istream& words) {
  if (verb != "file" && verb != "elsewhere" && verb != "files") return false;
  const std::string& folder = verb == "elsewhere" ? hands_.elsewhere() : hands_.program_.folder().path();
  const auto add = [&](const std::string& name, const std::string& bytes) {
    store_->files[folder + "\\" + name + ".bns"] = bytes;
    std::ofstream(folder + "\\" + name + ".bns", std::ios::binary) << bytes;
  };
  if (verb == "files") {
    add("Alpha",
        "BNS2.0\r\nFirst\r\nC:\\a.txt\r\nOne\r\nTwo\r\n(,)\r\nBeep\r\n  "
        "Stop\r\n(.)\r\nSecond\r\n\r\n\r\n(,)\r\n"
        "\r\n...\r\n");
    add("Broken", "no library\r\n");
    add("Empty", "BNS2.0\r\n");
    add("Many",
        "BNS2.0\r\na\r\n\r\nA\r\n(,)\r\n1\r\n(.)\r\nb\r\n\r\nB\r\n(,)\r\n2\r\n(.)\r\nc\r\nd:\\c\r\nC\r\n(,)"
        "\r\n"
        "For i = 1 To 3\r\n  Debug.Print \"x\" ' note\r\nNext\r\n(.)\r\nd\r\n\r\nD\r\n(,)\r\n4\r\n...\r\n");
    add("Old", "BNS1.0\r\nFirst\r\nOne line\r\nBeep\r\n  Stop  \r\n.\r\nSecond\r\nTwo\r\nEnd\r\n..\r\n");
    return true;
  }
  std::string library;
  words >> std::quoted(library);
  std::vector<Snippet> snippets;
  for (std::string name; words >> std::quoted(name);) snippets.push_back(MainWindowUser::Named(name));
  add(library, WriteBns(snippets));
  return true;
}

void SoakModel::Do(const std::string& line) {
  constexpr std::string_view no = " / no";
  agrees_ = !line.ends_with(no);
  std::istringstream words(agrees_ ? line : line.substr(0, line.size() - no.size()));
  const auto text = [&] {
    std::string read;
    words >> std::quoted(read);
    std::replace(read.begin(), read.end(), '^', '\n');
    return read;
  };
  const auto number = [&] {
    int read = 0;
    words >> read;
    return read;
  };
  const auto span = [&]() -> Span {
    if ((words >> std::ws).eof() || std::isdigit(words.peek()) == 0) return {};
    const int from = number();
    return {from, number()};
  };
  const std::string verb = text();
  if (SetUp(verb, words)) return;
  Start();
  using Model = SoakModel;
  constexpr int main = frmAddIn::kMainBarId;
  static const std::vector<Button> buttons{
      {"Save Library", "Ctrl+S", 'S', main, [](Model& model) { model.core_->operations.SaveLibrary(); }},
      {"New Snippet", "Ctrl+N", 'N', main, [](Model& model) { model.core_->editing.NewSnippet(); }},
      {"Edit Snippet", "Ctrl+E", 'E', main, [](Model& model) { model.core_->editing.EditSnippet(); }},
      {"Delete Snippet", "Ctrl+D", 'D', main,
       [](Model& model) { model.core_->editing.DeleteSelectedSnippet(); }},
      {"Rename Library", "Shift+F2", VK_F2, main, [](Model& model) { model.core_->naming.RenameLibrary(); }},
      {"Keep on Top", "Ctrl+T", 'T', main, [](Model& model) { model.onTop_ = !model.onTop_; }},
      {"Commit", "Ctrl+K", 'K', frmAddIn::kEditBarId,
       [](Model& model) { model.core_->editing.txtCode_LostFocus(); }},
      {"Syntax Highlighting", "Ctrl+H", 'H', frmAddIn::kEditBarId, [](Model&) {}},
  };
  const auto find = [&](const std::string& name) {
    const bool full =
        core_->library.Snippets.size() >= kMostRows && (name == "New Snippet" || name == "Ctrl+N");
    return std::find_if(buttons.begin(), buttons.end(), [&](const Button& button) {
      return !full && (name == button.name || name == button.keys);
    });
  };
  const std::map<std::string, std::function<void()>> verbs{
      {"row", [&] { ClickRow(number(), 1); }},
      {"rename", [&] { ClickRow(number(), 2); }},
      {"click", [&] { ClickField(text() == "code" ? Field::Code : Field::Description); }},
      {"edit",
       [&] {
         if (!ClickField(Field::Code)) return;
         core_->editing.txtCode_DblClick();
         Perform([&] { hands_.Click(Field::Code, 2); });
       }},
      {"code",
       [&] {
         const Span where = span();
         Change(Field::Code, where, text());
       }},
      {"erase", [&] { Change(Field::Code, span(), ""); }},
      {"cut", [&] { TakeCode(span(), true); }},
      {"paste", [&] { TakeCode(span(), false); }},
      {"describe",
       [&] {
         const Span where = span();
         Change(Field::Description, where, text());
       }},
      {"name", [&] { Change(Field::Name, {}, text()); }},
      {"filename", [&] { Change(Field::FileName, {}, text()); }},
      {"key",
       [&] {
         const std::string keys = text();
         const auto button = find(keys);
         if (keys == "Ctrl+D" && core_->view.focused != Field::List) return;
         const bool shift = keys.starts_with("Shift");
         if (button != buttons.end()) {
           return Press(*button,
                        [&] { test::PressKey(button->key, {shift ? WORD{VK_SHIFT} : WORD{VK_CONTROL}}); });
         }
         if (keys != "Ctrl+Shift+C") return PressKey(keys);
         Copy();
         Perform([] { test::PressKey('C', {VK_CONTROL, VK_SHIFT}); });
         if (clipboard_ && !WaitUntil([&] { return ClipboardNow() == *clipboard_; })) {
           throw std::runtime_error("the clipboard holds " + ClipboardNow() + ", not " + *clipboard_);
         }
       }},
      {"button",
       [&] {
         const auto button = find(text());
         if (button == buttons.end()) return;
         Press(*button, [&] { hands_.PressButton(button->bar, button->name); });
       }},
      {"menu", [&] { UseMenu(text()); }},
      {"library", [&] { Choose(text(), ""); }},
      {"new", [&] { MakeLibrary(text()); }},
      {"browse",
       [&] {
         const std::string name = text();
         Choose(kBrowseEntry, name.empty() ? "" : hands_.elsewhere() + "\\" + name + ".bns");
       }},
      {"split",
       [&] {
         const bool columns = number() == 0;
         const int by = number() - 200;
         Perform([&] { hands_.Split(columns, by); });
       }},
      {"size",
       [&] {
         const int width = number();
         const int height = number();
         Perform([&] {
           SetWindowPos(hands_.window_, nullptr, width / 8, height / 8, 450 + width, 300 + height,
                        SWP_NOZORDER);
         });
       }},
      {"minimise", [&] { Perform([&] { hands_.SizeTo(false); }); }},
      {"maximise", [&] { Perform([&] { hands_.SizeTo(true); }); }},
      {"close", [&] { Close(false); }},
      {"kill", [&] { Close(true); }},
  };
  const auto known = verbs.find(verb);
  if (known == verbs.end()) throw std::runtime_error("no such thing: " + verb);
  known->second();
}

}  // namespace snip::test
