#include "platform/Dialog.h"

#include <algorithm>
#include <utility>

#include "platform/Fonts.h"
#include "platform/Guarded.h"
#include "platform/Rects.h"
#include "platform/Window.h"

namespace snip {
namespace {

/// A dialog template without controls; menu, class and title are empty.
struct alignas(DWORD) EmptyTemplate {
  DLGTEMPLATE header{};
  WORD menu = 0;
  WORD windowClass = 0;
  WORD title = 0;
};

}  // namespace

INT_PTR Dialog::ShowModal(HWND owner, DWORD style) {
  EmptyTemplate resource;
  resource.header.style = style;
  return DialogBoxIndirectParamA(GetModuleHandleA(nullptr), &resource.header, owner, &DialogProc,
                                 reinterpret_cast<LPARAM>(this));
}

INT_PTR CALLBACK Dialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lParam);
    reinterpret_cast<Dialog*>(lParam)->hWnd_ = window;
  }
  auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrA(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  return Guarded(INT_PTR{FALSE}, [&] { return self->Handle(message, wParam, lParam); });
}

INT_PTR Dialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      OnInit();
      return FALSE;  // OnInit has put the focus where it belongs
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_CLOSE:
      OnClose();
      return TRUE;
    case WM_DESTROY:
      OnDestroy();
      return FALSE;
    case WM_NCDESTROY:
      hWnd_ = nullptr;
      return FALSE;
    default:
      return OnMessage(message, wParam, lParam);
  }
}

INT_PTR Dialog::OnMessage(UINT, WPARAM, LPARAM) {
  return FALSE;
}

void Dialog::UseFont(UniqueFont font) {
  font_ = std::move(font);
  character_ = CharacterSize(font_.get());
}

Rect Dialog::Pixels(const Rect& units) const {
  return {Across(units.left), Down(units.top), Across(units.width), Down(units.height)};
}

HWND Dialog::Add(const char* className, const char* text, DWORD style, int id, const Rect& units,
                 DWORD exStyle) {
  return CreateControl(hWnd_, className, text, WS_VISIBLE | style, exStyle, id, font_.get(), Pixels(units));
}

HWND Dialog::AddLabel(const char* text, const Rect& units, int id) {
  return Add("STATIC", text, SS_LEFT, id, units);
}

HWND Dialog::AddButton(const char* text, int id, const Rect& units, DWORD style) {
  return Add("BUTTON", text, WS_TABSTOP | style, id, units);
}

HWND Dialog::AddDefaultButton(const char* text, int id, const Rect& units) {
  const HWND button = AddButton(text, id, units, BS_DEFPUSHBUTTON);
  SendMessageA(hWnd_, DM_SETDEFID, static_cast<WPARAM>(id), 0);
  return button;
}

void Dialog::SizeAndCentre(Size client) {
  RECT frame{0, 0, client.width, client.height};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongA(hWnd_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongA(hWnd_, GWL_EXSTYLE)));
  const int width = frame.right - frame.left;
  const int height = frame.bottom - frame.top;

  const HWND owner = GetWindow(hWnd_, GW_OWNER);
  const Rect area = WorkArea(hWnd_);
  Rect around = area;
  if (owner != nullptr && IsWindowVisible(owner) != 0 && IsIconic(owner) == 0) around = PlaceInParent(owner);
  const int left = around.left + (around.width - width) / 2;
  const int top = around.top + (around.height - height) / 2;
  MoveTo(hWnd_, {std::max(area.left, std::min(left, area.right() - width)),
                 std::max(area.top, std::min(top, area.bottom() - height)), width, height});
}

Rect WorkArea(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return ToRect(monitor.rcWork);
}

}  // namespace snip
