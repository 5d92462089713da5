#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Geometry.h"
#include "ui/menu/MenuPlacement.h"

namespace snip {

/// What MenuInput asks of the menu's window.
///
/// MenuInput speaks of the *form*: the window with all that belongs to it. The items belong to the menu
/// itself and outlive it.
namespace MenuEffect {

// ---- Painting: now or by invalidating; MenuInput::Layout() says where, MenuLook.h how.

struct PaintRow {
  int index = 0;
};

/// With the close box, if there is one.
struct PaintDragBar {};

struct PaintCloseBox {};

struct PaintAll {};

// ---- Events. The owner may do anything in them.

struct RaiseSelected {
  std::int32_t ID = 0;
};

struct RaiseClicked {
  std::int32_t ID = 0;
};

struct RaiseHideMenu {};

// ---- Sounds. They play whatever the user's choice about the sounds of toolbars is.

struct PlaySystemSound {
  std::int16_t index = 0;  ///< See SystemSounds.h.
};

struct PlayOfficeSound {
  std::string_view eventName;  ///< A constant.
};

// ---- The window.

/// Make the form, hidden, or what is missing of it: the window, the tip, the picture painter, the metrics.
struct Load {};

/// Put the form at the corner with no size, show it (SW_SHOWNORMAL), make it topmost without moving or sizing
/// it, then give it one size after the other, each painted and each after its wait. Nothing else of the
/// thread may run in between.
struct Unfold {
  Unfolding unfolding;
};

struct Hide {};

/// Make the window that was given to `Popup` the form's owner, so that the form stays above it and goes with
/// it when it is minimized.
struct BecomeOwned {};

/// Have no owner.
struct BecomeUnowned {};

struct DropTopmost {};

/// Of the whole window, in pixels. Place and width stay.
struct SetHeight {
  int height = 0;
};

/// Have the system drag the form with the held mouse: WM_NCLBUTTONDOWN on the caption, at a place in screen
/// pixels. It returns when the mouse is released.
struct StartSystemDrag {
  Point screen;
};

/// Let the messages that wait be handled.
struct RunPendingEvents {};

/// Give back the tip and the picture painter.
struct ReleaseParts {};

/// Destroy the window.
struct Destroy {};

// ---- Mouse, timer, tip.

struct TakeCapture {};

/// Whichever window of the thread holds it.
struct ReleaseCapture {};

/// Post a click to the window at a place in screen pixels, as the part of it that is there expects one: its
/// client area with the place in client pixels, any other part with the part's number.
struct PostClick {
  std::uint32_t message = 0;  ///< WM_LBUTTONDOWN or WM_RBUTTONDOWN.
  std::uint32_t keys = 0;     ///< MK_LBUTTON or MK_RBUTTON, and perhaps MK_SHIFT.
  Point screen;
};

/// `tClose`, every MenuInput::kCloseInterval milliseconds.
struct StartTimer {};

struct StopTimer {};

/// At the tip's own choice of place: below the mouse pointer.
struct ShowTip {
  std::string_view text;  ///< A constant.
};

struct HideTip {};

using Any =
    std::variant<PaintRow, PaintDragBar, PaintCloseBox, PaintAll, RaiseSelected, RaiseClicked, RaiseHideMenu,
                 PlaySystemSound, PlayOfficeSound, Load, Unfold, Hide, BecomeOwned, BecomeUnowned,
                 DropTopmost, SetHeight, StartSystemDrag, RunPendingEvents, ReleaseParts, Destroy,
                 TakeCapture, ReleaseCapture, PostClick, StartTimer, StopTimer, ShowTip, HideTip>;

}  // namespace MenuEffect

/// The menu's answer to one input.
///
/// The window applies the effects in order. Some of them let others act: the owner in an event, who may
/// change the items, open or unload the menu, or destroy it, and anybody while pending events or the system's
/// dragging run. Such an effect is always the last of its list, and what is to be decided after it is not in
/// the list but in `then`: once the list is applied, a menu that still exists calls `then`, if it is set, and
/// treats its answer likewise:
///
///     for (;;) {
///       for (const MenuEffect::Any& effect : reaction.effects) Apply(effect);
///       if (destroyed || !reaction.then) break;  // the menu object, not its window
///       reaction = reaction.then();
///     }
///
/// Input that comes in between is handled as any other. What has become pointless by it, `then` leaves out.
struct MenuReaction {
  std::vector<MenuEffect::Any> effects;
  std::function<MenuReaction()> then;
};

}  // namespace snip
