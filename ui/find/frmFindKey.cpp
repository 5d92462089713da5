#include "ui/find/frmFindKey.h"

#include <commctrl.h>

#include "platform/Fonts.h"
#include "platform/Window.h"

namespace snip {
namespace {

static_assert(HotKey::kShift == HOTKEYF_SHIFT && HotKey::kControl == HOTKEYF_CONTROL &&
              HotKey::kAlt == HOTKEYF_ALT);

/// Whether Ctrl+Alt, with or without Shift, types a character with this key.
bool TypesCharacter(HotKey key) {
  if ((key.held & (HotKey::kControl | HotKey::kAlt)) != (HotKey::kControl | HotKey::kAlt)) return false;
  BYTE pressed[256]{};
  pressed[VK_CONTROL] = pressed[VK_MENU] = 0x80;
  if ((key.held & HotKey::kShift) != 0) pressed[VK_SHIFT] = 0x80;
  WORD characters[2]{};
  const auto type = [&] {
    return ToAscii(key.key, MapVirtualKeyA(key.key, MAPVK_VK_TO_VSC), pressed, characters, 0);
  };
  const int typed = type();
  if (typed < 0) type();  // a dead key: typing it again clears the keyboard's state
  return typed < 0 || (typed > 0 && characters[0] >= ' ');
}

}  // namespace

std::string RefusalHere(HotKey key) {
  return RefusalOf(key, TypesCharacter(key));
}

void frmFindKey::ShowMe(HWND owner, HotKey key) {
  key_ = key;
  ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
}

void frmFindKey::OnInit() {
  UseFont(MessageFont());
  SetWindowTextA(hWnd(), "System-wide Key");
  AddLabel("The key that shows \"Find Snippets\" over any program:", {7, 7, 206, 8});
  field_ = Add(HOTKEY_CLASSA, "", WS_TABSTOP, kKeyId, {7, 18, 206, 14}, WS_EX_CLIENTEDGE);
  reason_ = AddLabel("", {7, 36, 206, 18}, kReasonId);
  AddButton("Off", kOffId, {7, 59, 50, 14});
  AddDefaultButton("OK", IDOK, {109, 59, 50, 14});
  AddButton("Cancel", IDCANCEL, {163, 59, 50, 14});
  SendMessageA(field_, HKM_SETHOTKEY, MAKEWORD(key_.key, key_.held), 0);
  SizeAndCentre({Across(220), Down(80)});
  SetFocus(field_);
  PaintCaption();
}

void frmFindKey::OnCommand(int id, int notification) {
  if (notification != BN_CLICKED) return;
  if (id == IDCANCEL) End(IDCANCEL);
  if (id == kOffId) Use({});
  if (id != IDOK) return;
  const auto chosen = static_cast<WORD>(SendMessageA(field_, HKM_GETHOTKEY, 0, 0));
  constexpr int held = HotKey::kShift | HotKey::kControl | HotKey::kAlt;
  Use({LOBYTE(chosen), static_cast<std::uint8_t>(HIBYTE(chosen) & held)});
}

void frmFindKey::Use(HotKey key) {
  std::string reason = RefusalHere(key);
  if (reason.empty()) reason = use_(key);
  if (reason.empty()) return End(IDOK);
  SetWindowTextA(reason_, reason.c_str());
  SetFocus(field_);
}

}  // namespace snip
