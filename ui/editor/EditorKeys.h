#pragma once

namespace snip {

/// A key that is pressed, by the platform's virtual key code, and what is held with it.
struct EditorKey {
  unsigned code = 0;
  bool shift = false;
  bool control = false;
  bool alt = false;  ///< With Ctrl as well it is AltGr, which gives characters alone.
};

enum class KeyAction {
  Pass,     ///< The control knows it.
  Stop,     ///< Has no effect in code: the control would format the text, or do what it alone knows.
  Paste,    ///< As text alone.
  NewLine,  ///< A line end like that of Enter; the control would break the line within a paragraph.
  MoveOn,   ///< To the next field, or with Shift to the one before.
};

/// What a key does in the code field. A locked field can be read, searched by the caret and copied from.
KeyAction ActionOf(const EditorKey& key, bool locked);

/// Whether the control is to get a character, which comes behind the key that gives it; `key` tells what is
/// held.
bool TakesCharacter(unsigned char character, const EditorKey& key, bool locked);

}  // namespace snip
