#pragma once

#include <windows.h>

#include <optional>
#include <utility>
#include <vector>

namespace snip {

/// Parts of a text that are marked.
struct Marks {
  using Part = std::pair<std::size_t, std::size_t>;
  std::vector<Part> parts{};  ///< [begin, end), in order and without overlap.
  std::size_t shown = 0;      ///< Which of them is selected and scrolled to.
  COLORREF ground = 0;
  std::optional<COLORREF> ink{};  ///< Of the characters, if not their own.
  friend bool operator==(const Marks&, const Marks&) = default;
};

/// Marks parts of a control's text as far as it is filled in. Places count the control's characters.
class CodeMarks {
 public:
  void Set(Marks marks);
  bool empty() const { return marks_.parts.empty(); }

  /// Marks what is filled in by now in a rich-edit control. A null one has no marks.
  void MarkUpTo(std::size_t filledEnd, HWND richEdit);
  /// The part that is to be selected, once, as soon as the control is filled as far as its end.
  std::optional<Marks::Part> TakeShown(std::size_t filledEnd);

 private:
  Marks marks_;
  std::size_t marked_ = 0;  ///< The parts before it are marked.
  bool shown_ = true;
};

}  // namespace snip
