#include "platform/TextFieldBytes.h"

#include <algorithm>
#include <array>

namespace snip {
namespace {

/// Control characters first, which no source text uses; were all of these taken, any free byte does. A text
/// that uses all 256 byte values is no text, and its zero bytes then show as the first of these.
char FreeByte(std::string_view text) {
  std::array<bool, 256> used{};
  for (const char c : text) used[static_cast<unsigned char>(c)] = true;
  for (unsigned candidate = 1; candidate < used.size(); ++candidate) {
    const bool breaksLines = candidate >= '\t' && candidate <= '\r';
    if (!used[candidate] && !breaksLines) return static_cast<char>(candidate);
  }
  return '\x01';
}

/// CR LF, a lone CR and a lone LF each end a line.
std::string WithUniformLineEndings(std::string_view text) {
  std::string uniform;
  uniform.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool pair = c == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (pair) ++i;
    if (c == '\r' || c == '\n') {
      uniform += "\r\n";
    } else {
      uniform += c;
    }
  }
  return uniform;
}

}  // namespace

TextFieldBytes::TextFieldBytes(std::string_view text) : shown_(WithUniformLineEndings(text)) {
  if (text.find('\0') == std::string_view::npos) return;
  standIn_ = FreeByte(text);
  std::replace(shown_.begin(), shown_.end(), '\0', standIn_);
}

std::string TextFieldBytes::Restore(std::string fieldText) const {
  if (standIn_ != '\0') std::replace(fieldText.begin(), fieldText.end(), standIn_, '\0');
  return fieldText;
}

}  // namespace snip
