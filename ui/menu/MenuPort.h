#pragma once

#include <cstdint>
#include <string>

#include "platform/Geometry.h"
#include "ui/menu/MenuPlacement.h"

namespace snip {

/// What MenuInput asks of the menu's window, which does it at once.
/// During the functions that return a value, the owner may change the items, or open, unload or destroy the
/// menu. They return false if the menu was destroyed (the object, not its window): the caller must return
/// then without touching its members. A caller must settle its state before it calls any function, because
/// input may come during the call.
///
/// The *form* is the window with all that belongs to it. The items belong to the menu itself and outlive it.
class MenuPort {
 public:
  virtual ~MenuPort() = default;

  // Painting: now or by invalidating; MenuInput::Layout() says where, MenuLook.h how.
  virtual void PaintRow(int index) = 0;
  /// With the close box, if there is one.
  virtual void PaintDragBar() = 0;
  virtual void PaintAll() = 0;

  [[nodiscard]] virtual bool RaiseSelected(std::int32_t ID) = 0;
  [[nodiscard]] virtual bool RaiseClicked(std::int32_t ID) = 0;
  [[nodiscard]] virtual bool RaiseHideMenu() = 0;

  // Sounds, which play even if the user has turned off the sounds of toolbars.
  virtual void PlaySystemSound(std::int16_t index) = 0;  ///< See SystemSounds.h.
  virtual void PlayOfficeSound(const char* eventName) = 0;

  /// Makes the hidden form, or the parts of it that are missing: the window, the tip, the picture painter,
  /// the metrics.
  [[nodiscard]] virtual bool Load() = 0;
  /// Puts the form at the corner with no size, shows it, makes it topmost, then waits, sets a size and
  /// paints, for one size after the other. The thread runs nothing else in between.
  [[nodiscard]] virtual bool Unfold(const Unfolding& unfolding) = 0;
  virtual void Hide() = 0;
  /// Makes the window that was given to `Popup` the form's owner, so that the form stays above it and goes
  /// with it when it is minimized.
  virtual void BecomeOwned() = 0;
  virtual void BecomeUnowned() = 0;
  virtual void DropTopmost() = 0;
  /// Of the whole window, in pixels. Place and width stay.
  virtual void SetHeight(int height) = 0;
  /// Lets the system drag the form while the mouse button is held; returns when it is released.
  [[nodiscard]] virtual bool StartSystemDrag(Point screen) = 0;
  /// Handles the messages that are waiting.
  [[nodiscard]] virtual bool RunPendingEvents() = 0;
  /// Releases the tip and the picture painter.
  virtual void ReleaseParts() = 0;
  virtual void DestroyForm() = 0;

  virtual void TakeCapture() = 0;
  /// From whichever window of the thread has it.
  virtual void ReleaseCapture() = 0;
  /// Posts a click to the window at a point in screen pixels: in its client area with client coordinates,
  /// elsewhere as a non-client message with the hit-test code. `message` is WM_LBUTTONDOWN or WM_RBUTTONDOWN,
  /// `keys` are its MK_ flags.
  virtual void PostClick(std::uint32_t message, std::uint32_t keys, Point screen) = 0;
  /// `tClose`, every MenuInput::kCloseInterval milliseconds.
  virtual void StartTimer() = 0;
  virtual void StopTimer() = 0;
  /// Below the mouse pointer, where the tip goes by itself.
  virtual void ShowTip(const std::string& text) = 0;
  virtual void HideTip() = 0;
};

}  // namespace snip
