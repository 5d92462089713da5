#include "app/StartMode.h"

#include <algorithm>

#include "platform/Text.h"

namespace snip {

StartMode StartModeFromArguments(std::span<const std::string> arguments) {
  const bool embedding = std::any_of(arguments.begin(), arguments.end(), [](const std::string& argument) {
    return EqualsIgnoringAsciiCase(argument, "-Embedding") || EqualsIgnoringAsciiCase(argument, "/Embedding");
  });
  return embedding ? StartMode::Component : StartMode::Standalone;
}

}  // namespace snip
