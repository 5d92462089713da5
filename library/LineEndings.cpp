#include "library/LineEndings.h"

namespace snip {

ConvertedLines WithLineEndings(std::string_view text, std::string_view lineEnding,
                               std::optional<std::string_view> usual) {
  ConvertedLines result;
  while (!text.empty()) {
    const auto end = text.find_first_of("\r\n");
    result.text.append(text.substr(0, end));
    if (end == std::string_view::npos) break;
    const std::string_view found = text.substr(end, text.substr(end).starts_with("\r\n") ? 2 : 1);
    usual = usual.value_or(found);
    result.text.append(lineEnding);
    result.changed += found != usual ? 1 : 0;
    text.remove_prefix(end + found.size());
  }
  return result;
}

}  // namespace snip
