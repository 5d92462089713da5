#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "ui/editor/CodeColouring.h"
#include "ui/editor/RtfText.h"

namespace snip {

/// Fills a rich-edit control with code in its colours, which is the quickest way to show it. A long text is
/// shown from its beginning at once and filled in in parts, a twelfth of the time that it takes as a whole
/// for 10,000 lines; to colour it line by line when it is there takes fifty times as long.
class CodeFilling {
 public:
  /// What is filled in at a time of a long text: it takes about 4 ms.
  static constexpr std::size_t kLinesOfPart = 48;

  explicit CodeFilling(CodeColouring& colouring) : colouring_(colouring) {}

  /// Whether a text is shown in parts, and replaced sooner with its control than in it.
  static bool IsLong(std::string_view text);

  /// Shows a text in place of the control's, a long one as far as `linesInSight` and some more. False when it
  /// has to be shown in another way.
  bool Start(HWND control, std::u16string characters, std::string columns, const RtfLook& look,
             std::size_t linesInSight);
  /// Adds some lines to a text that is shown in part.
  void AddPart(const RtfLook& look);
  /// What is not filled in is not to come any more.
  void Forget() { rest_.reset(); }

  bool unfinished() const { return rest_.has_value(); }
  /// Where the lines end that are filled in, without the last `lines` as long as more follow.
  std::size_t FilledEnd(std::size_t lines = 0) const;
  /// Characters of a text that is shown in part, with those to come.
  std::size_t WholeLength() const { return rest_->characters.size(); }

 private:
  struct Rest {
    std::u16string characters;   ///< Of the whole text.
    std::size_t shownLines = 0;  ///< The first lines, which the control has.
  };

  std::size_t EndOfPart(std::size_t firstLine, std::size_t lines) const;
  void Show(std::u16string_view characters, std::size_t firstLine, std::size_t endLine, const RtfLook& look,
            RtfScope scope);

  CodeColouring& colouring_;
  HWND control_ = nullptr;
  std::optional<Rest> rest_;
};

}  // namespace snip
