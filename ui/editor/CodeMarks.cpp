#include "ui/editor/CodeMarks.h"

#include "ui/editor/RichEditRanges.h"

namespace snip {

void CodeMarks::Set(Marks marks) {
  marks_ = std::move(marks);
  marked_ = 0;
  shown_ = empty();
}

void CodeMarks::MarkUpTo(std::size_t filledEnd, HWND richEdit) {
  const auto isNext = [&] {
    return marked_ < marks_.parts.size() && marks_.parts[marked_].second <= filledEnd;
  };
  if (!isNext()) return;
  const RichEditRanges ranges(richEdit);
  if (!ranges) return;
  RichEditRanges::Colouring marking(ranges);
  for (; isNext(); ++marked_) {
    const auto& [begin, end] = marks_.parts[marked_];
    marking.SetBackColor(begin, end, marks_.ground);
    if (marks_.ink) marking.SetColor(begin, end, *marks_.ink);
  }
}

std::optional<Marks::Part> CodeMarks::TakeShown(std::size_t filledEnd) {
  if (shown_ || marks_.parts[marks_.shown].second > filledEnd) return std::nullopt;
  shown_ = true;
  return marks_.parts[marks_.shown];
}

}  // namespace snip
