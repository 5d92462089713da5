#include "app/StartMode.h"

#include <string_view>
#include <utility>

#include "platform/Text.h"

namespace snip {

StartMode StartModeFromArguments(std::span<const std::string> arguments) {
  constexpr std::pair<std::string_view, StartMode> kSwitches[] = {{"Embedding", StartMode::Component},
                                                                  {"RegServer", StartMode::Register},
                                                                  {"UnregServer", StartMode::Unregister}};
  for (const std::string& argument : arguments) {
    if (argument.empty() || (argument[0] != '-' && argument[0] != '/')) continue;
    for (const auto& [name, mode] : kSwitches) {
      if (EqualsIgnoringAsciiCase(std::string_view(argument).substr(1), name)) return mode;
    }
  }
  return StartMode::Standalone;
}

}  // namespace snip
