#pragma once

#include <cstdint>
#include <string>

#include "platform/Geometry.h"
#include "ui/menu/MenuPlacement.h"

namespace snip {

/// What MenuInput asks of the menu's window, which does it at once.
///
/// In the functions that return something, others act: the owner may change the items, open, unload or
/// destroy the menu. They are false when the menu is gone (the object, not its window): the caller returns
/// then without touching anything of its own. A caller has its state settled before it calls any function;
/// input that comes in between is handled as any other.
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

  // Sounds, which play whatever the user's choice about the sounds of toolbars is.
  virtual void PlaySystemSound(std::int16_t index) = 0;  ///< See SystemSounds.h.
  virtual void PlayOfficeSound(const char* eventName) = 0;

  /// Makes the form, hidden, or what is missing of it: the window, the tip, the picture painter, the metrics.
  [[nodiscard]] virtual bool Load() = 0;
  /// Puts the form at the corner with no size, shows it, makes it topmost, then gives it one size after the
  /// other, each painted and each after its wait. Nothing else of the thread runs in between.
  [[nodiscard]] virtual bool Unfold(const Unfolding& unfolding) = 0;
  virtual void Hide() = 0;
  /// Makes the window that was given to `Popup` the form's owner, so that the form stays above it and goes
  /// with it when it is minimized.
  virtual void BecomeOwned() = 0;
  virtual void BecomeUnowned() = 0;
  virtual void DropTopmost() = 0;
  /// Of the whole window, in pixels. Place and width stay.
  virtual void SetHeight(int height) = 0;
  /// Has the system drag the form with the held mouse; returns when the mouse is released.
  [[nodiscard]] virtual bool StartSystemDrag(Point screen) = 0;
  /// Lets the messages that wait be handled.
  [[nodiscard]] virtual bool RunPendingEvents() = 0;
  /// Gives back the tip and the picture painter.
  virtual void ReleaseParts() = 0;
  virtual void DestroyForm() = 0;

  virtual void TakeCapture() = 0;
  /// Whichever window of the thread has it.
  virtual void ReleaseCapture() = 0;
  /// Posts a click to the window at a place in screen pixels, as the part of the window there expects one:
  /// the client area with the place in client pixels, any other part with its number. `message` is
  /// WM_LBUTTONDOWN or WM_RBUTTONDOWN, `keys` are its MK_ flags.
  virtual void PostClick(std::uint32_t message, std::uint32_t keys, Point screen) = 0;
  /// `tClose`, every MenuInput::kCloseInterval milliseconds.
  virtual void StartTimer() = 0;
  virtual void StopTimer() = 0;
  /// At the tip's own choice of place: below the mouse pointer.
  virtual void ShowTip(const std::string& text) = 0;
  virtual void HideTip() = 0;
};

}  // namespace snip
