#include "tests/soak/ScriptPlayer.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <utility>
#include <variant>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kTypedFieldId = 100;  // of the dialogs: the message, or the field for a name

/// A text in one line: "^" is a line end, "~" a tab.
std::string InOneLine(std::string text) {
  std::ranges::replace(text, '\t', '~');
  std::erase(text, '\r');
  std::ranges::replace(text, '\n', '^');
  return text;
}

std::string WithoutTimes(const std::string& text) {
  return std::regex_replace(text, std::regex(R"(\d+([-/:.]\d+)+( [AP]M)?)"), "#");
}

/// The snippets of a library in one line, or that it is none.
std::string Contents(const std::string& bytes) {
  const BnsResult result = ReadBns(bytes);
  const auto* library = std::get_if<BnsContents>(&result);
  if (library == nullptr) return "no library";
  std::string text;
  for (const Snippet& snippet : library->snippets) {
    text +=
        "[" + snippet.Name + " | " + InOneLine(snippet.Code) + " | " + InOneLine(snippet.Description) + "]";
  }
  return text;
}

}  // namespace

// --- Waiting ----------------------------------------------------------------------------------------------

bool ScriptPlayer::Wait(const std::function<bool()>& condition) {
  constexpr DWORD patience = 15000;
  constexpr int eagerTries = 20;
  const DWORD start = GetTickCount();
  for (int tries = 0; GetTickCount() - start < patience; ++tries) {
    if (condition()) return true;
    Sleep(tries < eagerTries ? 0 : 1);
  }
  return condition();
}

void ScriptPlayer::Need(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

void ScriptPlayer::Start() {
  if (program_.Running()) return;
  program_.Start();
  const bool up = Wait([this] {
    window_ = FindWindowA("frmAddIn", nullptr);
    // The last of the controls to be made.
    return window_ != nullptr && Control(frmAddIn::kEditBarId) != nullptr;
  });
  Need(up, "the main window does not come up");
  AnswerDialogs();
}

/// Real input comes after what is posted, but before what is to be painted. Posted messages are handled in
/// their order; one may post another, which may post a third.
void ScriptPlayer::Settle() {
  constexpr int rounds = 3;
  const HWND list = List();
  InvalidateRect(list, nullptr, FALSE);
  Need(Wait([&] { return GetUpdateRect(list, nullptr, FALSE) == 0; }), "the program does not paint");
  for (int round = 0; round < rounds; ++round) {
    PostMessageA(list, LB_SETHORIZONTALEXTENT, ++token_, 0);
    const bool handled = Wait([&] {
      return static_cast<WPARAM>(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0)) == token_ ||
             !program_.Running();
    });
    Need(handled, "the program does not handle its messages");
  }
}

/// Answers whatever dialogs come, until the window takes input again or the program has ended.
void ScriptPlayer::AnswerDialogs() {
  for (;;) {
    Settle();
    HWND dialog = nullptr;
    const bool waits = Wait([&] {
      dialog = FindVisibleOfClass("#32770");
      return dialog != nullptr
                 ? IsForeground(dialog)
                 : (IsForeground(window_) && IsWindowEnabled(window_) != 0) || !program_.Running();
    });
    Need(waits, dialog != nullptr ? WindowText(dialog) + " does not come to the front"
                                  : "the window takes no input");
    if (dialog == nullptr) return;
    Answer(dialog);
  }
}

void ScriptPlayer::Answer(HWND dialog) {
  const std::string title = WindowText(dialog);
  const HWND field = GetDlgItem(dialog, kTypedFieldId);
  const bool isMessage = title.empty() || title.starts_with("Brennic Snipstore");
  told_ += " ! " + (isMessage ? WindowText(field) : title);
  if (title == "Open Snippet File" || title == "Choose Attachment") {
    return ChooseFile(title, std::exchange(chosenPath_, ""));
  }
  if (title == "New Code Library") {
    SendMessageA(field, EM_SETSEL, 0, -1);
    for (const char c : libraryName_) SendMessageA(field, WM_CHAR, static_cast<unsigned char>(c), 1);
  }
  const bool agrees = isMessage ? agrees_ : !std::exchange(libraryName_, "").empty();
  const int button = GetDlgItem(dialog, IDYES) == nullptr ? IDOK : agrees ? IDYES : IDNO;
  if (isMessage || agrees) {
    PostMessageA(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
  } else {
    PressKey(VK_ESCAPE);
  }
  Need(Wait([&] { return IsWindow(dialog) == 0; }), title + " stays open");
}

void ScriptPlayer::Perform(const std::function<void()>& gesture) {
  gesture();
  AnswerDialogs();
}

void ScriptPlayer::EndAndStart(bool kills) {
  if (kills) {
    program_.Kill();
  } else {
    Perform([] { PressKey(VK_F4, {VK_MENU}); });
    if (program_.Running()) return;  // it has something to say about a name
    Need(program_.ExitCode() == 0, "the program ended with an error");
  }
  const FileBytes before = FilesNow();
  Start();
  CheckFiles("row", before);
}

// --- What is to be seen -----------------------------------------------------------------------------------

std::string ScriptPlayer::State() const {
  std::string state;
  const Names rows = Rows();
  for (std::size_t row = 0; row < rows.size(); ++row) {
    state += (static_cast<int>(row) == Selected() ? ">" : "") + rows[row] + " ";
  }
  state += "| " + InOneLine(WindowText(Code())) + " | " + InOneLine(WindowText(Description()));
  if (IsShown(NameBox())) state += " | naming " + WindowText(NameBox());
  if (IsShown(FileNameBox())) state += " | renaming " + WindowText(FileNameBox());
  state += " | " + WindowText(Files()) + " |";
  for (const auto& [field, name] : {std::pair(List(), "list"),
                                    {Code(), "code"},
                                    {Description(), "description"},
                                    {NameBox(), "name"},
                                    {FileNameBox(), "file name"},
                                    {Control(frmAddIn::kAttachId), "attachment"},
                                    {Files(), "libraries"}}) {
    if (field != nullptr && Focus() == field) state += std::string(" ") + name;
  }
  if (!CodeLocked()) state += " | editing";
  const AccessibleClient bar(Control(frmAddIn::kMainBarId));
  if (bar.Child(MainButton::kSaveLibrary + 1).Has(STATE_SYSTEM_UNAVAILABLE)) state += " | disabled";
  if ((GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0) state += " | on top";
  const AccessibleClient editBar(Control(frmAddIn::kEditBarId));
  if (!editBar.Child(EditButton::kSyntaxHighlighting + 1).Has(STATE_SYSTEM_CHECKED)) state += " | uncoloured";
  if (const HWND menu = FindVisibleOfClass("frmMenu"); menu != nullptr) {
    state += " | " + WindowText(menu) + " menu";
    for (const AccessibleChild& item : AccessibleClient(menu).Children()) {
      if (item.Has(STATE_SYSTEM_UNAVAILABLE)) state += ", no " + item.name;
    }
  }
  const HWND notice = FindVisibleOfClass("Notice");
  if (notice != nullptr) state += " | " + WithoutTimes(WindowText(notice));
  return state + told_;
}

std::string ScriptPlayer::Copied() {
  const std::string copied = InOneLine(ClipboardNow());
  return copied.empty() ? "nothing" : copied;
}

std::string ScriptPlayer::Saved(const std::string& library) const {
  return program_.folder().Has(library + ".bns") ? Contents(File(library)) : "none";
}

std::string ScriptPlayer::HistoryState(HWND window) {
  std::string shown = WindowText(window);
  for (int id = frmHistory::kVersionsId; id <= frmHistory::kLinesId; ++id)
    shown += " | " + testing::PrintToString(RowsOf(GetDlgItem(window, id)));
  return WithoutTimes(shown);
}

ScriptPlayer::FileBytes ScriptPlayer::FilesNow() const {
  FileBytes files;
  for (const TemporaryFolder* folder : {&program_.folder(), &elsewhere_}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder->path())) {
      if (entry.path().extension() != ".bns") continue;
      // Not by its name as a string, which the standard library makes UTF-8 of.
      std::ifstream file(entry.path(), std::ios::binary);
      files[entry.path().string()] = {std::istreambuf_iterator<char>(file), {}};
    }
  }
  return files;
}

void ScriptPlayer::CheckFiles(const std::string& verb, const FileBytes& before) const {
  const FileBytes now = FilesNow();
  const bool writes = verb == "key" || verb == "button" || verb == "library" || verb == "new" ||
                      verb == "browse" || verb == "close" || verb == "row" || verb == "click";
  Need(writes || now == before, verb + " changes a file");
  for (const auto& [path, bytes] : now) {
    const auto old = before.find(path);
    const bool changed = old == before.end() || old->second != bytes;
    Need(!changed || Contents(bytes) != "no library", path + " is no library: " + bytes);
  }
}

// --- The language -----------------------------------------------------------------------------------------

bool ScriptPlayer::SetUp(const std::string& verb, std::istream& words) const {
  if (verb != "file" && verb != "elsewhere" && verb != "files") return false;
  if (verb == "files") {
    const std::pair<const char*, const char*> odd[] = {
        {"Alpha",
         "BNS2.0\r\nFirst\r\nC:\\a.txt\r\nOne\r\nTwo\r\n(,)\r\nBeep\r\n  Stop\r\n(.)\r\nSecond\r\n\r\n"
         "\r\n(,)\r\n\r\n...\r\n"},
        {"Broken", "no library\r\n"},
        {"Empty", "BNS2.0\r\n"},
        {"Locked", "BNS1.0\r\nold\r\nd\r\n'old\r\n(.)\r\n..\r\n"},  // which cannot be converted
        {"Many",
         "BNS2.0\r\na\r\n\r\nA\r\n(,)\r\n1\r\n(.)\r\nb\r\n\r\nB\r\n(,)\r\n2\r\n(.)\r\nc\r\nd:\\c\r\nC\r\n"
         "(,)\r\nFor i = 1 To 3\r\n  Debug.Print \"x\" ' note\r\nNext\r\n(.)\r\nd\r\n\r\nD\r\n(,)\r\n4\r\n"
         "...\r\n"},
        {"Old", "BNS1.0\r\nFirst\r\nOne line\r\nBeep\r\n  Stop  \r\n.\r\nSecond\r\nTwo\r\nEnd\r\n..\r\n"}};
    for (const auto& [name, bytes] : odd) program_.folder().Write(std::string(name) + ".bns", bytes);
    return true;
  }
  std::string library;
  words >> std::quoted(library);
  std::vector<Snippet> snippets;
  for (std::string name; words >> std::quoted(name);) snippets.push_back(Named(name));
  const std::string file = library + ".bns";
  elsewhere_.Write(file, WriteBns(snippets));
  // By a new file that is given the name, as many programs save.
  if (verb == "file") std::filesystem::rename(elsewhere_.File(file), program_.folder().File(file));
  return true;
}

std::string ScriptPlayer::Do(const std::string& line) {
  constexpr std::string_view no = " / no";
  agrees_ = !line.ends_with(no);
  std::istringstream words(agrees_ ? line : line.substr(0, line.size() - no.size()));
  const auto text = [&] {
    std::string read;
    words >> std::quoted(read);
    std::ranges::replace(read, '^', '\n');
    return read;
  };
  const auto number = [&] {
    int read = 0;
    words >> read;
    return read;
  };
  const auto span = [&]() -> Span {
    if ((words >> std::ws).eof() || std::isdigit(words.peek()) == 0) return {};
    return {number(), number()};
  };
  const auto replace = [&](HWND field) {
    const Span where = span();
    Replace(field, where, text());
  };
  const std::string verb = text();
  if (SetUp(verb, words)) return "";
  Start();
  told_.clear();
  look_ = [this] { return State(); };
  const FileBytes before = FilesNow();
  const std::map<std::string, std::function<void()>> verbs{
      // The list and the fields.
      {"row", [&] { ClickListRow(number(), 1); }},
      {"rename", [&] { ClickListRow(number(), 2); }},
      {"click", [&] { ClickInto(text() == "code" ? Code() : Description()); }},
      {"edit", [&] { ClickInto(Code(), 2); }},
      {"code", [&] { replace(Code()); }},
      {"erase", [&] { Replace(Code(), span(), ""); }},
      {"cut", [&] { TakeCode(span(), 'X'); }},
      {"paste", [&] { TakeCode(span(), 'V'); }},
      {"describe", [&] { replace(Description()); }},
      {"name", [&] { replace(NameBox()); }},
      {"filename", [&] { replace(FileNameBox()); }},
      {"type", [&] { Perform([&] { TypeText(text()); }); }},
      // Keys, buttons and menus.
      {"key", [&] { PressKeys(text()); }},
      {"button", [&] { PressButton(text()); }},
      {"menu", [&] { UseMenu(text()); }},
      {"right", [&] { Perform([&, place = text()] { ClickRight(place, number()); }); }},
      {"arrow", [&] { Perform([&] { ClickArrow(); }); }},
      {"attachment", [&] { Perform([&] { ClickCentre(Control(frmAddIn::kAttachId)); }); }},
      {"item", [&] { Perform([&] { ChooseItem(text()); }); }},
      // Libraries and what was in them.
      {"library", [&] { Choose(text()); }},
      {"new", [&] { libraryName_ = text(), PressKeys("Ctrl+Shift+N"); }},
      {"browse", [&] { Browse(text()); }},
      {"drafted", [&] { WaitForDraft(); }},
      {"history", [&] { ShowHistory(number()); }},
      {"press", [&] { PressInHistory(text()); }},
      // The window and the program.
      {"other", [&] { Perform([&] { GoToAnotherWindow(); }); }},
      {"split", [&] { Perform([&, columns = number() == 0] { Split(columns, number() - 200); }); }},
      {"size", [&] { Perform([&, width = number()] { Resize(width, number()); }); }},
      {"minimise", [&] { SizeTo(SC_MINIMIZE, [](HWND window) { return IsIconic(window) != 0; }); }},
      {"maximise", [&] { SizeTo(SC_MAXIMIZE, [](HWND window) { return IsZoomed(window) != 0; }); }},
      {"close", [&] { EndAndStart(false); }},
      {"kill", [&] { EndAndStart(true); }},
      // What is looked at.
      {"clipboard", [&] { look_ = [] { return Copied(); }; }},
      {"libraries", [&] { look_ = [this] { return testing::PrintToString(Libraries()); }; }},
      {"saved", [&] { look_ = [this, name = text()] { return Saved(name); }; }},
  };
  const auto known = verbs.find(verb);
  if (known == verbs.end()) throw std::runtime_error("no such thing: " + verb);
  known->second();
  CheckFiles(verb, before);
  return look_();
}

bool ScriptPlayer::Sees(const std::string& state) const {
  return WaitUntil([&] { return look_() == state; });
}

}  // namespace snip::test
