#include "ui/main/SnippetFinding.h"

#include <algorithm>
#include <utility>

#include "platform/Win32Text.h"
#include "ui/find/frmFindKey.h"

namespace snip {
namespace {

/// The selected text of an edit control; empty for any other window.
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

/// False if another program has registered the key.
bool Register(HWND window, HotKey key) {
  const UINT held = ((key.held & HotKey::kShift) != 0 ? MOD_SHIFT : 0U) |
                    ((key.held & HotKey::kControl) != 0 ? MOD_CONTROL : 0U) |
                    ((key.held & HotKey::kAlt) != 0 ? MOD_ALT : 0U);
  return key.empty() || RegisterHotKey(window, kHotKeyId, held, key.key) != 0;
}

}  // namespace

SnippetFinding::SnippetFinding(const Parts& parts)
    : parts_(parts),
      find_({.target = *this, .store = parts.store, .settings = parts.settings, .caption = parts.caption}) {}

void SnippetFinding::LoadSystemKey() {
  const HotKey key = HotKey::FromText(parts_.settings.LoadMore(kKeySetting));
  // Check again: the keyboard layout or the stored key may have changed.
  systemKey_ = RefusalHere(key).empty() && Register(parts_.window.hWnd(), key) ? key : HotKey{};
}

std::string SnippetFinding::UseSystemKey(HotKey key) {
  if (!systemKey_.empty()) UnregisterHotKey(parts_.window.hWnd(), kHotKeyId);
  if (!Register(parts_.window.hWnd(), key)) {
    Register(parts_.window.hWnd(), systemKey_);
    return "Another program has this key already.";
  }
  systemKey_ = key;
  parts_.settings.SaveMore(kKeySetting, key.empty() ? "" : key.Text());
  return {};
}

void SnippetFinding::FindOverOthers() {
  const HWND front = GetForegroundWindow();
  if (IsWindowEnabled(parts_.window.hWnd()) == 0) {
    SetForegroundWindow(GetLastActivePopup(parts_.window.hWnd()));  // a dialog comes first
    return;
  }
  if (!parts_.editing.SettleName()) return;
  // The key repeats while it is held; then the palette itself is in front.
  if (front != find_.hWnd() || front == nullptr) {
    DWORD process = 0;
    GetWindowThreadProcessId(front, &process);
    overWindow_ = process == GetCurrentProcessId() ? nullptr : front;
  }
  find_.ShowMe(parts_.window.hWnd(), "", false);
}

void SnippetFinding::Find() {
  overWindow_ = nullptr;
  const BnRichEdit& code = parts_.controls.txtCode();
  const bool inCode = code.HasFocus();
  std::string text = inCode ? code.SelText().value_or("") : SelectedText(GetFocus());
  if (text.find_first_of("\r\n") != std::string::npos) text.clear();
  if (!parts_.editing.SettleName()) return;  // the new name is searched, unless it is refused
  find_.ShowMe(parts_.window.hWnd(), text, inCode && parts_.editing.Shown() != nullptr);
}

void SnippetFinding::FindNext(bool forward) {
  if (!find_.GoOn(forward)) Find();
}

std::optional<FindTarget::Open> SnippetFinding::OpenLibrary() {
  if (!parts_.editing.ListsSnippets()) return std::nullopt;
  parts_.editing.StoreShownCode();
  return Open{{parts_.library.LibraryName, parts_.operations.OpenPath()}, &parts_.library.Snippets};
}

std::optional<std::uint32_t> SnippetFinding::ShownSnippet() {
  const bool shows = parts_.editing.ListsSnippets() && parts_.editing.Shown() != nullptr;
  return shows ? std::optional(static_cast<std::uint32_t>(parts_.editing.shownIndex())) : std::nullopt;
}

std::optional<std::string> SnippetFinding::ShownCode() {
  return parts_.editing.Shown() != nullptr ? parts_.controls.Code() : std::nullopt;
}

Went SnippetFinding::GoTo(const FindDestination& destination) {
  if (parts_.window.hWnd() == nullptr) return Went::Nowhere;
  parts_.showWindow();
  if (!parts_.operations.Choose(destination.library.path) || parts_.window.hWnd() == nullptr)
    return Went::Nowhere;
  if (!parts_.editing.ListsSnippets()) return Went::Missing;
  const auto& snippets = parts_.library.Snippets;
  auto at = destination.snippet;
  if (at >= snippets.size() || snippets[at].Name != destination.name) {
    at = static_cast<std::size_t>(std::ranges::find(snippets, destination.name, &Snippet::Name) -
                                  snippets.begin());
  }
  if (at == snippets.size()) return Went::Missing;
  if (const int row = static_cast<int>(at); row != parts_.editing.shownIndex()) {
    parts_.controls.SelectRow(row);
    parts_.editing.lstCode_Click(row);
  }
  parts_.controls.FocusList();
  return Went::There;
}

void SnippetFinding::SelectInCode(TextRange place) {
  BnRichEdit& code = parts_.controls.txtCode();
  const int begin = code.PlaceOfByte(place.begin);
  code.Focus();
  code.SetSelection(begin, code.PlaceOfByte(place.end) - begin);
}

TextRange SnippetFinding::SelectedInCode() {
  const BnRichEdit& code = parts_.controls.txtCode();
  const int begin = code.SelStart();
  return {code.ByteOfPlace(begin), code.ByteOfPlace(begin + code.SelLength())};
}

void SnippetFinding::RestoreForeground() {
  if (overWindow_ != nullptr) SetForegroundWindow(overWindow_);
}

void SnippetFinding::Output(const SearchedLibrary& library, std::size_t snippet) {
  if (overWindow_ != nullptr) {
    parts_.delivery.OutputToWindow(overWindow_, std::string(library[snippet].Code));
  } else {
    parts_.delivery.Output(library, snippet);
  }
}

}  // namespace snip
