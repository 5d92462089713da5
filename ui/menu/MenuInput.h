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

/// The keys that a menu knows, by their virtual-key codes. Any other code may be passed and does nothing.
enum class MenuKey : std::uint32_t { Escape = 0x1B, Up = 0x26, Down = 0x28 };

/// Who wants a form closed, by the numbers of the query-unload modes.
enum class CloseReason { ControlMenu = 0, Code = 1, WindowsEnds = 2, TaskManager = 3, ParentForm = 4 };

enum class MenuState {
  Hidden,   ///< Perhaps without a form.
  Docked,   ///< A drop-down: has the mouse, and closes by whatever the user turns to.
  Floating  ///< Torn off: a palette that stays until its close box is pressed.
};

/// How a menu follows the mouse and the keyboard, without a window: what it asks of one goes through a
/// MenuPort.
///
/// There is no input for the mouse wheel: the window swallows it.
class MenuInput {
 public:
  /// Milliseconds between two calls of tClose_Timer.
  static constexpr int kCloseInterval = 55;
  /// After so many ticks on the drag bar its tip is shown: after two thirds of a second.
  static constexpr int kTicksToTip = 12;
  static constexpr const char* kDragTip = "Drag to make this menu float";
  /// A pointer that is not farther than so many pixels from where it was has not been moved.
  static constexpr int kStillPixels = 4;

  /// The metrics may change with every `Load`, the items at any time.
  MenuInput(const MenuItems& items, const MenuMetrics& metrics, MenuPort& port)
      : items_(items), metrics_(metrics), port_(port) {}
  MenuInput(const MenuInput&) = delete;
  MenuInput& operator=(const MenuInput&) = delete;

  /// When off, only the left button acts on items, drag bar and close box. A click outside the menu closes it
  /// with any button.
  bool AllowRightClick = false;

  /// Opens the menu, docked, wherever it is and whatever state it is in. A menu without items shows nothing,
  /// but its timer runs.
  void Popup(const PopupRequest& request);

  /// The form has a new size: of its client area, in pixels. Where the pointer is to be looked up in it.
  void Resized(Size client) { client_ = client; }

  void MouseMove(const MenuMouse& mouse);
  void MouseDown(const MenuMouse& mouse);
  void MouseUp(const MenuMouse& mouse);
  /// The pointer has left the window while the menu did not have the capture, which only a torn-off menu is
  /// told (WM_MOUSELEAVE).
  void MouseLeave();
  /// Another window has the mouse now. Not to be called when the menu's window takes the capture that it has.
  void CaptureLost();

  void KeyDown(MenuKey key);
  void tClose_Timer();

  /// What a release on the item does, for assistive programs.
  void DoDefaultAction(int index);

  /// The form or its owner was deactivated or lost the focus. A click outside the program is seen only in
  /// this way, as the capture does not reach that far.
  void Deactivated();

  /// Somebody asks for the menu to be closed. Only the program itself and the end of Windows are obeyed.
  void QueryUnload(CloseReason reason);
  void Unload();

  MenuState State() const { return state_; }
  MenuMode Mode() const { return {allowDetach_, state_ == MenuState::Floating}; }
  /// The place of an item, or one of MenuHot.
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
  bool Acts(int buttons) const;

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
  /// Pointer on opening, as long as the press that may have opened the menu may still be held there.
  bool openingPress_ = false;
  Point openedAt_;
  /// An unloaded menu owes its owner the last `HideMenu`.
  bool hideMenuDue_ = false;
  /// Counts what makes an earlier course of events pointless: each `Popup` and each unload.
  std::uint64_t session_ = 0;
};

}  // namespace snip
