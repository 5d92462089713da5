#include "ui/caption/ClassicFrame.h"

#include "platform/Handle.h"

namespace snip {
namespace {

/// A function of one of the system's libraries, if there is one; the library stays loaded as long as this
/// lives.
template <class Function>
class SystemFunction {
 public:
  SystemFunction(const char* library, const char* name)
      : library_(LoadLibraryExA(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
    if (!library_) return;
    function_ = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library_.get(), name)));
  }
  Function* get() const { return function_; }

 private:
  UniqueLibrary library_;
  Function* function_ = nullptr;
};

using SetAttributeFunction = HRESULT WINAPI(HWND, DWORD attribute, LPCVOID value, DWORD size);
using SetThemeFunction = HRESULT WINAPI(HWND, LPCWSTR application, LPCWSTR classes);

// As in dwmapi.h, which takes a later system for granted than this program needs.
constexpr DWORD kRenderingPolicy = 2;
constexpr DWORD kByWindowStyle = 0;
constexpr DWORD kDisabled = 1;

}  // namespace

void SetClassicFrame(HWND window, bool classic) {
  const SystemFunction<SetAttributeFunction> setAttribute("dwmapi.dll", "DwmSetWindowAttribute");
  if (setAttribute.get() != nullptr) {
    const DWORD policy = classic ? kDisabled : kByWindowStyle;
    setAttribute.get()(window, kRenderingPolicy, &policy, sizeof policy);
  }
  const SystemFunction<SetThemeFunction> setTheme("uxtheme.dll", "SetWindowTheme");
  if (setTheme.get() != nullptr) {
    // An empty name stands for no style, none for the user's.
    const wchar_t* style = classic ? L"" : nullptr;
    setTheme.get()(window, style, style);
  }
  SetWindowPos(
      window, nullptr, 0, 0, 0, 0,
      SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOOWNERZORDER | SWP_NOACTIVATE);
}

}  // namespace snip
