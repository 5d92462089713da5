#include "ui/dialogs/frmMsg.h"

#include "platform/Fonts.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "version.h"

namespace snip {
namespace {

BOOL CALLBACK TakeUsableWindow(HWND window, LPARAM result) {
  // Menus and tips come before the window that they belong to.
  const bool isPalette = (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
  const bool usable = !isPalette && IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0;
  if (usable) *reinterpret_cast<HWND*>(result) = window;
  return usable ? FALSE : TRUE;
}

/// The window that a message belongs to: the active one, else any visible one of this thread, so that a
/// message is never shown beside a window that still takes input.
HWND OwnerForMessage() {
  HWND owner = GetActiveWindow();
  if (owner == nullptr) {
    EnumThreadWindows(GetCurrentThreadId(), &TakeUsableWindow, reinterpret_cast<LPARAM>(&owner));
  }
  return owner;
}

int IconResource(MessageIcon icon) {
  return IDI_MESSAGE_INFORMATION + static_cast<int>(icon);
}

}  // namespace

MessageResult frmMsg::Display(const std::string& prompt, int style, const std::string& title) {
  prompt_ = prompt;
  title_ = title.empty() ? SNIPSTORE_NAME : title;
  style_ = MessageBoxStyleFromNumber(style);
  font_ = MessageFont();
  const INT_PTR result = ShowModal(OwnerForMessage(), WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
  return result > 0 ? static_cast<MessageResult>(result) : MessageResult::Ok;
}

MessageBoxLayout frmMsg::LayOut() const {
  const Rect area = WorkArea(hWnd());
  return LayOutMessageBox(
      style_, {.dialogUnit = CharacterSize(font_.get()),
               .icon = {GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)},
               .screenWidth = area.width,
               .screenHeight = area.height,
               .measurePrompt = [&](int width) { return WrappedTextSize(font_.get(), prompt_, width); }});
}

void frmMsg::OnInit() {
  const MessageBoxLayout layout = LayOut();
  SetWindowTextA(hWnd(), title_.c_str());

  const HWND image = CreateControl(hWnd(), "STATIC", "", WS_VISIBLE | SS_ICON | SS_REALSIZEIMAGE, 0, kImageId,
                                   nullptr, layout.icon);
  SendMessageA(image, STM_SETICON, reinterpret_cast<WPARAM>(SharedIcon(IconResource(style_.icon), SM_CXICON)),
               0);

  if (layout.promptOverflows) {
    CreateControl(hWnd(), "EDIT", prompt_.c_str(),
                  WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY, WS_EX_CLIENTEDGE,
                  kLabelId, font_.get(), layout.prompt);
  } else {
    CreateControl(hWnd(), "STATIC", prompt_.c_str(), WS_VISIBLE | SS_NOPREFIX | SS_EDITCONTROL, 0, kLabelId,
                  font_.get(), layout.prompt);
  }
  for (std::size_t i = 0; i < style_.buttons.size(); ++i) {
    const MessageResult button = style_.buttons[i];
    const bool isDefault = i == 0;
    const HWND control =
        CreateControl(hWnd(), "BUTTON", MessageButtonCaption(button).c_str(),
                      WS_VISIBLE | WS_TABSTOP | (isDefault ? WS_GROUP | BS_DEFPUSHBUTTON : BS_PUSHBUTTON), 0,
                      static_cast<int>(button), font_.get(), layout.buttons[i]);
    if (isDefault) {
      SendMessageA(hWnd(), DM_SETDEFID, static_cast<WPARAM>(button), 0);
      SetFocus(control);
    }
  }
  SizeAndCentre(layout.client);
  sounds_.PlaySystemSound(style_.sound);
}

void frmMsg::OnCommand(int id, int notification) {
  if (notification != BN_CLICKED) return;
  const auto result = static_cast<MessageResult>(id);
  for (const MessageResult button : style_.buttons) {
    if (button == result) {
      End(id);
      return;
    }
  }
  // Escape without a "Cancel" button.
  const MessageResult* escape = EscapeButton(style_);
  if (id == IDCANCEL && escape != nullptr) End(static_cast<INT_PTR>(*escape));
}

MessageResult ShowMessage(const SoundEffects& sounds, const std::string& prompt, int style,
                          const std::string& title) {
  return frmMsg(sounds).Display(prompt, style, title);
}

}  // namespace snip
