#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/Mouse.h"
#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuLayout.h"
#include "ui/menu/MenuMetrics.h"
#include "ui/menu/MenuPlacement.h"
#include "ui/menu/MenuPort.h"

namespace snip {

struct MenuMouse {
  /// The one that was pressed or released; in a move all that are held, 0 for none.
  int button = 0;
  bool shift = false;
  Point at;      ///< Client pixels; outside the client area too, while the menu has the capture.
  Point screen;  ///< The same place in screen pixels.
};

/// The keys that a menu understands, by their virtual-key codes. Any other code may be passed and does
/// nothing.
enum class MenuKey : std::uint32_t { Escape = 0x1B, Up = 0x26, Down = 0x28 };

/// Who wants a form closed, by the numbers of the query-unload modes.
enum class CloseReason { ControlMenu = 0, Code = 1, WindowsEnds = 2, TaskManager = 3, ParentForm = 4 };

enum class MenuState {
  Hidden,   ///< There may be no form.
  Docked,   ///< A drop-down: has the capture, and closes when the user turns to anything else.
  Floating  ///< Torn off: a palette that stays until its close box is pressed.
};

/// How a menu reacts to the mouse and the keyboard: a state machine without a window, which acts through a
/// MenuPort.
///
/// There is no input for the mouse wheel: the window swallows it.
class MenuInput {
 public:
  /// Milliseconds between two calls of tClose_Timer.
  static constexpr int kCloseInterval = 55;
  /// The tip of the drag bar is shown after this many ticks on it: two thirds of a second.
  static constexpr int kTicksToTip = 12;
  static constexpr const char* kDragTip = "Drag to make this menu float";
  /// A pointer within this many pixels of its old place counts as not moved.
  static constexpr int kStillPixels = 4;

  /// The metrics may change with every `Load`, the items at any time.
  MenuInput(const MenuItems& items, const MenuMetrics& metrics, MenuPort& port)
      : items_(items), metrics_(metrics), port_(port) {}
  MenuInput(const MenuInput&) = delete;
  MenuInput& operator=(const MenuInput&) = delete;

  /// When off, only the left button acts on items, drag bar and close box. A click outside the menu closes it
  /// with any button.
  bool AllowRightClick = false;

  /// Opens the menu, docked, from any state. A menu without items shows nothing, but its timer runs.
  void Popup(const PopupRequest& request);

  /// The form's client area has a new size, in pixels; hit tests use it.
  void Resized(Size client) { client_ = client; }

  void MouseMove(const MenuMouse& mouse);
  void MouseDown(const MenuMouse& mouse);
  void MouseUp(const MenuMouse& mouse);
  /// WM_MOUSELEAVE: the pointer has left a torn-off menu that does not have the capture.
  void MouseLeave();
  /// Another window has the capture now. Not to be called when the menu's window takes the capture again.
  void CaptureLost();

  void KeyDown(MenuKey key);
  void tClose_Timer();

  /// What a release on the item does, for assistive programs.
  void DoDefaultAction(int index);

  /// The form or its owner was deactivated or lost the focus. This is the only sign of a click outside the
  /// program, which the capture does not cover.
  void Deactivated();

  /// A request to close the menu. Only those of the program itself and of the end of Windows are granted.
  void QueryUnload(CloseReason reason);
  void Unload();

  MenuState State() const { return state_; }
  MenuMode Mode() const { return {allowDetach_, state_ == MenuState::Floating}; }
  /// The index of an item, or one of MenuHot.
  int HotItem() const { return hot_ < items_.iCount() ? hot_ : MenuHot::kNoItem; }
  bool CloseBoxPushed() const { return closeBoxPushed_; }
  MenuLayout Layout() const { return {items_, metrics_, Mode(), client_}; }

 private:
  bool TearOff();
  void Drag(Point screen);
  void ClickOutside(const MenuMouse& mouse);
  void Choose(const MenuItem& item);
  void BeginUnload();
  void SetHot(int hot);
  void PushCloseBox(bool pushed);
  void LeaveScreen();
  void TakeCapture();
  void ReleaseCapture();
  void HideTip();
  bool ReactsTo(int buttons) const;

  const MenuItems& items_;
  const MenuMetrics& metrics_;
  MenuPort& port_;
  Size client_;
  MenuState state_ = MenuState::Hidden;
  bool loaded_ = false;
  bool allowDetach_ = false;
  int hot_ = MenuHot::kNothingYet;
  bool captured_ = false;
  bool closeBoxPushed_ = false;
  bool tipShown_ = false;
  int tipTicks_ = 0;
  bool openingPress_ = false;  ///< The press that opened the menu may still be held, at `openedAt_`.
  Point openedAt_;             ///< Where the pointer was then; screen pixels.
  bool hideMenuDue_ = false;   ///< The menu was unloaded, but has not raised `HideMenu` yet.
  /// Counts calls of `Popup` and unloads: if one happens during an event, the interrupted function must stop.
  std::uint64_t session_ = 0;
};

}  // namespace snip
