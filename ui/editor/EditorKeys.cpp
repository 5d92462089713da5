#include "ui/editor/EditorKeys.h"

#include <algorithm>
#include <array>

namespace snip {
namespace {

// The platform's numbers of keys.
constexpr unsigned kBack = 0x08;
constexpr unsigned kTab = 0x09;
constexpr unsigned kReturn = 0x0D;
constexpr unsigned kPageUp = 0x21;  // the first of those that move the caret
constexpr unsigned kDown = 0x28;    // the last of them
constexpr unsigned kInsert = 0x2D;
constexpr unsigned kDelete = 0x2E;

enum Held : unsigned { kNothing = 0, kShift = 1, kControl = 2, kAlt = 4 };

unsigned HeldWith(const EditorKey& key) {
  return (key.shift ? kShift : 0U) | (key.control ? kControl : 0U) | (key.alt ? kAlt : 0U);
}

struct Rule {
  unsigned held;
  unsigned first, last;
  KeyAction action;
  bool edits;  ///< Is stopped in a locked field.
};

/// The keys that are more than the character they give. Of those with Ctrl or Alt no other has an effect.
constexpr std::array<Rule, 19> kRules = {{
    {kNothing, kBack, kBack, KeyAction::Pass, true},
    {kShift, kBack, kBack, KeyAction::Pass, true},
    {kControl, kBack, kBack, KeyAction::Pass, true},
    {kAlt, kBack, kBack, KeyAction::Pass, true},  // undoes
    {kNothing, kReturn, kReturn, KeyAction::Pass, true},
    {kShift, kReturn, kReturn, KeyAction::NewLine, true},
    {kControl, kReturn, kReturn, KeyAction::NewLine, true},
    {kNothing, kDelete, kDelete, KeyAction::Pass, true},
    {kShift, kDelete, kDelete, KeyAction::Pass, true},  // cuts
    {kControl, kDelete, kDelete, KeyAction::Pass, true},
    {kShift, kInsert, kInsert, KeyAction::Paste, true},
    {kControl, kInsert, kInsert, KeyAction::Pass, false},  // copies
    {kControl, 'A', 'A', KeyAction::Pass, false},
    {kControl, 'C', 'C', KeyAction::Pass, false},
    {kControl, 'V', 'V', KeyAction::Paste, true},
    {kControl, 'X', 'X', KeyAction::Pass, true},
    {kControl, 'Y', 'Z', KeyAction::Pass, true},
    {kControl, kPageUp, kDown, KeyAction::Pass, false},
    {kControl | kShift, kPageUp, kDown, KeyAction::Pass, false},
}};

}  // namespace

KeyAction ActionOf(const EditorKey& key, bool locked) {
  // Tab is a character while the code is edited; in a field that is only read it moves on.
  if (key.code == kTab && locked && !key.alt) return KeyAction::MoveOn;
  const unsigned held = HeldWith(key);
  const auto* const rule = std::find_if(kRules.begin(), kRules.end(), [&](const Rule& candidate) {
    return candidate.held == held && candidate.first <= key.code && key.code <= candidate.last;
  });
  if (rule != kRules.end()) return locked && rule->edits ? KeyAction::Stop : rule->action;
  return key.control || key.alt ? KeyAction::Stop : KeyAction::Pass;
}

bool TakesCharacter(unsigned char character, const EditorKey& key, bool locked) {
  // Plain edit controls select, copy, cut and undo by characters, which rich-edit controls leave out.
  constexpr unsigned char selectAll = 1;
  constexpr unsigned char copy = 3;
  constexpr unsigned char cut = 24;
  constexpr unsigned char undo = 26;
  constexpr unsigned char deleteWord = 127;
  if (character == selectAll || character == copy) return true;
  if (locked) return false;
  if (character == cut || character == undo) return true;
  if (character == deleteWord) return false;
  if (character >= ' ') return true;
  // With Ctrl these come of letters: Ctrl+I would be a tab. A line end was made when the key came.
  const bool plain = !key.control && !(character == '\r' && key.shift);
  return plain && (character == '\b' || character == '\t' || character == '\r');
}

}  // namespace snip
