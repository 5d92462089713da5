#include "library/BnsRules.h"

#include <algorithm>
#include <initializer_list>
#include <variant>

#include "library/BnsFormat.h"
#include "library/LineEndings.h"
#include "platform/Text.h"

namespace snip {
namespace {

using namespace bns;

std::optional<std::string> WhyNotHeldAs(const std::string& what, std::string_view text,
                                        std::initializer_list<std::string_view> markers) {
  std::optional<std::string> why;
  std::size_t number = 0;
  ForEachLine(text, [&](std::string_view line) {
    ++number;
    for (const std::string_view marker : markers) {
      if (why || !IsMarker(line, marker)) continue;
      why = "line " + std::to_string(number) + " of its " + what + " is \"" + std::string(marker) +
            "\", which the file format reserves";
    }
  });
  return why;
}

std::size_t DropSpaces(std::string& text) {
  std::string kept;
  std::size_t count = 0;
  ForEachLine(text, [&](std::string_view line) {
    count += line.ends_with(' ') ? 1 : 0;
    kept.append(TrimRight(line)).append(kCrLf);
  });
  kept.resize(kept.size() - kCrLf.size());
  text = std::move(kept);
  return count;
}

}  // namespace

std::optional<std::string> WhyNotHeld(const Snippet& snippet) {
  if (snippet.Name.find_first_of("\r\n") != std::string::npos) return "its name has more than one line";
  if (EndsSnippetList(snippet.Name)) return "its name is \"...\", which the file format reserves";
  if (snippet.Attachment.find_first_of("\r\n") != std::string::npos) {
    return "its attachment has more than one line";
  }
  auto why = WhyNotHeldAs("description", snippet.Description, {kDescriptionEnd, kListEnd});
  return why ? why : WhyNotHeldAs("code", snippet.Code, {kCodeEnd, kListEnd});
}

bool EndsSnippetList(std::string_view name) {
  return IsMarker(name, kListEnd);
}

std::size_t DropTrailingSpaces(Snippet& snippet) {
  return DropSpaces(snippet.Description) + DropSpaces(snippet.Code);
}

bool ReadsBackWhole(std::span<const Snippet> snippets) {
  const auto result = ReadBns(WriteBns(snippets));
  const auto* again = std::get_if<BnsContents>(&result);
  return again != nullptr && std::equal(again->snippets.begin(), again->snippets.end(), snippets.begin(),
                                        snippets.end(), [](const Snippet& a, const Snippet& b) {
                                          // Only the last line of a text can still have spaces at its end.
                                          return a.Name == b.Name && a.Attachment == b.Attachment &&
                                                 TrimRight(a.Code) == TrimRight(b.Code) &&
                                                 TrimRight(a.Description) == TrimRight(b.Description);
                                        });
}

}  // namespace snip
