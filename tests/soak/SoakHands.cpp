#include "tests/soak/SoakHands.h"

#include <algorithm>
#include <stdexcept>

#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kTypedFieldId = 100;
constexpr int kPatienceMs = 15000;

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

void Need(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

bool CanBeTyped(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c == '\n' || VkKeyScanA(c) != -1; });
}

template <class Value>
void Tell(std::string& difference, const char* name, const Value& wanted, const Value& seen) {
  if (wanted == seen) return;
  difference += std::string(name) + ": " + testing::PrintToString(seen) + ", not " +
                testing::PrintToString(wanted) + "\n";
}

}  // namespace

HWND SoakHands::WindowOf(Field field) const {
  switch (field) {
    case Field::List:
      return List();
    case Field::Code:
      return Code();
    case Field::Description:
      return Description();
    case Field::Name:
      return NameBox();
    case Field::FileName:
      return FileNameBox();
    case Field::Chooser:
      return Files();
    default:
      return nullptr;
  }
}

void SoakHands::Start(const std::vector<ExpectedDialog>& dialogs) {
  program_.Start();
  const bool up = Wait([this] {
    window_ = FindWindowA("frmAddIn", nullptr);
    // The last of the controls to be made.
    return window_ != nullptr && Control(frmAddIn::kEditBarId) != nullptr;
  });
  Need(up, "the main window does not come up");
  token_ = 0;
  Act([] {}, dialogs);
  Need(Wait([this] { return IsForeground(window_); }), "the main window does not come to the front");
}

void SoakHands::Act(const std::function<void()>& gesture, const std::vector<ExpectedDialog>& dialogs) {
  if (!dialogs.empty()) Settle();
  gesture();
  lastDialog_ = nullptr;
  for (const ExpectedDialog& dialog : dialogs) Answer(dialog);
}

void SoakHands::WaitForEnd() {
  Need(program_.WaitForEnd(), "the program does not end");
}

/// Real input comes after what is posted, but before what is to be painted. Posted messages are handled in
/// their order; one may post another, which may post a third.
void SoakHands::Settle() {
  constexpr int rounds = 2;
  const HWND list = List();
  InvalidateRect(list, nullptr, FALSE);
  Need(Wait([&] { return GetUpdateRect(list, nullptr, FALSE) == 0; }), "the program does not paint");
  for (int round = 0; round < rounds; ++round) {
    PostMessageA(list, LB_SETHORIZONTALEXTENT, ++token_, 0);
    const auto handled = [&] {
      return static_cast<WPARAM>(SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0)) == token_;
    };
    Need(Wait(handled),
         program_.Running() ? "the program does not handle its messages" : "the program has ended");
  }
}

void SoakHands::Click(Field field, int times) {
  const HWND window = WindowOf(field);
  const POINT place = Aside({5, 5});
  const Size size = ClientSize(window);
  if (place.x < size.width && place.y < size.height) return ClickAt(window, place, times);
  // A pane that is too small for the pointer.
  PostMessageA(window, times == 1 ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
  PostMessageA(window, WM_LBUTTONUP, 0, 0);
}

void SoakHands::Select(Field field, int from, int to) const {
  SendMessageA(WindowOf(field), EM_SETSEL, static_cast<WPARAM>(from), to);
}

void SoakHands::Replace(Field field, int from, int to, const std::string& text) {
  Select(field, from, to);
  if (text.empty()) PressKey(VK_DELETE);
  const bool typed = CanBeTyped(text);
  for (const char c : text) {
    if (!typed) {
      SendMessageA(WindowOf(field), WM_CHAR, static_cast<unsigned char>(c), 1);
    } else if (c == '\n') {
      // Not by the keyboard, where a Shift of the keys around it would count for it.
      Settle();
      PostMessageA(WindowOf(field), WM_KEYDOWN, VK_RETURN, 1);
      Settle();
    } else {
      TypeText(std::string(1, c));
    }
  }
}

void SoakHands::PressButton(int bar, const std::string& name) const {
  // Refused while the button is grey: then nothing may happen, and that is looked at.
  static_cast<void>(AccessibleClient(Control(bar)).Press(name));
}

void SoakHands::UseMenu(const std::string& item) {
  PostMessageA(window_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List()), -1);
  const HWND menu = Menu("Snippets");
  Need(menu != nullptr, "no menu comes up");
  // While it unfolds nothing else is handled.
  Settle();
  if (item.empty()) {
    PressKey(VK_ESCAPE);
  } else {
    Need(AccessibleClient(menu).Press(item), "the menu does not offer " + item);
  }
  Need(Wait([&] { return IsWindow(menu) == 0; }), "the menu stays open");
}

void SoakHands::Split(bool columns, int by) const {
  const HWND parent = columns ? window_ : GetParent(Description());
  const HWND splitter = FindWindowExA(parent, nullptr, "SnipstoreSplitter", nullptr);
  const auto at = [&](int distance) {
    return columns ? MAKELPARAM(2 + distance, 2) : MAKELPARAM(2, 2 + distance);
  };
  PostMessageA(splitter, WM_LBUTTONDOWN, MK_LBUTTON, at(0));
  PostMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, at(by));
  PostMessageA(splitter, WM_LBUTTONUP, 0, at(0));
}

void SoakHands::SizeTo(bool maximises) const {
  const auto done = [&] { return (maximises ? IsZoomed(window_) : IsIconic(window_)) != 0; };
  PostMessageA(window_, WM_SYSCOMMAND, maximises ? SC_MAXIMIZE : SC_MINIMIZE, 0);
  Need(Wait(done), "the window cannot be minimised or maximised");
  PostMessageA(window_, WM_SYSCOMMAND, SC_RESTORE, 0);
  Need(Wait([&] { return !done() && IsForeground(window_); }), "the window cannot be restored");
}

void SoakHands::Answer(const ExpectedDialog& expected) {
  if (expected.typed && expected.text == "Open Snippet File")
    return ChooseFile(expected.text, *expected.typed);
  HWND dialog = nullptr;
  const bool came = Wait([&] {
    dialog = FindVisibleOfClass("#32770");
    return dialog != nullptr && dialog != lastDialog_ && IsForeground(dialog);
  });
  Need(came, "this does not come: " + expected.text);
  lastDialog_ = dialog;
  const HWND field = GetDlgItem(dialog, kTypedFieldId);
  const std::string title = WindowText(dialog);
  const std::string text = title == expected.text || field == nullptr ? title : WindowText(field);
  Need(text == expected.text, "the dialog says \"" + text + "\", not \"" + expected.text + "\"");
  if (expected.typed) {
    SendMessageA(field, EM_SETSEL, 0, -1);
    for (const char c : *expected.typed) SendMessageA(field, WM_CHAR, static_cast<unsigned char>(c), 1);
  }
  PostMessageA(GetDlgItem(dialog, expected.answer), BM_CLICK, 0, 0);
  Need(Wait([&] { return IsWindow(dialog) == 0; }), "this stays: " + expected.text);
}

Names SoakHands::FilesIn(const std::string& folder) const {
  Names names;
  WIN32_FIND_DATAA entry{};
  const UniqueFind search(FindFirstFileA((folder + "\\*.bns").c_str(), &entry));
  if (!search) return names;
  do {
    names.emplace_back(entry.cFileName);
  } while (FindNextFileA(search.get(), &entry) != 0);
  return names;
}

std::string SoakHands::Difference(const Shown& wanted) const {
  const auto box = [](HWND window) {
    return IsWindowVisible(window) != 0 ? std::optional(WindowText(window)) : std::nullopt;
  };
  std::string difference;
  Tell(difference, "rows", wanted.rows, Rows());
  Tell(difference, "selected row", wanted.row, Selected());
  Tell(difference, "code", wanted.code, WindowText(Code()));
  Tell(difference, "description", wanted.description, WindowText(Description()));
  Tell(difference, "code locked", wanted.locked, CodeLocked());
  Tell(difference, "libraries", wanted.libraries, Libraries());
  Tell(difference, "selected library", wanted.library,
       static_cast<int>(SendMessageA(Files(), CB_GETCURSEL, 0, 0)));
  Tell(difference, "name box", wanted.nameBox, box(NameBox()));
  Tell(difference, "library name box", wanted.fileNameBox, box(FileNameBox()));
  if (Focus() != WindowOf(wanted.focus)) difference += "the focus is in " + ClassOf(Focus()) + "\n";
  const AccessibleChild save =
      AccessibleClient(Control(frmAddIn::kMainBarId)).Child(MainButton::kSaveLibrary + 1);
  Tell(difference, "disabled", wanted.disabled, save.Has(STATE_SYSTEM_UNAVAILABLE));
  Tell(difference, "on top", wanted.onTop, (GetWindowLongA(window_, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0);
  return difference;
}

void SoakHands::Compare(const Shown& wanted) {
  constexpr DWORD patience = 3000;
  if (program_.Running()) {
    Settle();
    std::string difference;
    const auto agrees = [&] {
      const HWND dialog = FindVisibleOfClass("#32770");
      const HWND label = dialog == nullptr ? nullptr : GetDlgItem(dialog, kTypedFieldId);
      difference =
          dialog == nullptr ? "" : "an unexpected dialog: " + WindowText(label != nullptr ? label : dialog);
      if (dialog == nullptr && (IsWindowVisible(window_) == 0 || IsWindowEnabled(window_) == 0)) {
        difference = "the window takes no input\n";
      }
      difference += Difference(wanted);
      return difference.empty();
    };
    if (!Wait(agrees, patience)) throw std::runtime_error(difference);
  }
  std::string difference;
  for (const auto& [path, bytes] : wanted.files) {
    const std::size_t name = path.rfind('\\') + 1;
    const auto& folder = path.starts_with(elsewhere()) ? elsewhere_ : program_.folder();
    Tell(difference, path.c_str(), bytes, folder.Read(path.substr(name)));
  }
  const std::size_t files = FilesIn(program_.folder().path()).size() + FilesIn(elsewhere()).size();
  Tell(difference, "number of libraries", wanted.files.size(), files);
  if (!difference.empty()) throw std::runtime_error(difference);
}

}  // namespace snip::test
