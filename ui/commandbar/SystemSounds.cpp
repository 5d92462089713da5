#include "ui/commandbar/SystemSounds.h"

#include <array>
#include <cstddef>

namespace snip {
namespace {

constexpr std::array<std::string_view, 22> kEventNames = {
    "Buddy In",          "Buddy Out",      "Close",       "Drop",           "File's Done",
    "Goodbye",           "MailBeep",       "Maximize",    "MenuCommand",    "MenuPopup",
    "Minimize",          "Open",           "RestoreDown", "RestoreUp",      "SystemAsterisk",
    "SystemExclamation", "SystemExit",     "SystemHand",  "SystemQuestion", "SystemStart",
    "Welcome",           "You've Got Mail"};

std::string SchemeKey(std::string_view application, std::string_view eventName) {
  std::string key = "AppEvents\\Schemes\\Apps\\";
  key.append(application).append("\\").append(eventName).append("\\.Current");
  return key;
}

}  // namespace

std::string_view SystemSoundEventName(std::int16_t index) {
  const auto place = static_cast<std::size_t>(index);  // a negative number becomes one far outside
  return place < kEventNames.size() ? kEventNames[place] : std::string_view{};
}

std::string DefaultSchemeSoundKey(std::string_view eventName) {
  return SchemeKey(".Default", eventName);
}

std::string OfficeSchemeSoundKey(std::string_view eventName) {
  return SchemeKey("Office97", "Office97-" + std::string(eventName));
}

}  // namespace snip
