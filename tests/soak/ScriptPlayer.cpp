#include "tests/soak/ScriptPlayer.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iomanip>
#include <regex>
#include <stdexcept>
#include <utility>
#include <variant>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kTypedFieldId = 100;  // of the dialogs: the message, or the field for a name
constexpr int kMostRows = 30;
constexpr int kLongText = 300;

/// As often as the program can answer.
bool Wait(const std::function<bool()>& condition) {
  constexpr DWORD patience = 15000;
  constexpr int eagerTries = 20;
  const DWORD start = GetTickCount();
  for (int tries = 0; GetTickCount() - start < patience; ++tries) {
    if (condition()) return true;
    Sleep(tries < eagerTries ? 0 : 1);
  }
  return condition();
}

void Need(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

bool IsShown(HWND window) {
  return IsWindowVisible(window) != 0;
}

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

ScriptPlayer::ScriptPlayer() = default;

// --- Waiting ----------------------------------------------------------------------------------------------

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

// --- What is done -----------------------------------------------------------------------------------------

bool ScriptPlayer::IsUnderNameBox(int row) const {
  RECT place{};
  SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
  MapWindowPoints(List(), nullptr, reinterpret_cast<POINT*>(&place), 2);
  const Rect box = Place(NameBox());
  const auto middle = static_cast<int>((place.top + place.bottom) / 2);
  return middle >= box.top && middle < box.bottom();
}

/// False when the focus does not get there: a name that is not taken keeps it.
bool ScriptPlayer::ClickInto(HWND field, int times) {
  if (Focus() == field && times == 1) return true;
  const POINT place = Aside({5, 5});
  const Size size = ClientSize(field);
  Perform([&] {
    if (place.x < size.width && place.y < size.height) return ClickAt(field, place, times);
    // A pane that is too small for the pointer.
    PostMessageA(field, times == 1 ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
    PostMessageA(field, WM_LBUTTONUP, 0, 0);
  });
  return Focus() == field;
}

/// Selects what is between two places, counted as the field does, and types over it or deletes it.
void ScriptPlayer::Replace(HWND field, Span span, const std::string& text) {
  if (!IsShown(field) || !ClickInto(field)) return;
  // What a random run goes on adding to would grow for ever.
  if (GetWindowTextLengthA(field) > kLongText) span = {};
  SendMessageA(field, EM_SETSEL, static_cast<WPARAM>(span.from), span.to);
  const bool typed = std::ranges::all_of(text, [](char c) { return c == '\n' || VkKeyScanA(c) != -1; });
  Perform([&] {
    if (text.empty()) PressKey(VK_DELETE);
    for (const char c : text) {
      if (!typed) {
        SendMessageA(field, WM_CHAR, static_cast<unsigned char>(c), 1);
      } else if (c == '\n') {
        // Not by the keyboard, where a Shift of the keys around it would count for it.
        Settle();
        PostMessageA(field, WM_KEYDOWN, VK_RETURN, 1);
        Settle();
      } else {
        TypeText(std::string(1, c));
      }
    }
  });
}

void ScriptPlayer::TakeCode(Span span, WORD key) {
  if (CodeLocked() || !ClickInto(Code())) return;
  SendMessageA(Code(), EM_SETSEL, static_cast<WPARAM>(span.from), span.to);
  Perform([&] { PressKey(key, {VK_CONTROL}); });
}

void ScriptPlayer::PressKeys(const std::string& keys) {
  static const std::map<std::string, WORD> named{
      {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE}, {"Up", VK_UP},
      {"Down", VK_DOWN},    {"End", VK_END},       {"Tab", VK_TAB},       {"Space", VK_SPACE},
      {"Menu", VK_APPS},    {"F1", VK_F1},         {"F2", VK_F2},         {"F4", VK_F4},
      {"F9", VK_F9},        {"F10", VK_F10}};
  const std::size_t last = keys.find_last_of('+') + 1;
  const auto key = named.find(keys.substr(last));
  const WORD code = key == named.end() ? static_cast<WORD>(keys[last]) : key->second;
  const bool control = keys.starts_with("Ctrl+");
  const bool shift = keys.find("Shift+") != std::string::npos;
  if (keys == "Ctrl+N" && Rows().size() >= kMostRows) return;
  Perform([&] {
    if (control && shift) PressKey(code, {VK_CONTROL, VK_SHIFT});
    if (control != shift) PressKey(code, {static_cast<WORD>(control ? VK_CONTROL : VK_SHIFT)});
    if (!control && !shift) PressKey(code);
  });
}

void ScriptPlayer::UseMenu(const std::string& item) {
  if (IsShown(NameBox())) return;
  PostMessageA(window_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List()), -1);
  const HWND menu = Menu("Snippets");
  Need(menu != nullptr, "no menu comes up");
  // While it unfolds nothing else is handled.
  Settle();
  // Refused while the item is grey: then nothing may happen.
  if (item.empty() || !AccessibleClient(menu).Press(item)) PressKey(VK_ESCAPE);
  Need(Wait([&] { return IsWindow(menu) == 0; }), "the menu stays open");
  AnswerDialogs();
}

/// Chooses an entry by its text or its number, which counts round.
void ScriptPlayer::Choose(const std::string& library) {
  const Names entries = Libraries();
  if (entries.empty()) return;
  const bool isNumber = !library.empty() && std::isdigit(static_cast<unsigned char>(library.front())) != 0;
  const std::string entry =
      isNumber ? entries[static_cast<std::size_t>(std::stoi(library)) % entries.size()] : library;
  if ((isNumber && entry == kBrowseEntry) || entry == WindowText(Files())) return;
  if (std::ranges::find(entries, entry) == entries.end()) return;
  if (SendMessageA(Files(), CB_GETDROPPEDSTATE, 0, 0) == 0) Perform([&] { ClickCentre(Files()); });
  if (Focus() == Files()) Perform([&] { ChooseFromOpenList(entry); });
}

void ScriptPlayer::Split(bool columns, int by) const {
  const HWND parent = columns ? window_ : GetParent(Description());
  const HWND splitter = FindWindowExA(parent, nullptr, "SnipstoreSplitter", nullptr);
  const auto at = [&](int distance) {
    return columns ? MAKELPARAM(2 + distance, 2) : MAKELPARAM(2, 2 + distance);
  };
  PostMessageA(splitter, WM_LBUTTONDOWN, MK_LBUTTON, at(0));
  PostMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, at(by));
  PostMessageA(splitter, WM_LBUTTONUP, 0, at(0));
}

void ScriptPlayer::SizeTo(WPARAM command, bool (*done)(HWND)) {
  PostMessageA(window_, WM_SYSCOMMAND, command, 0);
  Need(Wait([&] { return done(window_); }), "the window cannot be minimised or maximised");
  PostMessageA(window_, WM_SYSCOMMAND, SC_RESTORE, 0);
  Need(Wait([&] { return !done(window_) && IsForeground(window_); }), "the window cannot be restored");
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
    if (Focus() == field) state += std::string(" ") + name;
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

ScriptPlayer::FileBytes ScriptPlayer::FilesNow() const {
  FileBytes files;
  for (const TemporaryFolder* folder : {&program_.folder(), &elsewhere_}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder->path())) {
      const std::string name = entry.path().filename().string();
      if (name.ends_with(".bns")) files[entry.path().string()] = folder->Read(name);
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
    const int from = number();
    return {from, number()};
  };
  const auto row = [&](int times) {
    const auto rows = static_cast<int>(Rows().size());
    const int wanted = rows == 0 ? -1 : number() % rows;
    // Not the row under the name box, and not into a double click.
    if (wanted < 0 || (IsShown(NameBox()) && (times > 1 || IsUnderNameBox(wanted)))) return;
    if (wanted == Selected() && times == 1 && Focus() == List()) return;
    Perform([&] { ClickRow(wanted, times); });
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
      {"row", [&] { row(1); }},
      {"rename", [&] { row(2); }},
      {"click", [&] { ClickInto(text() == "code" ? Code() : Description()); }},
      {"edit", [&] { ClickInto(Code(), 2); }},
      {"code", [&] { replace(Code()); }},
      {"erase", [&] { Replace(Code(), span(), ""); }},
      {"cut", [&] { TakeCode(span(), 'X'); }},
      {"paste", [&] { TakeCode(span(), 'V'); }},
      {"describe", [&] { replace(Description()); }},
      {"name", [&] { replace(NameBox()); }},
      {"filename", [&] { replace(FileNameBox()); }},
      {"key", [&] { PressKeys(text()); }},
      {"button",
       [&] {
         const std::string name = text();
         const bool ofEditor = name == "Commit" || name == "Syntax Highlighting";
         if (name == "New Snippet" && Rows().size() >= kMostRows) return;
         const AccessibleClient bar(Control(ofEditor ? frmAddIn::kEditBarId : frmAddIn::kMainBarId));
         // Refused while the button is grey: then nothing may happen.
         Perform([&] { static_cast<void>(bar.Press(name)); });
       }},
      {"menu", [&] { UseMenu(text()); }},
      {"right",
       [&] {
         const std::string place = text();
         Perform([&] {
           if (place == "row") ClickRow(number(), 1, MouseButton::Right);
           if (place == "space") ClickAt(List(), {30, 200}, 1, MouseButton::Right);
           if (place == "code") ClickAt(Code(), {60, 40}, 1, MouseButton::Right);
         });
       }},
      {"arrow", [&] { Perform([&] { ClickArrow(); }); }},
      {"attachment", [&] { Perform([&] { ClickCentre(Control(frmAddIn::kAttachId)); }); }},
      {"item",
       [&] {
         const HWND menu = FindVisibleOfClass("frmMenu");
         Perform([&] {
           ClickItem(WindowText(menu), text());
           Need(Wait([&] { return !IsShown(menu); }), "the menu stays open");
         });
       }},
      {"type", [&] { Perform([&] { TypeText(text()); }); }},
      {"other",
       [&] {
         Perform([&] {
           const TestFrame other;
           Need(Wait([&] { return IsForeground(other.get()); }), "no other window comes to the front");
           SetForegroundWindow(window_);
         });
       }},
      {"library", [&] { Choose(text()); }},
      {"new",
       [&] {
         libraryName_ = text();
         PressKeys("Ctrl+Shift+N");
       }},
      {"browse",
       [&] {
         const std::string name = text();
         chosenPath_ = name.empty() ? "" : elsewhere_.File(name + ".bns");
         Choose(kBrowseEntry);
       }},
      {"split",
       [&] {
         const bool columns = number() == 0;
         const int by = number() - 200;
         Perform([&] { Split(columns, by); });
       }},
      {"size",
       [&] {
         const int width = number();
         const int height = number();
         SetWindowPos(window_, nullptr, width / 8, height / 8, 450 + width, 300 + height, SWP_NOZORDER);
         AnswerDialogs();
       }},
      {"minimise", [&] { SizeTo(SC_MINIMIZE, [](HWND window) { return IsIconic(window) != 0; }); }},
      {"maximise", [&] { SizeTo(SC_MAXIMIZE, [](HWND window) { return IsZoomed(window) != 0; }); }},
      {"close", [&] { EndAndStart(false); }},
      {"kill", [&] { EndAndStart(true); }},
      {"drafted",
       [&] {
         const auto drafted = [&] {
           std::error_code gone;  // a folder may go while it is looked through
           std::filesystem::recursive_directory_iterator file(program_.folder().path(), gone);
           while (file != end(file) && file->path().filename() != "draft.bns") file.increment(gone);
           return file != end(file);
         };
         Need(WaitUntil(drafted), "no draft is written");
       }},
      {"history",
       [&] {
         PressKey('H', {VK_CONTROL, VK_SHIFT});
         const auto list = [] {
           return GetDlgItem(FindVisibleOfClass("frmHistory"), frmHistory::kVersionsId);
         };
         Need(Wait([&] { return Focus() == list() && !RowsOf(list()).empty(); }), "no history comes up");
         PressKey(VK_HOME);
         for (int below = number(); below > 0; --below) PressKey(VK_DOWN);
         look_ = [window = GetParent(list())] {
           std::string shown = WindowText(window);
           for (int id = frmHistory::kVersionsId; id <= frmHistory::kLinesId; ++id)
             shown += " | " + testing::PrintToString(RowsOf(GetDlgItem(window, id)));
           return WithoutTimes(shown);
         };
       }},
      {"press",
       [&] {
         const std::string caption = text();
         const HWND history = FindVisibleOfClass("frmHistory");
         const HWND window = history != nullptr ? history : FindVisibleOfClass("Notice");
         const HWND button = FindWindowExA(window, nullptr, "BUTTON", caption.c_str());
         Need(button != nullptr, "there is no button " + caption);
         ClickCentre(button);
         if (history != nullptr) PressKey(VK_ESCAPE);
         AnswerDialogs();
       }},
      {"clipboard",
       [&] {
         look_ = [] {
           const std::string copied = InOneLine(ClipboardNow());
           return copied.empty() ? "nothing" : copied;
         };
       }},
      {"libraries", [&] { look_ = [this] { return testing::PrintToString(Libraries()); }; }},
      {"saved",
       [&] {
         look_ = [this, name = text()] {
           return program_.folder().Has(name + ".bns") ? Contents(File(name)) : "none";
         };
       }},
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
