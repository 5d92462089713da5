#include "ui/dialogs/CommonDialogText.h"

#include <algorithm>

namespace snip {

std::string FilterText(std::string_view filter) {
  std::string text(filter);
  std::replace(text.begin(), text.end(), '|', '\0');
  return text.append(2, '\0');
}

bool HasWildcards(std::string_view fileName) {
  return fileName.find_first_of("*?") != std::string_view::npos;
}

std::string NamePart(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);  // the whole text when there is no "\"
}

std::string SaveNameBuffer(const std::string& fileName) {
  constexpr std::size_t length = 255;
  std::string buffer = fileName;
  if (buffer.size() < length) buffer.resize(length, '\0');
  return buffer;
}

std::optional<std::string> TextBeforeNul(const std::string& buffer) {
  const std::size_t end = buffer.find('\0');
  if (end == std::string::npos) return std::nullopt;
  return buffer.substr(0, end);
}

FaceNameField FaceNameFieldOf(std::string_view faceName) {
  FaceNameField field{};
  faceName.copy(field.data(), field.size());
  return field;
}

}  // namespace snip
