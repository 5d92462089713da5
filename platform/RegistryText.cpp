#include "platform/RegistryText.h"

#include <cmath>
#include <limits>

#include "platform/Numbers.h"
#include "platform/Text.h"

namespace snip {

std::optional<std::string> RegistryErrorMessage(std::int32_t code) {
  switch (code) {
    case 0:
    case 2:
      return std::nullopt;
    case 5:
      return "Access to Registry Denied";
    case 14:
      return "Out of memory";
    case 87:
      return "Invalid Parameter";
    case 1009:
      return "Corrupt Registry Database!";
    case 1010:
      return "Key name is bad";
    case 1011:
      return "Cannot Open Key";
    case 1012:
      return "Cannot Read Key";
    case 1013:
      return "Cannot Write Key";
    default:
      return "Undefined key error code! -- " + std::to_string(code);
  }
}

std::string StrToHex(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string hex;
  hex.reserve(bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += digits[byte >> 4U];
    hex += digits[byte & 0x0FU];
  }
  return hex;
}

std::string SettingsKeyPath(std::string_view company, std::string_view application,
                            std::string_view section) {
  std::string path = "Software\\";
  path.append(company).append("\\").append(application).append("\\").append(section);
  return path;
}

std::optional<std::string> NumberValueData(const std::string& text) {
  const std::string_view trimmed = Trim(text);
  const auto number = ReadNumber(trimmed);
  if (!number || number->length != trimmed.size()) return std::nullopt;
  const double rounded = std::nearbyint(number->value);  // the default rounding mode takes halves to even
  if (rounded < std::numeric_limits<std::int32_t>::min() ||
      rounded > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  std::string data = std::to_string(static_cast<std::int32_t>(rounded));
  data.resize(4, '\0');
  return data;
}

std::string MultiStringData(const std::string& text, std::span<const std::string> extraStrings) {
  std::string data = text + '\0';
  for (const std::string& extra : extraStrings) {
    if (extra.empty() || extra == std::string(1, '\0')) continue;
    data += extra;
    data += '\0';
  }
  data += '\0';
  return data;
}

std::vector<std::string> SplitMultiString(std::string_view data) {
  std::vector<std::string> strings;
  while (!data.empty() && data.front() != '\0') {
    const auto end = std::min(data.find('\0'), data.size());
    strings.emplace_back(data.substr(0, end));
    data.remove_prefix(std::min(end + 1, data.size()));
  }
  return strings;
}

}  // namespace snip
