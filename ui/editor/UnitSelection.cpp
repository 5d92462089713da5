#include "ui/editor/UnitSelection.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace snip {

UnitSelection::UnitSelection(std::string text, SelectionUnit unit, std::size_t pressed)
    : text_(std::move(text)), unit_(unit), pressed_(UnitAt(pressed)) {}

UnitSelection::Range UnitSelection::To(std::size_t place) const {
  const ColumnRange reached = UnitAt(place);
  if (reached.begin < pressed_.begin) return {pressed_.end, reached.begin};
  return {pressed_.begin, std::max(pressed_.end, reached.end)};
}

ColumnRange UnitSelection::UnitAt(std::size_t place) const {
  const std::size_t at = std::min(place, text_.size());
  const std::size_t begin = at == 0 ? 0 : text_.rfind('\r', at - 1) + 1;
  const std::size_t end = std::min(text_.find('\r', at), text_.size());
  if (unit_ == SelectionUnit::Line) return {begin, std::min(end + 1, text_.size())};
  const ColumnRange word = WordAt(std::string_view(text_).substr(begin, end - begin), at - begin);
  return {begin + word.begin, begin + word.end};
}

}  // namespace snip
