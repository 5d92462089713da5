#include "cli/records/Search.h"

#include <algorithm>

#include "library/BnsMarkers.h"

namespace snip {
namespace {

/// The lines of one part that match.
void SearchPart(const PartLines& lines, bool unixLines, const Matcher& matcher, Hit hit,
                const std::function<void(const Hit&)>& take) {
  const std::string_view text = lines.lines;
  std::size_t counted = 0;  // up to here the line ends have been counted
  std::size_t from = 0;
  hit.part = lines.part;
  while (const auto match = matcher.Find(text, from)) {
    const auto lineFeed = match->at == 0 ? std::string_view::npos : text.rfind('\n', match->at - 1);
    const std::size_t begin = lineFeed == std::string_view::npos ? 0 : lineFeed + 1;
    hit.line += static_cast<std::size_t>(std::count(text.data() + counted, text.data() + begin, '\n'));
    counted = begin;
    std::string_view rest = text.substr(begin);
    const std::size_t left = rest.size();
    hit.text = TakeLine(rest, unixLines);
    hit.match = {.at = match->at - begin, .length = match->length};
    // An empty match may lie on the line end.
    if (hit.match.at <= hit.text.size()) take(hit);
    from = begin + (left - rest.size());
  }
}

}  // namespace

ScannedFile SearchLibrary(std::string_view bytes, const Matcher& matcher, const SearchedParts& parts,
                          const std::function<void(const Hit&)>& take) {
  const bool unixLines = bns::HasUnixLines(bytes);
  // What stands nowhere in the file is in no snippet, and nobody need know where they are.
  if (!matcher.Find(bytes, 0)) {
    std::string_view behindFirstLine = bytes;
    if (!bytes.empty()) TakeLine(behindFirstLine, unixLines);
    bytes.remove_suffix(behindFirstLine.size());
  }
  Hit hit;
  return ScanRecords(bytes, [&](const PartLines& lines) {
    if (lines.part == Part::Name) {
      hit.snippet = lines.snippet;
      std::string_view rest = lines.lines;
      hit.name = TakeLine(rest, unixLines);
    }
    const bool wanted = (lines.part == Part::Name && parts.name) ||
                        (lines.part == Part::Description && parts.description) ||
                        (lines.part == Part::Code && parts.code);
    if (wanted) SearchPart(lines, unixLines, matcher, hit, take);
  });
}

}  // namespace snip
