#include "tests/soak/SoakModel.h"

#include <algorithm>
#include <array>
#include <utility>

#include "ui/main/MainToolbars.h"
#include "ui/main/MainWindowKeys.h"

namespace snip::test {
namespace {

constexpr const char* kBrowse = "(Browse...)";
constexpr std::size_t kMostRows = 12;
constexpr std::size_t kMostEntries = 9;
constexpr std::size_t kLongText = 300;

constexpr std::array kTexts{"x",       "Dim a", "\xE9",  " ",       "\n",          "two words ",
                            "  'c\n ", "(,)",   "\"s\"", "\n(.)\n", "Stop\n\nEnd", "\n...\n"};
constexpr std::array kNames{
    "Alpha", "alpha",     "Beta",      "New Snippet",       "...", " lead", "trail ", "", "(,)",
    "z",     "\xC9t\xE9", "\xE9T\xC9", "A rather long name"};
constexpr std::array kLibraries{"Alpha",
                                "Beta two",
                                "Gamma",
                                "\xDC"
                                "ber",
                                "a|b",
                                "Delta.v2",
                                "Zeta"};

constexpr int Of(int mainButton) {
  return Command::kMainButton + mainButton;
}
constexpr int OfEdit(int editButton) {
  return Command::kEditButton + editButton;
}

template <class Pool>
std::string Pick(const Pool& pool, std::uint32_t number) {
  return pool[number % pool.size()];
}

/// Positions in a rich-edit control count a line end as one character.
std::string ToCharacters(const std::string& text) {
  std::string characters = text;
  std::erase(characters, '\r');
  return characters;
}

std::string ToText(const std::string& characters) {
  std::string text;
  for (const char c : characters) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return text;
}

std::string TrimEnd(std::string line) {
  while (line.ends_with(' ')) line.pop_back();
  return line;
}

std::string TrimBoth(const std::string& line) {
  const std::string text = TrimEnd(line);
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string Lower(std::string text) {
  for (char& c : text) {
    const auto code = static_cast<unsigned char>(c);
    const bool latin = code >= 0xC0 && code <= 0xDE && code != 0xD7;
    if ((code >= 'A' && code <= 'Z') || latin) c = static_cast<char>(code + 0x20);
  }
  return text;
}

void DropLineEnd(std::string& text) {
  if (text.size() >= 2) text.resize(text.size() - 2);
}

std::vector<std::string> Lines(const std::string& bytes) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = 0; (end = bytes.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(bytes.substr(start, end - start));
  }
  return lines;
}

}  // namespace

std::map<std::string, std::string> SoakModel::FirstFiles() {
  return {
      {"Alpha",
       "BNS2.0\r\nFirst\r\nC:\\a.txt\r\nOne\r\nTwo\r\n(,)\r\nBeep\r\n  Stop\r\n(.)\r\nSecond\r\n\r\n\r\n(,)"
       "\r\n\r\n...\r\n"},
      {"Broken", "no library\r\n"},
      {"Empty", "BNS2.0\r\n"},
      {"Many",
       "BNS2.0\r\na\r\n\r\nA\r\n(,)\r\n1\r\n(.)\r\nb\r\n\r\nB\r\n(,)\r\n2\r\n(.)\r\nc\r\nd:\\c\r\nC\r\n(,)"
       "\r\n"
       "For i = 1 To 3\r\n  Debug.Print \"x\" ' note\r\nNext\r\n(.)\r\nd\r\n\r\nD\r\n(,)\r\n4\r\n...\r\n"},
      {"Old", "BNS1.0\r\nFirst\r\nOne line\r\nBeep\r\n  Stop  \r\n.\r\nSecond\r\nTwo\r\nEnd\r\n..\r\n"},
  };
}

// --- What the window does by itself -----------------------------------------------------------------------

void SoakModel::Perform(Gesture gesture) {
  for (; fieldsLeft_ > 0; --fieldsLeft_) FieldLeft();
  gesture.dialogs = std::exchange(dialogs_, {});
  hands_.Perform(gesture);
}

void SoakModel::PerformCommand(int command, const Action& action) {
  Perform(
      {.kind = GestureKind::Command, .a = command, .b = static_cast<int>(action.a % 2), .real = action.real});
}

void SoakModel::MoveFocus(Field field) {
  const Field before = std::exchange(shown_.focus, field);
  const bool isField = before == Field::Code || before == Field::Description || before == Field::Name ||
                       before == Field::FileName;
  if (before != field && isField) ++fieldsLeft_;
}

void SoakModel::FieldLeft() {
  if (shown_.focus != Field::FileName && shown_.fileNameBox) HideFileNameBox();
  if (shown_.focus != Field::Name) SettleName();
  if (shown_.focus != Field::Code) CommitCode();
}

void SoakModel::Tell(const std::string& text, int answer) {
  dialogs_.push_back({.text = text, .answer = answer, .typed = {}});
}

bool SoakModel::Ask(const std::string& text) {
  constexpr int yes = 6;
  constexpr int no = 7;
  const bool agrees = answers_ % 3 != 0;
  Tell(text, agrees ? yes : no);
  return agrees;
}

// --- Snippets ---------------------------------------------------------------------------------------------

void SoakModel::Store(std::string& stored, const std::string& shown) {
  if (stored == shown) return;
  stored = shown;
  saved_ = false;
}

void SoakModel::ShowRow() {
  if (!HasRow()) return;
  CommitCode();
  shown_.locked = true;
  shown_.code = Current().code;
  shown_.description = Current().description;
}

void SoakModel::ShowNothing(const std::string& code) {
  EndRename();
  editIndex_ = -1;
  shown_.rows.clear();
  shown_.row = -1;
  shown_.locked = true;
  shown_.code = code;
  shown_.description.clear();
}

void SoakModel::CommitCode() {
  if (shown_.locked || editIndex_ < 0) return;
  Store(snippets_[static_cast<std::size_t>(editIndex_)].code, shown_.code);
  shown_.locked = true;
}

bool SoakModel::NameTaken() const {
  for (int row = 0; row < static_cast<int>(snippets_.size()); ++row) {
    const bool same = Lower(snippets_[static_cast<std::size_t>(row)].name) == Lower(*shown_.nameBox);
    if (row != renamed_ && same) return true;
  }
  return false;
}

bool SoakModel::SettleName() {
  if (!shown_.nameBox) return true;
  const bool endsList = TrimBoth(*shown_.nameBox) == "...";
  if (NameTaken() || endsList) {
    Tell(NameTaken() ? "A snippet in this library already has this name. Please use a different name for "
                       "this snippet."
                     : "A line of three dots ends the list of snippets in a library file. Please use a "
                       "different name for this snippet.");
    MoveFocus(Field::Name);
    return false;
  }
  const auto row = static_cast<std::size_t>(renamed_);
  shown_.rows[row] = snippets_[row].name = *shown_.nameBox;
  saved_ = false;
  EndRename();
  return true;
}

void SoakModel::EndRename() {
  shown_.nameBox.reset();
  renamed_ = -1;
  if (shown_.focus == Field::Name) MoveFocus(Field::List);
}

void SoakModel::StartRename() {
  if (disabled_ || !HasRow() || !SettleName()) return;
  renamed_ = shown_.row;
  shown_.nameBox = Current().name;
  MoveFocus(Field::Name);
}

void SoakModel::EditSnippet() {
  if (disabled_) return;
  if (!HasRow()) return Tell("No snippet selected.");
  if (!shown_.locked) return CommitCode();
  editIndex_ = shown_.row;
  shown_.locked = false;
  MoveFocus(Field::Code);
}

void SoakModel::NewSnippet() {
  if (disabled_ || !SettleName()) return;
  CommitCode();
  snippets_.push_back({"New Snippet", "", "<description goes here>", "'Insert code here."});
  shown_.rows.emplace_back("New Snippet");
  shown_.row = static_cast<int>(snippets_.size()) - 1;
  saved_ = false;
  ShowRow();
  StartRename();
}

void SoakModel::DeleteSnippet() {
  if (disabled_) return;
  if (!HasRow()) return Tell("No snippet selected.");
  CommitCode();
  editIndex_ = -1;
  EndRename();
  saved_ = false;
  const auto row = static_cast<std::size_t>(shown_.row);
  if (snippets_.size() == 1) {
    snippets_[0] = {"New Snippet", snippets_[0].attachment, "<description goes here>", "'Insert code here."};
    shown_.rows[0] = "New Snippet";
    ShowRow();
  } else {
    const bool last = row + 1 == snippets_.size();
    snippets_.erase(snippets_.begin() + shown_.row);
    shown_.rows.erase(shown_.rows.begin() + shown_.row);
    shown_.row = last ? -1 : 0;
    ShowRow();
  }
  MoveFocus(Field::List);
}

// --- Libraries --------------------------------------------------------------------------------------------

bool SoakModel::Read(const std::string& bytes) {
  const std::vector<std::string> lines = Lines(bytes);
  if (lines.empty() || (lines[0] != "BNS1.0" && lines[0] != "BNS2.0")) return false;
  const bool version1 = lines[0] == "BNS1.0";
  if (version1) {
    Tell(
        "This file was saved in a previous version of Brennic Snipstore. When it is saved it will be "
        "converted to Snipstore 2.0 format.");
  }
  snippets_.clear();
  saved_ = !version1;
  if (lines.size() > 1) ReadRecords(lines, version1);
  return true;
}

void SoakModel::ReadRecords(const std::vector<std::string>& lines, bool version1) {
  const std::string recordEnd = version1 ? "." : "(.)";
  const std::string listEnd = version1 ? ".." : "...";
  std::size_t next = 1;
  const auto take = [&] { return next < lines.size() ? lines[next++] : std::string(); };
  // False when the list or the file ends with the block.
  const auto readBlock = [&](std::string& text, const std::string& end) {
    while (next < lines.size()) {
      const std::string line = take();
      if (TrimBoth(line) == end) return true;
      if (TrimBoth(line) == listEnd) return false;
      text += TrimEnd(line) + "\r\n";
    }
    return false;
  };
  snippets_.emplace_back();
  while (next < lines.size()) {
    const std::string line = take();
    if (TrimBoth(line) == listEnd) {
      snippets_.pop_back();
      break;
    }
    Snippet& record = snippets_.back();
    record.name = line;
    if (version1) {
      record.description = take();
    } else {
      record.attachment = take();
      if (!readBlock(record.description, "(,)")) break;
    }
    if (!readBlock(record.code, recordEnd)) break;
    DropLineEnd(record.code);
    if (!version1) DropLineEnd(record.description);
    snippets_.emplace_back();
  }
  if (snippets_.empty()) return;
  DropLineEnd(snippets_.back().code);
  if (!version1) DropLineEnd(snippets_.back().description);
}

void SoakModel::Open(const std::string& name) {
  if (!Read(files_.at(name))) {
    ShowNothing("Not a valid BnSnipstore file.");
    disabled_ = true;
    return;
  }
  disabled_ = false;
  name_ = name;
  ShowNothing("");
  for (const Snippet& snippet : snippets_) shown_.rows.push_back(snippet.name);
  if (!snippets_.empty()) shown_.row = 0;
  ShowRow();
}

void SoakModel::Write() {
  std::string bytes = "BNS2.0\r\n";
  for (std::size_t i = 0; i < snippets_.size(); ++i) {
    const Snippet& snippet = snippets_[i];
    for (const std::string& item :
         {snippet.name, snippet.attachment, snippet.description, std::string("(,)"), snippet.code}) {
      bytes += item + "\r\n";
    }
    if (i + 1 < snippets_.size()) bytes += "(.)\r\n";
  }
  files_[name_] = bytes + "...\r\n";
  saved_ = true;
}

void SoakModel::Save() {
  if (disabled_ || !SettleName()) return;
  if (HasRow()) Store(Current().code, shown_.code);
  Write();
  const int entry = ListLibrary();
  if (shown_.entry == entry) return;
  HideFileNameBox();
  shown_.entry = entry;
}

void SoakModel::OfferToSave() {
  if (name_.empty() || saved_ || !Ask("Save changes to '" + name_ + "'?")) return;
  Write();
  ListLibrary();
}

int SoakModel::ListLibrary() {
  auto& entries = shown_.entries;
  auto place = std::find_if(entries.begin(), entries.end(),
                            [&](const std::string& entry) { return Lower(entry) == Lower(name_); });
  if (place == entries.end()) {
    place = entries.insert(std::find(entries.begin(), entries.end(), kBrowse), name_);
    if (shown_.entry >= place - entries.begin()) ++shown_.entry;
  }
  return static_cast<int>(place - entries.begin());
}

void SoakModel::ChooseEntry() {
  HideFileNameBox();
  if (!SettleName()) EndRename();
  if (!shown_.rows.empty()) ShowRow();
  OfferToSave();
  const std::string& name = shown_.entries[static_cast<std::size_t>(shown_.entry)];
  Open(name);
}

void SoakModel::NewLibrary(const Action& action) {
  HideFileNameBox();
  if (!SettleName()) return;
  CommitCode();
  const std::string title = "New Code Library";
  const bool full = shown_.entries.size() > kMostEntries;
  std::string name;
  for (const std::uint32_t number : {action.a / 8, action.b / 8}) {
    if (full || number % 4 == 0 || !name.empty()) continue;
    const std::string wanted = Pick(kLibraries, number);
    dialogs_.push_back({.text = title, .typed = wanted, .types = true});
    if (files_.contains(wanted)) {
      Tell("This file already exists. Please choose another name.");
    } else if (wanted.find('|') != std::string::npos) {
      Tell("A file of this name cannot be made. Please choose another name.");
    } else {
      name = wanted;
    }
  }
  if (name.empty()) return Tell(title, 2);
  files_[name] =
      "BNS2.0\r\nNew Snippet\r\n\r\n<description goes here>\r\n(,)\r\n'Insert code here.\r\n...\r\n";
  ShowNothing("");
  shown_.entries.push_back(name);
  shown_.entry = static_cast<int>(shown_.entries.size()) - 1;
  ChooseEntry();
}

void SoakModel::RenameLibrary() {
  if (disabled_ || shown_.row < 0 || !SettleName()) return;
  shown_.fileNameBox = shown_.entries[static_cast<std::size_t>(shown_.entry)];
  if (shown_.focus != Field::FileName) beforeFileName_ = shown_.focus;
  MoveFocus(Field::FileName);
}

void SoakModel::AcceptFileName() {
  std::string& entry = shown_.entries[static_cast<std::size_t>(shown_.entry)];
  const std::string name = *shown_.fileNameBox;
  // The library in memory keeps its name, and is saved under it.
  if (!files_.contains(name) && name.find('|') == std::string::npos) {
    files_[name] = files_.at(entry);
    files_.erase(entry);
    entry = name;
  }
  HideFileNameBox();
}

void SoakModel::HideFileNameBox() {
  shown_.fileNameBox.reset();
  if (shown_.focus == Field::FileName) MoveFocus(beforeFileName_);
}

void SoakModel::StartProgram() {
  shown_ = {};
  shown_.onTop = keptOnTop_;
  shown_.entries = hands_.Listing();
  shown_.entries.emplace_back(kBrowse);
  shown_.entry = 0;
  clipboard_.reset();
  snippets_.clear();
  name_.clear();
  saved_ = true;
  disabled_ = false;
  editIndex_ = -1;
  fieldsLeft_ = 0;
  ChooseEntry();
  Perform({.kind = GestureKind::Start});
}

void SoakModel::CloseProgram(const Action& action) {
  const bool ends = SettleName();
  if (ends) {
    CommitCode();
    OfferToSave();
    keptOnTop_ = shown_.onTop;
    fieldsLeft_ = 0;
  }
  Perform({.kind = GestureKind::Close, .a = static_cast<int>(action.a % 2), .ends = ends});
  if (ends) StartProgram();
}

// --- Actions ----------------------------------------------------------------------------------------------

void SoakModel::ClickField(Field field) {
  if (shown_.focus == field) return;
  MoveFocus(field);
  Perform({.kind = GestureKind::Click, .field = field});
}

void SoakModel::ChangeCode(GestureKind kind, const Action& action) {
  if (kind == GestureKind::Paste && !clipboard_) return;
  ClickField(Field::Code);
  if (shown_.focus != Field::Code) return;  // a name that is not taken keeps the focus
  std::string characters = ToCharacters(shown_.code);
  std::size_t from = action.a % (characters.size() + 1);
  const std::size_t length = action.a / 1024 % 2 == 0 ? 0 : action.b / 1024 % 8;
  std::size_t to = std::min(from + length, characters.size());
  if (characters.size() > kLongText) {
    from = 0;
    to = characters.size();
  }
  if (kind == GestureKind::Cut && from == to) return;
  Gesture gesture{.kind = kind,
                  .field = Field::Code,
                  .a = static_cast<int>(from),
                  .b = static_cast<int>(to),
                  .real = action.real};
  if (kind == GestureKind::Type) gesture.text = Pick(kTexts, action.b);
  if (!shown_.locked) {
    const std::string inserted = kind == GestureKind::Paste ? ToCharacters(*clipboard_) : gesture.text;
    std::size_t count = to - from;
    if (kind == GestureKind::Erase && count == 0 && to < characters.size()) count = 1;
    if (kind == GestureKind::Cut) clipboard_ = ToText(characters.substr(from, count));
    characters.replace(from, count, inserted);
    shown_.code = ToText(characters);
    if (kind == GestureKind::Type) saved_ = false;
  }
  Perform(std::move(gesture));
}

void SoakModel::TypeDescription(const Action& action, bool empties) {
  ClickField(Field::Description);
  if (shown_.focus != Field::Description) return;
  std::string characters = ToCharacters(shown_.description);
  const bool all = empties || characters.size() > kLongText;
  const std::size_t from = all ? 0 : action.a % (characters.size() + 1);
  const std::size_t length = all ? characters.size() : 0;
  // This field's positions count a line end as two characters.
  const auto place = [&](std::size_t index) {
    return static_cast<int>(ToText(characters.substr(0, index)).size());
  };
  Gesture gesture{.kind = empties ? GestureKind::Erase : GestureKind::Type,
                  .field = Field::Description,
                  .a = place(from),
                  .b = place(from + length),
                  .text = empties ? "" : Pick(kTexts, action.b),
                  .real = action.real && !empties};
  if (!disabled_ && HasRow()) {
    characters.replace(from, length, gesture.text);
    shown_.description = ToText(characters);
    if (!shown_.description.empty()) Store(Current().description, shown_.description);
  }
  Perform(std::move(gesture));
}

void SoakModel::UseSnippetsMenu(const Action& action) {
  if (shown_.nameBox) return;
  MoveFocus(Field::List);
  for (; fieldsLeft_ > 0; --fieldsLeft_) FieldLeft();
  Gesture gesture{.kind = GestureKind::Menu};
  const std::uint32_t choice = action.b % 6;
  if (choice == 0) {
    gesture.text = "Copy to Clipboard";
    CopyCode();
  } else if (choice == 1 && !disabled_) {
    gesture.text = "Edit Snippet";
    EditSnippet();
  } else if (choice == 2 && !disabled_) {
    gesture.text = "Rename Snippet";
    StartRename();
  }
  Perform(std::move(gesture));
}

void SoakModel::CopyCode() {
  clipboard_.reset();
  if (!shown_.rows.empty()) clipboard_ = shown_.code;
}

void SoakModel::AcceptName() {
  if (shown_.focus != Field::Name) return;
  SettleName();
  constexpr int enter = 13;
  Perform({.kind = GestureKind::Key, .field = Field::Name, .a = enter});
}

void SoakModel::Do(const Action& action) {
  constexpr int enter = 13;
  constexpr int escape = 27;
  constexpr int deleteKey = 0x2E;
  constexpr int f2 = 0x71;
  constexpr int up = 0x26;
  constexpr int down = 0x28;
  using namespace Command;
  answers_ = action.b / 4096;
  const auto rows = static_cast<std::uint32_t>(shown_.rows.size());
  const int number = static_cast<int>(action.a % 4096);
  const auto key = [&](Field field, int virtualKey) {
    Perform({.kind = GestureKind::Key, .field = field, .a = virtualKey, .real = action.real});
  };
  switch (action.kind) {
    case ActionKind::SelectRow:
      if (rows == 0) return;
      shown_.row = static_cast<int>(action.a % rows);
      ShowRow();
      return Perform({.kind = GestureKind::SelectRow, .a = shown_.row});
    case ActionKind::ClickRow: {
      const int row = rows == 0 ? -1 : static_cast<int>(action.a % rows);
      if (row == shown_.row || row < 0) return;
      MoveFocus(Field::List);
      shown_.row = row;
      ShowRow();
      return Perform({.kind = GestureKind::ClickRow, .a = row, .real = action.real});
    }
    case ActionKind::ArrowKey: {
      if (shown_.focus != Field::List || shown_.row < 0) return;
      const bool goesDown = action.a % 2 == 0;
      shown_.row = std::clamp(shown_.row + (goesDown ? 1 : -1), 0, static_cast<int>(rows) - 1);
      ShowRow();
      return key(Field::List, goesDown ? down : up);
    }
    case ActionKind::EditCode:
      EditSnippet();
      return PerformCommand(Of(MainButton::kEditSnippet), action);
    case ActionKind::DoubleClickCode:
      ClickField(Field::Code);
      if (shown_.locked) EditSnippet();
      return Perform({.kind = GestureKind::DoubleClick, .field = Field::Code});
    case ActionKind::Commit:
      CommitCode();
      return PerformCommand(OfEdit(EditButton::kCommit), action);
    case ActionKind::TypeCode:
      return ChangeCode(GestureKind::Type, action);
    case ActionKind::EraseCode:
      return ChangeCode(GestureKind::Erase, action);
    case ActionKind::CutCode:
      return ChangeCode(GestureKind::Cut, action);
    case ActionKind::PasteCode:
      return ChangeCode(GestureKind::Paste, action);
    case ActionKind::FocusCode:
      return ClickField(Field::Code);
    case ActionKind::FocusDescription:
      return ClickField(Field::Description);
    case ActionKind::TypeDescription:
      return TypeDescription(action, false);
    case ActionKind::EmptyDescription:
      return TypeDescription(action, true);
    case ActionKind::StartRename: {
      const bool byKey = shown_.focus == Field::List && action.b % 2 == 0;
      StartRename();
      return byKey ? key(Field::List, f2) : PerformCommand(kRenameSnippet, action);
    }
    case ActionKind::TypeName:
      if (!shown_.nameBox) return;
      ClickField(Field::Name);
      if (!shown_.nameBox || shown_.focus != Field::Name) return;
      shown_.nameBox = Pick(kNames, action.a);
      Perform({.kind = GestureKind::Type,
               .field = Field::Name,
               .b = -1,
               .text = *shown_.nameBox,
               .real = action.real});
      if (action.b % 3 == 0) AcceptName();
      return;
    case ActionKind::AcceptName:
      return AcceptName();
    case ActionKind::CancelName:
      if (shown_.focus != Field::Name) return;
      EndRename();
      return key(Field::Name, escape);
    case ActionKind::NewSnippet:
      if (snippets_.size() >= kMostRows && HasRow()) {
        DeleteSnippet();
        return PerformCommand(Of(MainButton::kDeleteSnippet), action);
      }
      NewSnippet();
      return PerformCommand(Of(MainButton::kNewSnippet), action);
    case ActionKind::DeleteSnippet: {
      const bool byKey = shown_.focus == Field::List && action.b % 2 == 0;
      DeleteSnippet();
      return byKey ? key(Field::List, deleteKey) : PerformCommand(Of(MainButton::kDeleteSnippet), action);
    }
    case ActionKind::Save:
      Save();
      return PerformCommand(Of(MainButton::kSaveLibrary), action);
    case ActionKind::SwitchLibrary: {
      const int entry = static_cast<int>(action.a % shown_.entries.size());
      if (shown_.entries[static_cast<std::size_t>(entry)] == kBrowse) return;
      shown_.entry = entry;
      ChooseEntry();
      return Perform({.kind = GestureKind::SelectEntry, .a = entry});
    }
    case ActionKind::NewLibrary:
      NewLibrary(action);
      return PerformCommand(Of(MainButton::kNewLibrary), action);
    case ActionKind::RenameLibrary:
      RenameLibrary();
      return PerformCommand(Of(MainButton::kRenameLibrary), action);
    case ActionKind::TypeFileName:
      if (shown_.focus != Field::FileName) return;
      shown_.fileNameBox = Pick(kLibraries, action.a);
      return Perform(
          {.kind = GestureKind::Type, .field = Field::FileName, .b = -1, .text = *shown_.fileNameBox});
    case ActionKind::AcceptFileName:
      if (shown_.focus != Field::FileName) return;
      AcceptFileName();
      return key(Field::FileName, enter);
    case ActionKind::CancelFileName:
      if (shown_.focus != Field::FileName) return;
      HideFileNameBox();
      return key(Field::FileName, escape);
    case ActionKind::CopyCode:
      CopyCode();
      PerformCommand(kCopyCode, action);
      if (clipboard_) Perform({.kind = GestureKind::CheckClipboard, .text = *clipboard_});
      return;
    case ActionKind::KeepOnTop:
      shown_.onTop = !shown_.onTop;
      return PerformCommand(Of(MainButton::kKeepOnTop), action);
    case ActionKind::Colouring:
      return PerformCommand(OfEdit(EditButton::kSyntaxHighlighting), action);
    case ActionKind::DragSplitter:
      return Perform({.kind = GestureKind::DragSplitter, .a = number % 2, .b = number % 300 - 150});
    case ActionKind::ResizeWindow:
      return Perform({.kind = GestureKind::Resize, .a = number % 500, .b = static_cast<int>(action.b % 350)});
    case ActionKind::Minimise:
      return Perform({.kind = GestureKind::Minimise});
    case ActionKind::Maximise:
      return Perform({.kind = GestureKind::Maximise});
    case ActionKind::OutputMenu:
      if (!disabled_) Perform({.kind = GestureKind::Menu, .a = kOutputMenu});
      return;
    case ActionKind::AttachmentMenu:
      return Perform({.kind = GestureKind::Menu, .a = kAttachmentMenu});
    case ActionKind::SnippetsMenu:
      return UseSnippetsMenu(action);
    case ActionKind::Restart:
      return CloseProgram(action);
    case ActionKind::Kill:
      Perform({.kind = GestureKind::Kill, .ends = true});
      return StartProgram();
  }
}

}  // namespace snip::test
