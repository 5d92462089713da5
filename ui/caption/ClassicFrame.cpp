#include "ui/caption/ClassicFrame.h"

#include "platform/SystemLibrary.h"

namespace snip {
namespace {

using SetAttributeFunction = HRESULT WINAPI(HWND, DWORD attribute, LPCVOID value, DWORD size);
using SetThemeFunction = HRESULT WINAPI(HWND, LPCWSTR application, LPCWSTR classes);

// As in dwmapi.h, which requires a later Windows than this program.
constexpr DWORD kRenderingPolicy = 2;
constexpr DWORD kByWindowStyle = 0;
constexpr DWORD kDisabled = 1;

}  // namespace

void SetClassicFrame(HWND window, bool classic) {
  static auto* const setAttribute =
      SystemFunction<SetAttributeFunction>("dwmapi.dll", "DwmSetWindowAttribute");
  if (setAttribute != nullptr) {
    const DWORD policy = classic ? kDisabled : kByWindowStyle;
    setAttribute(window, kRenderingPolicy, &policy, sizeof policy);
  }
  static auto* const setTheme = SystemFunction<SetThemeFunction>("uxtheme.dll", "SetWindowTheme");
  if (setTheme != nullptr) {
    // An empty name turns the style off, null restores the user's.
    const wchar_t* style = classic ? L"" : nullptr;
    setTheme(window, style, style);
  }
  SetWindowPos(
      window, nullptr, 0, 0, 0, 0,
      SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
}

}  // namespace snip
