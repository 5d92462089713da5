#pragma once

#include <windows.h>

#include "platform/Mouse.h"

namespace snip {

/// The button that a message tells of.
std::int16_t ButtonOf(UINT message);
/// The sum of the buttons among MK_ flags.
std::int16_t HeldButtons(WPARAM keys);
/// `MouseState::Shift` of MK_ flags, to which messages do not add Alt.
std::int16_t HeldShiftKeys(WPARAM keys, bool alt);

}  // namespace snip
