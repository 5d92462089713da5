#include "platform/Window.h"

#include <optional>
#include <utility>

#include "platform/Guarded.h"
#include "platform/Rects.h"

namespace snip {
namespace {

/// Offset among the class's own bytes of each window; the user data belongs to `Subclass`.
constexpr int kBoundObject = 0;

bool EnsureClass(const char* name, UINT style, int iconId, int background, WNDPROC procedure) {
  const HINSTANCE instance = GetModuleHandleA(nullptr);
  WNDCLASSEXA existing{};
  existing.cbSize = sizeof existing;
  if (GetClassInfoExA(instance, name, &existing) != 0) return true;

  WNDCLASSEXA description{};
  description.cbSize = sizeof description;
  description.style = style;
  description.lpfnWndProc = procedure;
  description.cbWndExtra = sizeof(LONG_PTR);
  description.hInstance = instance;
  description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(background);
  description.lpszClassName = name;
  if (iconId != 0) {
    description.hIcon = SharedIcon(iconId, SM_CXICON);
    description.hIconSm = SharedIcon(iconId, SM_CXSMICON);
  }
  return RegisterClassExA(&description) != 0;
}

bool Within(HWND window, POINT screen) {
  RECT place{};
  return GetWindowRect(window, &place) != 0 && PtInRect(&place, screen) != 0;
}

}  // namespace

Window::~Window() {
  Destroy();
  // Still there when the object is deleted in the midst of its window's destruction, which goes on without
  // it.
  if (hWnd_ != nullptr) SetWindowLongPtrA(hWnd_, kBoundObject, 0);
}

void Window::Destroy() {
  if (hWnd_ != nullptr) DestroyWindow(hWnd_);
}

bool Window::Create(Creation creation) {
  if (!EnsureClass(creation.className, creation.classStyle, creation.iconId, creation.background,
                   &WindowProc)) {
    return false;
  }
  const Rect& place = creation.place;
  const auto menuOrId =
      creation.menu ? creation.menu.get() : reinterpret_cast<HMENU>(static_cast<INT_PTR>(creation.id));
  const HWND made = CreateWindowExA(creation.exStyle, creation.className, creation.title, creation.style,
                                    place.left, place.top, place.width, place.height, creation.parent,
                                    menuOrId, GetModuleHandleA(nullptr), this);
  if (made != nullptr) creation.menu.Release();  // the window destroys it
  return made != nullptr;
}

LRESULT Window::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return Default(message, wParam, lParam);
}

LRESULT Window::Default(UINT message, WPARAM wParam, LPARAM lParam) {
  // An edit control that takes several lines asks its parent to close when Escape is pressed: meant for a
  // dialog, and the default would destroy a mere container with all it holds.
  if (message == WM_CLOSE && (GetWindowLongA(hWnd_, GWL_STYLE) & WS_CHILD) != 0) return 0;
  return DefWindowProcA(hWnd_, message, wParam, lParam);
}

LRESULT CALLBACK Window::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* creation = reinterpret_cast<const CREATESTRUCTA*>(lParam);
    auto* self = static_cast<Window*>(creation->lpCreateParams);
    self->hWnd_ = window;
    SetWindowLongPtrA(window, kBoundObject, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<Window*>(GetWindowLongPtrA(window, kBoundObject));
  // Some messages come before WM_NCCREATE and some could come after WM_NCDESTROY.
  if (self == nullptr) return DefWindowProcA(window, message, wParam, lParam);

  const auto answer = Guarded(std::optional<LRESULT>(),
                              [&] { return std::optional(self->HandleMessage(message, wParam, lParam)); });
  // A message that failed has no further effect. The default would close the window and let the session end,
  // and what was not saved would be lost.
  const bool ends = message == WM_CLOSE || message == WM_QUERYENDSESSION;
  const LRESULT result = answer ? *answer : ends ? 0 : DefWindowProcA(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrA(window, kBoundObject, 0);
    self->hWnd_ = nullptr;
  }
  return result;
}

HICON SharedIcon(int iconId, int widthMetric) {
  const auto load = [iconId](int size) {
    return static_cast<HICON>(
        LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(iconId), IMAGE_ICON, size, size, LR_SHARED));
  };
  const HICON icon = load(GetSystemMetrics(widthMetric));
  // Windows XP cannot read the PNG form, in which the sizes above this one are stored.
  return icon != nullptr ? icon : load(32);
}

HWND CreateControl(HWND parent, const char* className, const char* text, DWORD style, DWORD exStyle, int id,
                   HFONT font, const Rect& place) {
  const HWND control = CreateWindowExA(
      exStyle, className, text, WS_CHILD | style, place.left, place.top, place.width, place.height, parent,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
  if (font != nullptr) SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return control;
}

void NameNextControl(HWND parent, const char* name) {
  CreateControl(parent, "STATIC", name, SS_NOPREFIX, 0, 0);
}

void PlaceWithLabel(HWND control, HWND after) {
  constexpr UINT orderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
  const HWND label = GetWindow(control, GW_HWNDPREV);
  SetWindowPos(label, after, 0, 0, 0, 0, orderOnly);
  SetWindowPos(control, label, 0, 0, 0, 0, orderOnly);
}

void SetTabStop(HWND control, bool stop) {
  const LONG style = GetWindowLongA(control, GWL_STYLE);
  SetWindowLongA(control, GWL_STYLE, stop ? style | WS_TABSTOP : style & ~WS_TABSTOP);
}

void MoveTo(HWND window, const Rect& place) {
  if (PlaceInParent(window) == place) return;  // the system would ask every part whether something changes
  MoveWindow(window, place.left, place.top, place.width, place.height, TRUE);
}

Size ClientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

Rect PlaceInParent(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(HWND_DESKTOP, GetAncestor(window, GA_PARENT), reinterpret_cast<POINT*>(&place), 2);
  return ToRect(place);
}

bool LiesAt(HWND window, POINT screen) {
  // WindowFromPoint is slow, so the bounds come first. Wine 8 finds children of a disabled window as well.
  return Within(window, screen) && IsWindowEnabled(GetAncestor(window, GA_ROOT)) != 0 &&
         WindowFromPoint(screen) == window;
}

void HoverTimer::Start() {
  needlessTicks_ = 0;
  if (!std::exchange(running_, true)) SetTimer(window_.hWnd(), id_, kIntervalMs, nullptr);
}

void HoverTimer::Stop() {
  if (std::exchange(running_, false)) KillTimer(window_.hWnd(), id_);
}

void HoverTimer::Ticked(bool needed) {
  constexpr int mostNeedless = 9;
  if (needed) return Start();
  if (++needlessTicks_ >= mostNeedless) Stop();
}

}  // namespace snip
