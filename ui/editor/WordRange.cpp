#include "ui/editor/WordRange.h"

#include <algorithm>

namespace snip {
namespace {

enum class Kind { Word, Blank, Other };

Kind KindOf(char c) {
  const auto code = static_cast<unsigned char>(c);
  const bool letter = (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') || code >= 0x80;
  if (letter || (code >= '0' && code <= '9') || code == '_') return Kind::Word;
  return code == ' ' || code == '\t' ? Kind::Blank : Kind::Other;
}

}  // namespace

ColumnRange WordAt(std::string_view line, std::size_t column) {
  if (line.empty()) return {};
  std::size_t place = std::min(column, line.size() - 1);
  const bool behindWord =
      place > 0 && KindOf(line[place]) != Kind::Word && KindOf(line[place - 1]) == Kind::Word;
  if (behindWord) --place;

  const Kind kind = KindOf(line[place]);
  ColumnRange range{place, place + 1};
  if (kind == Kind::Other) return range;
  while (range.begin > 0 && KindOf(line[range.begin - 1]) == kind) --range.begin;
  while (range.end < line.size() && KindOf(line[range.end]) == kind) ++range.end;
  return range;
}

}  // namespace snip
