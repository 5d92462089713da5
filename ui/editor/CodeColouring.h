#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "ui/editor/CodeColours.h"
#include "ui/editor/ColouredText.h"
#include "ui/editor/RichEditRanges.h"

namespace snip {

/// Keeps the code in a rich-edit control coloured: at once what can be seen or is put in with its colours,
/// all else in slices while nothing else is to be done, and after a change only what it concerns. Characters
/// that came in and that the code page lacks it replaces by what is stored for them, so that the control
/// shows what will be saved. Without a control that can be coloured it does nothing.
class CodeColouring {
 public:
  /// What is known before a change of where it happens.
  struct Caret {
    std::size_t begin = 0;  ///< Of the selection.
    std::size_t end = 0;
    char16_t typed = 0;  ///< The character that a key puts there, if it is an ASCII one.
  };

  /// Works on a control from now on, which is empty; on none for null. `lineHeight` is in pixels.
  void Attach(HWND control, int lineHeight);
  bool active() const { return static_cast<bool>(ranges_); }
  void SetLineHeight(int lineHeight) { lineHeight_ = std::max(lineHeight, 1); }
  /// Changes the control's text or look in a way that cannot be undone.
  void WithoutUndo(const std::function<void()>& change);

  const CodeColours& colours() const { return colours_; }
  /// Takes the user's present colours. True when the shown text has to be coloured again.
  bool TakeColours(COLORREF fore);

  bool syntaxColors() const { return syntaxColors_; }
  void SetSyntaxColors(bool colouring);

  std::size_t TextLength() const { return ranges_.TextLength(); }

  /// Starts over with a text that the control does not show yet, but is filled with in colours.
  void Start(std::string columns);
  /// What is to be coloured in the lines [first, end) of that text.
  std::vector<HueRun> HuesOf(std::size_t first, std::size_t end) { return model_.Finish(first, end); }
  std::size_t lineCount() const { return model_.lineCount(); }
  /// Where a line starts; behind the last one is the end of the text.
  std::size_t LineStart(std::size_t line) const;
  /// Whether the control made of a text what was expected; some texts a control takes otherwise.
  bool AgreesWithControl() const { return model_.text().size() == ranges_.TextLength(); }
  /// Starts over with a text that the control shows in the fore colour.
  void StartUncoloured(std::string columns);
  /// What the control shows: lines end in one CR, and characters from 0x80 on are some letter.
  const std::string& text() const { return model_.text(); }

  /// `typed` is what a key will put there, or 0.
  Caret CaretBefore(WPARAM typed) const;
  /// Follows what a key, a paste or the like did at the caret.
  void FollowEdit(Caret before);
  /// Follows any other change.
  void FollowChange();

  /// Colours the lines that can be seen.
  void FinishVisible();
  /// Colours some lines more; false when all are, or a change is still to be followed.
  bool FinishSome();
  bool finished() const { return !active() || model_.finished(); }

  /// While it colours, the control may tell of changes that are none.
  bool busy() const { return busy_; }

 private:
  /// Makes the control show the characters from `begin` on as they can be stored.
  void ShowAsStored(std::size_t begin, std::u16string& characters);
  void Finish(std::size_t firstLine, std::size_t endLine);
  COLORREF ColorOf(Hue hue) const;
  Hue HueAtCaret() const;
  std::size_t FirstVisibleLine() const;
  std::size_t VisibleLines() const;

  HWND control_ = nullptr;
  int lineHeight_ = 1;
  RichEditRanges ranges_;
  ColouredText model_;
  CodeColours colours_;
  bool syntaxColors_ = true;
  bool highContrast_ = false;
  bool busy_ = false;
  std::size_t slice_ = 0;  ///< The line at which the next slice begins.
};

}  // namespace snip
