#pragma once

#include <windows.h>
#include <ole2.h>
#include <tom.h>

#include <cstddef>
#include <string>

#include "platform/Com.h"

namespace snip {

/// Reads and colours parts of a rich-edit control's text by its object model: without touching the
/// selection, without scrolling, and (unlike by messages) without an entry in the control's list of what can
/// be undone.
class RichEditRanges {
 public:
  RichEditRanges() = default;
  /// False afterwards when the control has no object model.
  explicit RichEditRanges(HWND control);
  explicit operator bool() const { return static_cast<bool>(range_); }

  /// Number of characters, a line end counting one.
  std::size_t TextLength() const;

  /// The characters [begin, end), fewer when the control does not tell them.
  std::u16string Text(std::size_t begin, std::size_t end) const;

  /// What is changed while one of these lives leaves no entry. It should be short: the user's edits in it
  /// cannot be undone either.
  class Unrecorded {
   public:
    explicit Unrecorded(const RichEditRanges& ranges);
    ~Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;

   private:
    const RichEditRanges& ranges_;
  };

  /// Colours may be set while one of these lives, which are painted when it goes. Unrecorded as well.
  class Colouring {
   public:
    explicit Colouring(const RichEditRanges& ranges);
    ~Colouring();
    Colouring(const Colouring&) = delete;
    Colouring& operator=(const Colouring&) = delete;
    /// Colours the characters [begin, end).
    void SetColor(std::size_t begin, std::size_t end, COLORREF color) const;
    /// The colour behind them.
    void SetBackColor(std::size_t begin, std::size_t end, COLORREF color) const;

   private:
    const RichEditRanges& ranges_;
    Unrecorded unrecorded_;
  };

 private:
  ComPtr<ITextDocument> document_;
  ComPtr<ITextRange> range_;
  /// A look of which nothing is told but the colour. The control takes it at once, whereas it tells the look
  /// of a range by going through its characters one by one, each time from the text's first line.
  ComPtr<ITextFont> look_;
};

}  // namespace snip
