#include "ui/main/SystemMenu.h"

#include <string>

#include "ui/main/MainWindowCommands.h"
#include "ui/main/MainWindowKeys.h"

namespace snip {
namespace {

/// The system keeps the lowest four bits of a system command's number for itself.
constexpr UINT_PTR kReservedBits = 4;

}  // namespace

void ExtendSystemMenu(HWND window) {
  const HMENU menu = GetSystemMenu(window, FALSE);
  AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
  for (const CommandItem& item : kSystemMenu) {
    const std::string keys = KeysOf(item.command);
    const std::string text = item.caption + (keys.empty() ? "" : "\t" + keys);
    AppendMenuA(menu, MF_STRING, static_cast<UINT_PTR>(item.command) << kReservedBits, text.c_str());
  }
}

std::optional<int> SystemMenuCommand(WPARAM wParam) {
  for (const CommandItem& item : kSystemMenu) {
    if (wParam >> kReservedBits == static_cast<WPARAM>(item.command)) return item.command;
  }
  return std::nullopt;
}

}  // namespace snip
