#include "app/StartMode.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/Text.h"

namespace snip {
namespace {

bool IsSwitch(std::string_view argument, std::string_view name) {
  return !argument.empty() && (argument[0] == '-' || argument[0] == '/') &&
         EqualsIgnoringAsciiCase(argument.substr(1), name);
}

}  // namespace

StartMode StartModeFromArguments(std::span<const std::string> arguments) {
  constexpr std::pair<std::string_view, StartMode> kSwitches[] = {{"Embedding", StartMode::Component},
                                                                  {"RegServer", StartMode::Register},
                                                                  {"UnregServer", StartMode::Unregister}};
  for (const std::string& argument : arguments) {
    for (const auto& [name, mode] : kSwitches) {
      if (IsSwitch(argument, name)) return mode;
    }
  }
  return StartMode::Standalone;
}

bool IsSilent(std::span<const std::string> arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](const std::string& argument) { return IsSwitch(argument, "Silent"); });
}

}  // namespace snip
