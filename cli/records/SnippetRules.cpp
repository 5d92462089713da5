#include "cli/records/SnippetRules.h"

#include <initializer_list>
#include <string_view>

#include "cli/Failure.h"
#include "cli/records/RecordScanner.h"
#include "library/BnsMarkers.h"

namespace snip {
namespace {

std::optional<std::string> WhyNoBlock(std::string_view text, std::string_view what,
                                      std::initializer_list<std::string_view> markers) {
  for (std::size_t line = 1; !text.empty(); ++line) {
    const std::string_view read = TakeLine(text, false);
    for (const std::string_view marker : markers) {
      if (bns::IsMarker(read, marker)) {
        return "line " + std::to_string(line) + " of its " + std::string(what) + " is \"" +
               std::string(marker) + "\", which a library takes for its own";
      }
    }
  }
  return std::nullopt;
}

std::size_t DropBlanks(std::string& text) {
  std::string kept;
  std::size_t lines = 0;
  for (std::string_view rest = text;;) {
    const auto end = rest.find(bns::kLineEnd);
    const std::string_view line = rest.substr(0, end);
    kept.append(TrimRight(line));
    lines += line.ends_with(' ') ? 1 : 0;
    if (end == std::string_view::npos) break;
    kept.append(bns::kLineEnd);
    rest.remove_prefix(end + bns::kLineEnd.size());
  }
  text = kept;
  return lines;
}

}  // namespace

std::optional<std::string> WhyNotHeld(const Snippet& snippet) {
  if (snippet.Name.find_first_of("\r\n") != std::string::npos) return "a name is one line";
  if (bns::IsMarker(snippet.Name, bns::kListEnd)) return "that name is the end of a library";
  if (snippet.Attachment.find_first_of("\r\n") != std::string::npos) {
    return "the path of an attachment is one line";
  }
  if (auto why = WhyNoBlock(snippet.Description, "description", {bns::kDescriptionEnd, bns::kListEnd})) {
    return why;
  }
  return WhyNoBlock(snippet.Code, "code", {bns::kCodeEnd, bns::kListEnd});
}

void RequireHeld(const Snippet& snippet, const CodePage& page) {
  if (const auto why = WhyNotHeld(snippet)) {
    throw Failure(ExitCode::Refused,
                  "\"" + page.ToUtf8(snippet.Name) + "\" cannot be kept in a library: " + *why);
  }
}

std::size_t DropLineEndBlanks(Snippet& snippet) {
  return DropBlanks(snippet.Description) + DropBlanks(snippet.Code);
}

}  // namespace snip
