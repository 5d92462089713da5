#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "platform/MessageFunction.h"

namespace snip {

/// The four pictures of the message box, numbered as the elements of its `img` array.
enum class MessageIcon { Information = 0, Question = 1, Exclamation = 2, Critical = 3 };

/// What a style number asks for.
struct MessageBoxStyle {
  std::vector<MessageResult> buttons;  ///< Left to right; the first one is the default button.
  MessageIcon icon = MessageIcon::Information;
  std::int16_t sound = 0;  ///< Number of a standard sound event.
};

/// Only the bits 4 (Yes and No) and 1 (OK and Cancel) choose buttons and only 16 and 32 choose icons, tested
/// in an order that callers rely on: 48 holds the bit 32 and so shows the question icon, never the
/// exclamation.
MessageBoxStyle MessageBoxStyleFromNumber(int style);

/// The caption of a button, which is also what a screen reader says.
std::string MessageButtonCaption(MessageResult button);

/// The button that Escape presses: "Cancel", else a lone "OK". Between "Yes" and "No" Escape chooses nothing.
MessageResult const* EscapeButton(const MessageBoxStyle& style);

/// What the layout needs to know of the screen; everything in pixels.
struct MessageBoxMetrics {
  Size dialogUnit;  ///< Average width and height of a character of the dialog font.
  Size icon;
  int screenWidth = 0;  ///< Work area on which the box has to fit.
  int screenHeight = 0;
  /// Size of the prompt when wrapped at the given width.
  std::function<Size(int width)> measurePrompt;
};

/// Rectangles in client pixels.
struct MessageBoxLayout {
  Size client;
  Rect icon;
  Rect prompt;
  std::vector<Rect> buttons;
  bool promptOverflows = false;  ///< The prompt is higher than the screen allows and has to scroll.
};

MessageBoxLayout LayOutMessageBox(const MessageBoxStyle& style, const MessageBoxMetrics& metrics);

}  // namespace snip
