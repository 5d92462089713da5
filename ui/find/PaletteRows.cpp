#include "ui/find/PaletteRows.h"

#include <algorithm>

#include "platform/Text.h"

namespace snip {
namespace {

constexpr std::size_t kMostPlaces = 1000;

/// The line that a place of a text is in, without its line ending.
TextRange LineAt(std::string_view text, std::size_t at) {
  const std::size_t before = at == 0 ? std::string_view::npos : text.find_last_of("\r\n", at - 1);
  return {before == std::string_view::npos ? 0 : before + 1,
          std::min(text.find_first_of("\r\n", at), text.size())};
}

std::size_t LineNumber(std::string_view text, std::size_t at) {
  return 1 + static_cast<std::size_t>(std::ranges::count(text.substr(0, at), '\n'));
}

/// Puts the line with the first match into the row, shortened at its start so that the match is visible.
void AddContext(std::string_view text, const std::vector<TextRange>& places, const Folding& folding,
                std::string& context, std::vector<TextRange>& marks) {
  constexpr std::size_t inSight = 40;
  constexpr std::size_t most = 400;
  if (places.empty()) return;
  TextRange line = LineAt(text, places.front().begin);
  while (line.begin < places.front().begin && (text[line.begin] == ' ' || text[line.begin] == '\t'))
    ++line.begin;
  std::string_view cut;
  if (places.front().begin - line.begin > inSight) {
    line.begin = places.front().begin - inSight / 2;
    while (!folding.BeginsCharacter(text, line.begin)) --line.begin;
    cut = "...";
  }
  line.end = std::min(line.end, line.begin + most);
  while (!folding.BeginsCharacter(text, line.end)) --line.end;
  context = std::string(cut) + std::string(text.substr(line.begin, line.end - line.begin));
  std::ranges::replace(context, '\t', ' ');
  for (const TextRange& place : places) {
    if (place.end > line.end) break;
    marks.push_back({place.begin - line.begin + cut.size(), place.end - line.begin + cut.size()});
  }
}

}  // namespace

void PaletteRows::Search(const std::string& text, const std::optional<std::string>& code) {
  listsTags_ = false;
  tags_.clear();
  finder_.Search(text);
  code_ = code.value_or("");
  places_.clear();
  TextRange line;
  for (const TextRange& place : finder_.PlacesInCode(code_)) {
    if (places_.size() == kMostPlaces) break;
    if (!places_.empty() && place.begin < line.end) continue;
    line = LineAt(code_, place.begin);
    places_.push_back(place);
  }
}

void PaletteRows::ListTags() {
  tags_ = CountTags(finder_.libraries(), finder_.folding());
  listsTags_ = true;
}

int PaletteRows::PlaceRows() const {
  return places_.empty() ? 0 : static_cast<int>(places_.size()) + (finder_.found().empty() ? 1 : 2);
}

int PaletteRows::count() const {
  if (listsTags_) return static_cast<int>(tags_.size());
  return PlaceRows() + static_cast<int>(finder_.found().size());
}

bool PaletteRows::IsHeading(int row) const {
  return !listsTags_ && row < PlaceRows() && (row == 0 || row > static_cast<int>(places_.size()));
}

int PaletteRows::Step(int row, int step) const {
  int next = row + step;
  while (next >= 0 && next < count() && IsHeading(next)) next += step;
  return next >= 0 && next < count() ? next : row;
}

std::optional<Found> PaletteRows::FoundAt(int row) const {
  const int first = PlaceRows();
  if (listsTags_ || row < first || row >= count()) return std::nullopt;
  const Found found = finder_.found()[static_cast<std::size_t>(row - first)];
  return finder_.Has(found) ? std::optional(found) : std::nullopt;
}

std::optional<TextRange> PaletteRows::PlaceAt(int row) const {
  if (row < 0 || row >= PlaceRows() || listsTags_ || IsHeading(row)) return std::nullopt;
  return places_[static_cast<std::size_t>(row - 1)];
}

std::string PaletteRows::TagAt(int row) const {
  return listsTags_ && row >= 0 && row < count() ? tags_[static_cast<std::size_t>(row)].tag : std::string();
}

RowIdentity PaletteRows::IdentityOf(int row) const {
  if (const auto place = PlaceAt(row)) return {.at = place->begin};
  const auto found = FoundAt(row);
  if (!found) return {.text = TagAt(row)};
  return {finder_.libraries()[found->library]->path(), std::string(finder_.SnippetOf(*found).Name),
          found->snippet};
}

int PaletteRows::RowOf(const RowIdentity& wanted) const {
  int moved = -1;
  for (int row = First(); row >= 0 && row < count(); ++row) {
    const auto found = FoundAt(row);
    if (!found) {
      if (!IsHeading(row) && IdentityOf(row) == wanted) return row;
      continue;
    }
    // Compared in place, because an identity for every row would copy two texts for each snippet that was
    // found.
    if (finder_.libraries()[found->library]->path() != wanted.library ||
        finder_.SnippetOf(*found).Name != wanted.text)
      continue;
    if (found->snippet == wanted.at) return row;
    if (moved < 0) moved = row;
  }
  return moved;
}

PaletteRow PaletteRows::FoundRow(const Found& found) const {
  const SearchedSnippet snippet = finder_.SnippetOf(found);
  PaletteRow row{.text = std::string(snippet.Name),
                 .behind = " - " + finder_.libraries()[found.library]->name()};
  row.marks = finder_.PlacesInName(snippet.Name);
  if (found.place == HitPlace::Description) {
    row.place = "the description";
    AddContext(snippet.Description, finder_.PlacesInDescription(snippet.Description), finder_.folding(),
               row.context, row.contextMarks);
  } else if (found.place == HitPlace::Code) {
    const auto places = finder_.PlacesInCode(snippet.Code);
    row.place = "the code";
    if (!places.empty())
      row.place += ", line " + std::to_string(LineNumber(snippet.Code, places.front().begin));
    AddContext(snippet.Code, places, finder_.folding(), row.context, row.contextMarks);
  } else if (found.place != HitPlace::None) {
    row.place = "the name";
  }
  return row;
}

PaletteRow PaletteRows::Row(int row) const {
  if (row < 0 || row >= count()) return {};
  if (listsTags_) {
    const TagCount& tag = tags_[static_cast<std::size_t>(row)];
    return {.text = "#" + tag.tag,
            .behind = " - " + std::to_string(tag.count) + (tag.count == 1 ? " snippet" : " snippets")};
  }
  if (IsHeading(row)) return {.heading = true, .text = row == 0 ? "In this snippet" : "In all libraries"};
  if (const auto found = FoundAt(row)) return FoundRow(*found);
  const auto place = PlaceAt(row);
  if (!place) return {};  // of a snippet that is gone
  PaletteRow line{.behind = " - line " + std::to_string(LineNumber(code_, place->begin)),
                  .place = "this snippet"};
  std::vector<TextRange> places = finder_.PlacesInCode(code_);
  std::erase_if(places, [&](const TextRange& one) { return one.begin < place->begin; });
  AddContext(code_, places, finder_.folding(), line.text, line.marks);
  return line;
}

}  // namespace snip
