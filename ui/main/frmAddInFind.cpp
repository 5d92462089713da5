// What the palette asks of the main window.
#include <algorithm>
#include <utility>

#include "platform/Win32Text.h"
#include "ui/main/frmAddIn.h"

namespace snip {
namespace {

/// What is selected in an edit control, if it is part of one line.
std::string SelectedText(HWND field) {
  char className[32]{};
  GetClassNameA(field, className, static_cast<int>(sizeof className));
  if (lstrcmpiA(className, "EDIT") != 0) return {};
  DWORD start = 0;
  DWORD end = 0;
  SendMessageA(field, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const std::u16string text = Utf16FromAnsi(WindowText(field));
  return start < text.size() ? AnsiFromUtf16(text.substr(start, end - start)) : std::string();
}

constexpr int kHotKeyId = 1;
constexpr const char* kKeySetting = "FindKey";

/// False when another program has the key.
bool Register(HWND window, HotKey key) {
  const UINT held = ((key.held & HotKey::kShift) != 0 ? MOD_SHIFT : 0U) |
                    ((key.held & HotKey::kControl) != 0 ? MOD_CONTROL : 0U) |
                    ((key.held & HotKey::kAlt) != 0 ? MOD_ALT : 0U);
  return key.empty() || RegisterHotKey(window, kHotKeyId, held, key.key) != 0;
}

}  // namespace

/// The system lets go of the key with the window.
void frmAddIn::LoadSystemKey() {
  const HotKey key = HotKey::FromText(services_.settings.LoadMore(kKeySetting));
  systemKey_ = Register(hWnd(), key) ? key : HotKey{};
}

std::string frmAddIn::UseSystemKey(HotKey key) {
  if (!systemKey_.empty()) UnregisterHotKey(hWnd(), kHotKeyId);
  if (!Register(hWnd(), key)) {
    Register(hWnd(), systemKey_);
    return "Another program has this key already.";
  }
  systemKey_ = key;
  services_.settings.SaveMore(kKeySetting, key.empty() ? "" : key.Text());
  return {};
}

void frmAddIn::FindOverOthers() {
  const HWND front = GetForegroundWindow();
  DWORD process = 0;
  GetWindowThreadProcessId(front, &process);
  if (process == GetCurrentProcessId() && IsWindowEnabled(hWnd()) == 0) return;  // a dialog comes first
  overWindow_ = process == GetCurrentProcessId() ? nullptr : front;
  find_.ShowMe(hWnd(), "", false);
}

void frmAddIn::Find() {
  overWindow_ = nullptr;
  const BnRichEdit& code = controls_.txtCode();
  const bool inCode = code.HasFocus();
  std::string text = inCode ? code.SelText().value_or("") : SelectedText(GetFocus());
  if (text.find_first_of("\r\n") != std::string::npos) text.clear();
  tTip_.Hide();
  find_.ShowMe(hWnd(), text, inCode && editing_.Shown() != nullptr);
}

void frmAddIn::FindNext(bool forward) {
  if (!find_.GoOn(forward)) Find();
}

std::optional<FindTarget::Open> frmAddIn::OpenLibrary() {
  if (!editing_.ListsSnippets()) return std::nullopt;
  editing_.StoreShownCode();
  return Open{{library_.LibraryName, operations_.OpenPath()}, &library_.Snippets};
}

std::optional<std::string> frmAddIn::ShownCode() {
  return editing_.Shown() != nullptr ? controls_.Code() : std::nullopt;
}

bool frmAddIn::GoTo(const FindDestination& destination) {
  if (hWnd() == nullptr) return false;
  ShowInFront();
  if (!operations_.Choose(destination.library.path) || hWnd() == nullptr || !editing_.ListsSnippets())
    return false;
  const auto& snippets = library_.Snippets;
  auto at = destination.snippet;
  if (at >= snippets.size() || snippets[at].Name != destination.name) {
    at = static_cast<std::size_t>(std::ranges::find(snippets, destination.name, &Snippet::Name) -
                                  snippets.begin());
  }
  if (at == snippets.size()) return false;
  if (const int row = static_cast<int>(at); row != editing_.shownIndex()) {
    controls_.SelectRow(row);
    editing_.lstCode_Click(row);
  }
  controls_.FocusList();
  return true;
}

void frmAddIn::SelectInCode(TextRange place) {
  BnRichEdit& code = controls_.txtCode();
  const int begin = code.PlaceOfByte(place.begin);
  code.Focus();
  code.SetSelection(begin, code.PlaceOfByte(place.end) - begin);
}

TextRange frmAddIn::SelectedInCode() {
  const BnRichEdit& code = controls_.txtCode();
  const int begin = code.SelStart();
  return {code.ByteOfPlace(begin), code.ByteOfPlace(begin + code.SelLength())};
}

void frmAddIn::GiveFrontBack() {
  if (overWindow_ != nullptr) SetForegroundWindow(overWindow_);
}

void frmAddIn::Output(const SearchedLibrary& library, std::size_t snippet) {
  const std::string code(library[snippet].Code);
  if (overWindow_ != nullptr) {
    DWORD process = 0;
    GetWindowThreadProcessId(overWindow_, &process);
    if (host_ != nullptr && host_->IsProcess(process)) {
      output_.PasteCode(code);
    } else {
      Copy(code);
    }
    return;
  }
  const int mode = bars_.OutputMode();
  if (mode == Command::kCopyToClipboard) {
    Copy(code);
  } else if (mode == Command::kPasteCode) {
    output_.PasteCode(code);
  } else {
    output_.PasteToNewModule(library.name(), library.Snippets());
  }
}

}  // namespace snip
