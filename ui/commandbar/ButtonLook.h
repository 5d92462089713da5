#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ui/commandbar/CommandBarButtons.h"

namespace snip {

enum class Edge {
  Flat,    ///< In the bar's back colour: takes an earlier edge away.
  Raised,  ///< The button under the mouse.
  Sunken,  ///< Pressed, or a toggle button that is on.
};

/// How a button is to be drawn; ButtonPlaces.h says where.
struct ButtonLook {
  bool shifted = false;     ///< Caption and picture one pixel right and down.
  Edge push = Edge::Flat;   ///< Of the whole button, or of the push part of a drop-down button.
  Edge arrow = Edge::Flat;  ///< Of the arrow part; of no meaning on other buttons.
  bool lightened = false;   ///< On the lightened face instead of the bar's back colour.
  friend bool operator==(const ButtonLook&, const ButtonLook&) = default;
};

/// What `RedrawButton` draws: a toggle button that is on is down, every other button flat, whatever its
/// State.
ButtonLook RedrawLook(const BarButton& button);

/// What `Paint` draws of one button: State 1 is down, whatever the type of the button. This is how a
/// container shows a push button down: it sets the State and has the bar repainted.
ButtonLook PaintLook(const BarButton& button);

/// The looks of a whole `Paint`, one for each button in order. None at design time: there a bar shows no
/// buttons, as it has none before the container's program runs.
std::vector<ButtonLook> PaintLooks(std::span<const BarButton> buttons, bool runMode);

/// The button under the mouse.
ButtonLook RaisedLook();

/// A button, or a part of it, under a held mouse button. The other part of a drop-down button stays what it
/// was: raised when the mouse had come onto the button, else flat.
ButtonLook PressedLook(const BarButton& button, ButtonPart part, bool hot);

/// The face of a toggle button that is on: 20 % lighter than the button face. Colours are COLORREF values.
std::uint32_t Lightened(std::uint32_t color);

}  // namespace snip
