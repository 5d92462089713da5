#include "ui/main/CodeDelivery.h"

#include <utility>

#include "library/LineEndings.h"
#include "platform/Clipboard.h"
#include "ui/dialogs/frmFields.h"
#include "ui/main/MainWindowCommands.h"

namespace snip {
namespace {

std::string Today() {
  char text[100]{};
  GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, text, sizeof text);
  return text;
}

}  // namespace

CodeDelivery::CodeDelivery(const Parts& parts)
    : parts_(parts), output_(parts.library, parts.editing, parts.controls, parts.showMessage) {}

void CodeDelivery::SetHost(HostEnvironment* host) {
  host_ = host;
  output_.SetHost(host);
}

/// Whether the user pressed this while waiting for the last delivery, and so did not mean another one.
bool CodeDelivery::IsLeftOver() const {
  const bool queued = InSendMessage() == 0;
  return queued && delivered_ && static_cast<LONG>(static_cast<DWORD>(GetMessageTime()) - *delivered_) < 0;
}

void CodeDelivery::Output() {
  const int mode = parts_.bars.OutputMode();
  if (mode == Command::kCopyToClipboard) return CopyCode();
  if (IsLeftOver()) return;
  if (mode == Command::kPasteCode) {
    output_.PasteCode();
  } else {
    if (!parts_.editing.StoreShownCode()) return;  // the module gets an edit in progress, too
    const int entry = parts_.chooser.SelectedFile();
    output_.PasteToNewModule(entry < 0 ? std::string() : parts_.chooser.FileText(entry));
  }
  delivered_ = GetTickCount();
}

void CodeDelivery::Output(const SearchedLibrary& library, std::size_t snippet) {
  const int mode = parts_.bars.OutputMode();
  if (mode == Command::kNewModule) return output_.PasteToNewModule(library.name(), library.Snippets());
  const std::string code(library[snippet].Code);
  if (mode == Command::kPasteCode) {
    output_.PasteCode(code);
  } else {
    Copy(code);
  }
}

void CodeDelivery::OutputToWindow(HWND window, const std::string& code) {
  HostEnvironment* const asked = host_;
  try {
    if (asked != nullptr && asked->HasWindow(window)) return output_.PasteCode(code);
  } catch (const HostBusy& error) {
    if (host_ == asked) parts_.showMessage(error.what(), MessageStyle::kInformation, kMainWindowTitle);
    return;
  }
  Copy(code);
}

void CodeDelivery::CopyCode() {
  if (!parts_.editing.ListsSnippets()) {
    Copy("");  // the field shows a message instead of code: empty the clipboard
  } else if (const auto code = parts_.controls.Code()) {
    Copy(*code);
  }
}

bool CodeDelivery::Copy(const std::string& text) {
  if (CopyToClipboard(parts_.window.hWnd(), text)) return true;
  parts_.showMessage("The clipboard is in use by another program. Please try again.",
                     MessageStyle::kInformation, kMainWindowTitle);
  return false;
}

void CodeDelivery::PasteWithFields() {
  if (IsLeftOver()) return;
  output_.PasteWithFields({.ask =
                               [this](const auto& fields, const auto& preview) {
                                 return frmFields(parts_.caption, parts_.controls.Font())
                                     .ShowMe(parts_.window.hWnd(), fields, preview);
                               },
                           .today = &Today,
                           .copy = [this](const std::string& text) { Copy(text); }});
  delivered_ = GetTickCount();
}

void CodeDelivery::TakeCode() {
  if (IsLeftOver() || parts_.editing.editingDisabled()) return;
  std::optional<std::string> code;
  if (output_.connected()) {
    code = output_.TakeCode();
    delivered_ = GetTickCount();
  } else {
    code = WithoutCommonIndentation(WithCrLf(ClipboardText(parts_.window.hWnd())).text);
    if (code->empty()) {
      code.reset();
      parts_.showMessage("The clipboard holds no text.", MessageStyle::kInformation, kMainWindowTitle);
    }
  }
  if (!code || parts_.window.hWnd() == nullptr) return;
  parts_.editing.AddSnippet(SnippetOfCode(std::move(*code)));
}

}  // namespace snip
