#include "tests/soak/SoakHands.h"

#include <psapi.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <stdexcept>

#include "platform/Clipboard.h"
#include "ui/main/MainWindowKeys.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr DWORD kPatienceMs = 15000;
constexpr int kTypedFieldId = 100;
constexpr const char* kNewLibraryTitle = "New Code Library";

/// As often as the program can answer.
bool Wait(const std::function<bool()>& condition, DWORD milliseconds = kPatienceMs) {
  constexpr int eagerTries = 20;
  const DWORD start = GetTickCount();
  for (int tries = 0; GetTickCount() - start < milliseconds; ++tries) {
    if (condition()) return true;
    Sleep(tries < eagerTries ? 0 : 1);
  }
  return condition();
}

[[noreturn]] void Differ(const std::string& what) {
  throw std::runtime_error(what);
}

struct Search {
  const char* className;
  HWND found;
};

BOOL CALLBACK TakeVisible(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  char name[64]{};
  GetClassNameA(window, name, sizeof name);
  if (IsWindowVisible(window) == 0 || std::string(name) != search.className) return TRUE;
  search.found = window;
  return FALSE;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '\r') {
      quoted += "\\r";
    } else if (c == '\n') {
      quoted += "\\n";
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string Quoted(const std::vector<std::string>& texts) {
  std::string quoted;
  for (const std::string& text : texts) quoted += Quoted(text) + " ";
  return quoted;
}

std::string Quoted(const std::optional<std::string>& text) {
  return text ? Quoted(*text) : "hidden";
}

std::string Quoted(int number) {
  return std::to_string(number);
}

std::string Difference(const Shown& wanted, const Shown& seen) {
  std::string text;
  const auto compare = [&](const char* name, const auto& expected, const auto& actual) {
    if (expected != actual)
      text += std::string(name) + " " + Quoted(actual) + ", not " + Quoted(expected) + "\n";
  };
  compare("rows", wanted.rows, seen.rows);
  compare("selected row", wanted.row, seen.row);
  compare("code", wanted.code, seen.code);
  compare("description", wanted.description, seen.description);
  compare("code locked", static_cast<int>(wanted.locked), static_cast<int>(seen.locked));
  compare("libraries", wanted.entries, seen.entries);
  compare("selected library", wanted.entry, seen.entry);
  compare("name box", wanted.nameBox, seen.nameBox);
  compare("library name box", wanted.fileNameBox, seen.fileNameBox);
  compare("focus", static_cast<int>(wanted.focus), static_cast<int>(seen.focus));
  compare("on top", static_cast<int>(wanted.onTop), static_cast<int>(seen.onTop));
  return text;
}

bool CanBeTyped(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return c == ' ' ||
           (static_cast<unsigned char>(c) < 0x80 && std::isalpha(static_cast<unsigned char>(c)) != 0);
  });
}

/// For systems where GetProcessHandleCount answers 0, as Wine's does: counts among all handles there are.
DWORD HandlesOf(DWORD process) {
  struct Entry {
    ULONG process;
    BYTE type;
    BYTE flags;
    USHORT handle;
    void* object;
    ULONG access;
  };
  constexpr int systemHandles = 16;
  constexpr ULONG room = ULONG{1} << 22U;
  using Query = LONG(WINAPI*)(int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
  std::vector<char> buffer(room);
  ULONG size = 0;
  if (query == nullptr || query(systemHandles, buffer.data(), room, &size) != 0) return 0;
  ULONG count = 0;
  std::memcpy(&count, buffer.data(), sizeof count);
  DWORD own = 0;
  for (ULONG i = 0; i < count; ++i) {
    Entry entry{};
    std::memcpy(&entry, buffer.data() + alignof(Entry) + i * sizeof entry, sizeof entry);
    if (entry.process == process) ++own;
  }
  return own;
}

}  // namespace

ProcessUse UseOf(DWORD id) {
  const UniqueFile process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
  ProcessUse use;
  PROCESS_MEMORY_COUNTERS_EX memory{};
  memory.cb = sizeof memory;
  GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
  GetProcessHandleCount(process.get(), &use.handles);
  if (use.handles == 0) use.handles = HandlesOf(id);
  use.gdiObjects = GetGuiResources(process.get(), GR_GDIOBJECTS);
  use.userObjects = GetGuiResources(process.get(), GR_USEROBJECTS);
  use.workingSet = memory.WorkingSetSize;
  use.privateBytes = memory.PagefileUsage;
  return use;
}

SoakHands::SoakHands() {
  for (const auto& [name, bytes] : SoakModel::FirstFiles()) program_.folder().Write(name + ".bns", bytes);
  program_.MarkAsRunBefore();
}

// --- The program and its windows --------------------------------------------------------------------------

LRESULT SoakHands::Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
  DWORD_PTR result = 0;
  const bool inUnicode = message == LB_GETTEXT || message == CB_GETLBTEXT;
  const auto send = inUnicode ? &SendMessageTimeoutW : &SendMessageTimeoutA;
  if (send(window, message, wParam, lParam, SMTO_NORMAL, kPatienceMs, &result) == 0) {
    Differ(program_.Running() ? "the program does not answer" : "the program has ended");
  }
  return static_cast<LRESULT>(result);
}

void SoakHands::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
  if (PostMessageA(window, message, wParam, lParam) == 0) Differ("a window is gone");
}

std::string SoakHands::TextOf(HWND window) const {
  std::string text(static_cast<std::size_t>(Ask(window, WM_GETTEXTLENGTH)) + 1, '\0');
  const LRESULT length = Ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

HWND SoakHands::WindowOf(Field field) const {
  const HWND window = fields_.at(field);
  return field == Field::Code ? GetDlgItem(window, BnRichEdit::kControlId) : window;
}

HWND SoakHands::VisibleWindow(const char* className) const {
  Search search{className, nullptr};
  EnumThreadWindows(thread_, &TakeVisible, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool SoakHands::TakeForeground() const {
  if (!IsForeground(window_)) SetForegroundWindow(window_);
  return Wait([this] { return IsForeground(window_); }, 1000);
}

void SoakHands::Start() {
  program_.Start();
  const bool up = Wait([this] {
    window_ = FindWindowA("frmAddIn", nullptr);
    DWORD process = 0;
    thread_ = GetWindowThreadProcessId(window_, &process);
    // The last of the controls to be made.
    return process == program_.Id() && FindControl(window_, frmAddIn::kEditBarId) != nullptr;
  });
  if (!up) Differ("the main window did not come up");
  fields_ = {{Field::List, FindControl(window_, frmAddIn::kListId)},
             {Field::Code, FindControl(window_, frmAddIn::kCodeId)},
             {Field::Description, FindControl(window_, frmAddIn::kDescriptionId)},
             {Field::Name, FindControl(window_, frmAddIn::kNameId)},
             {Field::FileName, FindControl(window_, frmAddIn::kFileNameId)},
             {Field::Chooser, FindControl(window_, frmAddIn::kFilesId)}};
  token_ = 0;
}

/// Posted messages are handled in their order: when the last one shows its effect, those before it have had
/// theirs. A message handled may post another, which may post a third.
void SoakHands::Settle() {
  constexpr int rounds = 2;
  const HWND list = fields_.at(Field::List);
  for (int round = 0; round < rounds; ++round) {
    Post(list, LB_SETHORIZONTALEXTENT, ++token_);
    const bool answered =
        Wait([&] { return static_cast<WPARAM>(Ask(list, LB_GETHORIZONTALEXTENT)) == token_; });
    if (!answered) Differ("the program does not handle its messages");
  }
}

/// Real input comes after what is posted, but before what is to be painted.
void SoakHands::WaitForInput() const {
  const HWND list = fields_.at(Field::List);
  InvalidateRect(list, nullptr, FALSE);
  if (!Wait([&] { return GetUpdateRect(list, nullptr, FALSE) == 0; })) Differ("the program does not paint");
}

// --- Gestures ---------------------------------------------------------------------------------------------

void SoakHands::Perform(const Gesture& gesture) {
  if (trace_) {
    trace_("  gesture " + std::to_string(static_cast<int>(gesture.kind)) + " field " +
           std::to_string(static_cast<int>(gesture.field)) + " " + std::to_string(gesture.a) + " " +
           std::to_string(gesture.b) + " " + Quoted(gesture.text) + " dialogs " +
           std::to_string(gesture.dialogs.size()));
  }
  ++gestures_;
  Do(gesture);
  lastDialog_ = nullptr;
  for (const ExpectedDialog& dialog : gesture.dialogs) Answer(dialog);
  if (!gesture.ends) {
    if (gesture.real) WaitForInput();
    Settle();
    Compare();
    return;
  }
  if (!program_.WaitForEnd()) Differ("the program does not end");
  if (gesture.kind == GestureKind::Close && program_.ExitCode() != 0)
    Differ("the program ended with an error");
  bars_.clear();
  if (const std::string difference = FilesDifference(); !difference.empty()) Differ(difference);
}

void SoakHands::Do(const Gesture& gesture) {
  const HWND field = gesture.field == Field::None ? nullptr : WindowOf(gesture.field);
  constexpr LPARAM place = MAKELPARAM(3, 3);
  const auto select = [&] {
    Ask(field, EM_SETSEL, static_cast<WPARAM>(gesture.a), static_cast<LPARAM>(gesture.b));
  };
  switch (gesture.kind) {
    case GestureKind::Command:
      return GiveCommand(gesture);
    case GestureKind::SelectRow:
    case GestureKind::SelectEntry: {
      static_assert(LBN_SELCHANGE == CBN_SELCHANGE);
      const bool row = gesture.kind == GestureKind::SelectRow;
      const HWND control = WindowOf(row ? Field::List : Field::Chooser);
      Ask(control, row ? LB_SETCURSEL : CB_SETCURSEL, static_cast<WPARAM>(gesture.a));
      return Post(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), LBN_SELCHANGE),
                  reinterpret_cast<LPARAM>(control));
    }
    case GestureKind::ClickRow:
      return ClickRow(gesture);
    case GestureKind::Key:
      if (gesture.real && TakeForeground()) return PressKey(static_cast<WORD>(gesture.a));
      Post(field, WM_KEYDOWN, static_cast<WPARAM>(gesture.a), 1);
      return Post(field, WM_KEYUP, static_cast<WPARAM>(gesture.a), 1);
    case GestureKind::Click:
      Post(field, WM_LBUTTONDOWN, MK_LBUTTON, place);
      return Post(field, WM_LBUTTONUP, 0, place);
    case GestureKind::DoubleClick:
      Post(field, WM_LBUTTONDBLCLK, MK_LBUTTON, place);
      return Post(field, WM_LBUTTONUP, 0, place);
    case GestureKind::Type:
      select();
      return Type(gesture);
    case GestureKind::Erase:
      select();
      return Post(field, WM_KEYDOWN, VK_DELETE, 1);
    case GestureKind::Cut:
      select();
      return Post(field, WM_CUT);
    case GestureKind::Paste:
      select();
      return Post(field, WM_PASTE);
    case GestureKind::CheckClipboard:
      if (const std::string text = ClipboardText(nullptr); text != gesture.text) {
        Differ("clipboard " + Quoted(text) + ", not " + Quoted(gesture.text));
      }
      return;
    case GestureKind::DragSplitter:
      return Drag(gesture);
    case GestureKind::Resize: {
      constexpr int leastWidth = 400;
      constexpr int leastHeight = 300;
      SetWindowPos(window_, nullptr, gesture.a / 8, gesture.b / 8, leastWidth + gesture.a,
                   leastHeight + gesture.b, SWP_NOZORDER | SWP_NOACTIVATE);
      return;
    }
    case GestureKind::Minimise:
      return Size(false);
    case GestureKind::Maximise:
      return Size(true);
    case GestureKind::Menu:
      return UseMenu(gesture);
    case GestureKind::Close:
      if (gesture.a == 0) return Post(window_, WM_CLOSE);
      return Post(window_, WM_SYSCOMMAND, SC_CLOSE);
    case GestureKind::Kill:
      return program_.Kill();
    case GestureKind::Start:
      return Start();
  }
}

void SoakHands::GiveCommand(const Gesture& gesture) {
  const int command = gesture.a;
  if (gesture.real && TakeForeground() && PressKeysOf(command)) return;
  const bool ofBar = command >= Command::kMainButton && command < Command::kRenameSnippet;
  if (ofBar && gesture.b == 1) {
    const bool main = command < Command::kEditButton;
    const int id = main ? frmAddIn::kMainBarId : frmAddIn::kEditBarId;
    auto& bar = bars_[id];
    if (!bar) bar = std::make_unique<AccessibleClient>(FindControl(window_, id));
    const int index = command - (main ? Command::kMainButton : Command::kEditButton);
    // Refused while the button is grey: then nothing may happen, and that is looked at.
    (*bar)->accDoDefaultAction(Variant(static_cast<LONG>(index + 1)).get());
    return;
  }
  constexpr WORD fromKey = 1;
  Post(window_, WM_COMMAND, MAKEWPARAM(command, fromKey));
}

bool SoakHands::PressKeysOf(int command) {
  struct Keys {
    int base;
    int button;
    WORD held;
    WORD key;
  };
  constexpr std::array keys{
      Keys{Command::kMainButton, MainButton::kSaveLibrary, VK_CONTROL, 'S'},
      Keys{Command::kMainButton, MainButton::kNewSnippet, VK_CONTROL, 'N'},
      Keys{Command::kMainButton, MainButton::kEditSnippet, VK_CONTROL, 'E'},
      Keys{Command::kMainButton, MainButton::kDeleteSnippet, VK_CONTROL, 'D'},
      Keys{Command::kMainButton, MainButton::kRenameLibrary, VK_SHIFT, VK_F2},
      Keys{Command::kEditButton, EditButton::kCommit, VK_CONTROL, 'K'},
  };
  for (const Keys& known : keys) {
    if (known.base + known.button != command) continue;
    PressKey(known.key, {known.held});
    return true;
  }
  return false;
}

void SoakHands::Type(const Gesture& gesture) {
  const HWND field = WindowOf(gesture.field);
  if (gesture.text.empty()) return Post(field, WM_KEYDOWN, VK_DELETE, 1);
  if (gesture.real && CanBeTyped(gesture.text) && TakeForeground()) return TypeText(gesture.text);
  for (const char c : gesture.text) {
    if (c == '\n') {
      Post(field, WM_KEYDOWN, VK_RETURN, 1);
      Settle();
    } else {
      Ask(field, WM_CHAR, static_cast<unsigned char>(c), 1);
    }
  }
}

void SoakHands::ClickRow(const Gesture& gesture) {
  const HWND list = WindowOf(Field::List);
  const auto row = static_cast<WPARAM>(gesture.a);
  RECT place{};
  RECT client{};
  GetClientRect(list, &client);
  const auto find = [&] { Ask(list, LB_GETITEMRECT, row, reinterpret_cast<LPARAM>(&place)); };
  find();
  if (place.top < client.top || place.bottom > client.bottom) {
    Ask(list, LB_SETTOPINDEX, row);
    find();
  }
  // Two clicks at one place, soon after each other, would be a double click.
  if (gesture.real) clicksFurtherRight_ = !clicksFurtherRight_;
  POINT point{clicksFurtherRight_ ? 5 + 2 * GetSystemMetrics(SM_CXDOUBLECLK) : 5, place.top + 5};
  POINT screen = point;
  ClientToScreen(list, &screen);
  if (gesture.real && TakeForeground() && WindowFromPoint(screen) == list) return ClickAt(list, point);
  Post(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(point.x, point.y));
  Post(list, WM_LBUTTONUP, 0, MAKELPARAM(point.x, point.y));
}

void SoakHands::Drag(const Gesture& gesture) const {
  const bool columns = gesture.a == 0;
  const HWND parent = columns ? window_ : GetParent(WindowOf(Field::Description));
  const HWND splitter = FindWindowExA(parent, nullptr, "SnipstoreSplitter", nullptr);
  const auto at = [&](int distance) {
    return columns ? MAKELPARAM(2 + distance, 2) : MAKELPARAM(2, 2 + distance);
  };
  Post(splitter, WM_LBUTTONDOWN, MK_LBUTTON, at(0));
  Post(splitter, WM_MOUSEMOVE, MK_LBUTTON, at(gesture.b));
  Post(splitter, WM_LBUTTONUP, 0, at(0));
}

void SoakHands::Size(bool maximises) const {
  const auto done = [&] { return (maximises ? IsZoomed(window_) : IsIconic(window_)) != 0; };
  Post(window_, WM_SYSCOMMAND, maximises ? SC_MAXIMIZE : SC_MINIMIZE);
  if (!Wait(done)) Differ("the window cannot be minimised or maximised");
  Post(window_, WM_SYSCOMMAND, SC_RESTORE);
  if (!Wait([&] { return !done(); })) Differ("the window cannot be restored");
}

void SoakHands::UseMenu(const Gesture& gesture) {
  if (gesture.a == 0) {
    Post(window_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(WindowOf(Field::List)), -1);
  } else {
    Post(window_, WM_COMMAND, static_cast<WPARAM>(gesture.a));
  }
  HWND menu = nullptr;
  if (!Wait([&] { return (menu = VisibleWindow("frmMenu")) != nullptr; })) Differ("no menu came up");
  // While it unfolds nothing else is handled. One Escape only: another would reach the field that has the
  // focus.
  Settle();
  if (gesture.text.empty()) {
    Post(window_, WM_KEYDOWN, VK_ESCAPE, 1);
  } else if (!AccessibleClient(menu).Press(gesture.text)) {
    Differ("the menu does not offer " + gesture.text);
  }
  const bool gone = Wait([&] { return VisibleWindow("frmMenu") == nullptr; });
  if (!gone) Differ("the menu stays open");
}

// --- Dialogs and comparing --------------------------------------------------------------------------------

void SoakHands::Answer(const ExpectedDialog& expected) {
  HWND dialog = nullptr;
  const bool came = Wait([&] {
    dialog = VisibleWindow("#32770");
    return dialog != nullptr && dialog != lastDialog_;
  });
  if (!came) Differ("this did not come: " + expected.text);
  lastDialog_ = dialog;
  const HWND field = GetDlgItem(dialog, kTypedFieldId);
  std::string text = TextOf(dialog);
  if (text != kNewLibraryTitle && field != nullptr) text = TextOf(field);
  if (text != expected.text) Differ("the dialog says " + Quoted(text) + ", not " + Quoted(expected.text));
  if (expected.types) {
    Ask(field, EM_SETSEL, 0, -1);
    for (const char c : expected.typed) Ask(field, WM_CHAR, static_cast<unsigned char>(c), 1);
  }
  Post(GetDlgItem(dialog, expected.answer), BM_CLICK);
  if (!Wait([&] { return IsWindow(dialog) == 0; })) Differ("this stays: " + expected.text);
}

Shown SoakHands::Look(bool thorough) const {
  Shown seen;
  const auto texts = [this](HWND control, UINT count, UINT length, UINT get) {
    std::vector<std::string> found;
    const LRESULT number = Ask(control, count);
    for (LRESULT i = 0; i < number; ++i) {
      const auto place = static_cast<WPARAM>(i);
      const auto size = static_cast<std::size_t>(std::max<LRESULT>(Ask(control, length, place), 0));
      // Between processes Wine hands over Unicode, whatever is asked for.
      std::wstring wide(size + 1, L'\0');
      Ask(control, get, place, reinterpret_cast<LPARAM>(wide.data()));
      std::string text(size, '\0');
      WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(size), text.data(), static_cast<int>(size),
                          nullptr, nullptr);
      found.push_back(text);
    }
    return found;
  };
  const auto box = [this](Field field) {
    const HWND window = WindowOf(field);
    return IsWindowVisible(window) != 0 ? std::optional(TextOf(window)) : std::nullopt;
  };
  const HWND list = WindowOf(Field::List);
  const HWND chooser = WindowOf(Field::Chooser);
  const HWND code = WindowOf(Field::Code);
  // Each text is two questions to another process: what should be as it was is looked at now and then.
  const Shown& wanted = model_->shown();
  seen.rows = thorough || wanted.rows != lastSeen_.rows ? texts(list, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT)
                                                        : lastSeen_.rows;
  seen.row = static_cast<int>(Ask(list, LB_GETCURSEL));
  seen.code = TextOf(code);
  seen.description = TextOf(WindowOf(Field::Description));
  seen.locked = (GetWindowLongA(code, GWL_STYLE) & ES_READONLY) != 0;
  seen.entries = thorough || wanted.entries != lastSeen_.entries
                     ? texts(chooser, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT)
                     : lastSeen_.entries;
  seen.entry = static_cast<int>(Ask(chooser, CB_GETCURSEL));
  seen.nameBox = box(Field::Name);
  seen.fileNameBox = box(Field::FileName);
  GUITHREADINFO gui{};
  gui.cbSize = sizeof gui;
  GetGUIThreadInfo(thread_, &gui);
  seen.focus = Field::None;
  for (const auto& [field, window] : fields_) {
    if (WindowOf(field) == gui.hwndFocus) seen.focus = field;
  }
  seen.onTop = (GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  return seen;
}

std::vector<std::string> SoakHands::Listing() {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry{};
  const UniqueFind search(FindFirstFileA(program_.folder().File("*.bns").c_str(), &entry));
  if (!search) return names;
  do {
    const std::string file = entry.cFileName;
    names.push_back(file.substr(0, file.size() - 4));
  } while (FindNextFileA(search.get(), &entry) != 0);
  return names;
}

std::string SoakHands::FilesDifference() const {
  for (const auto& [name, bytes] : model_->files()) {
    const std::string found = program_.folder().Read(name + ".bns");
    if (found != bytes)
      return "the file " + name + " holds " + Quoted(found) + ", not " + Quoted(bytes) + "\n";
  }
  return {};
}

void SoakHands::Compare() {
  constexpr int everythingEvery = 16;
  constexpr DWORD patience = 3000;
  const bool thorough = gestures_ % everythingEvery == 0;
  const bool withFiles = comparedFiles_ != model_->files() || thorough;
  std::string difference;
  const auto agrees = [&] {
    difference.clear();
    if (const HWND dialog = VisibleWindow("#32770"); dialog != nullptr) {
      const HWND label = GetDlgItem(dialog, kTypedFieldId);
      difference = "an unexpected dialog: " + Quoted(TextOf(label != nullptr ? label : dialog)) + "\n";
    } else if (IsWindowVisible(window_) == 0 || IsWindowEnabled(window_) == 0) {
      difference = "the window takes no input\n";
    }
    lastSeen_ = Look(thorough);
    difference += Difference(model_->shown(), lastSeen_);
    if (withFiles && difference.empty()) difference = FilesDifference();
    return difference.empty();
  };
  if (!Wait(agrees, patience)) Differ(difference);
  if (!withFiles) return;
  if (Listing().size() != model_->files().size()) Differ("another number of libraries: " + Quoted(Listing()));
  comparedFiles_ = model_->files();
}

}  // namespace snip::test
