#pragma once

#include <windows.h>
#include <ole2.h>
#include <tom.h>

#include <cstddef>

#include "platform/Com.h"

namespace snip {

/// Colours parts of a rich-edit control's text by its object model: without touching the selection, without
/// scrolling, and (unlike by messages) without an entry in the control's list of what can be undone.
class RangeColours {
 public:
  RangeColours() = default;
  /// False afterwards when the control has no object model.
  explicit RangeColours(HWND control);
  explicit operator bool() const { return static_cast<bool>(range_); }

  /// Number of characters, a line end counting one.
  std::size_t TextLength() const;

  /// Colours may be set while one of these lives. It should be short: edits made meanwhile cannot be undone.
  class Session {
   public:
    explicit Session(const RangeColours& colours);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Colours the characters [begin, end).
    void Set(std::size_t begin, std::size_t end, COLORREF color);

   private:
    const RangeColours& colours_;
  };

 private:
  ComPtr<ITextDocument> document_;
  ComPtr<ITextRange> range_;
  /// A look of which nothing is told but the colour. The control takes it at once, whereas it tells the look
  /// of a range by going through its characters one by one, each time from the text's first line.
  ComPtr<ITextFont> look_;
};

}  // namespace snip
