#pragma once

#include <windows.h>

#include <optional>

#include "platform/Subclass.h"
#include "ui/caption/CaptionPainter.h"

namespace snip {

/// Has a window's title bar painted by a `CaptionPainter`, by a window procedure in front of the window's
/// own, which is kept in the window property "OldMeProc".
class CaptionHook {
 public:
  CaptionHook() = default;
  ~CaptionHook() { Remove(); }
  CaptionHook(const CaptionHook&) = delete;
  CaptionHook& operator=(const CaptionHook&) = delete;

  /// Hooks a window of this thread, instead of the one hooked so far; does nothing for a window that another
  /// hook has. The painter has to live as long as the hook is installed; it may be shared, and reads its
  /// metrics again when the user changes them.
  void Install(HWND window, CaptionPainter& painter);

  /// Gives the window its own procedure and title bar back. Without effect when nothing is hooked, or the
  /// window is gone, which ends the hook by itself.
  void Remove();

 private:
  static CaptionHook* Of(HWND window);
  static void ShareWithOwner(HWND window, bool active);

  void Detach();
  LRESULT HandleMessage(const Subclass::Message& message);
  LRESULT OnNcActivate(Subclass::Message message);
  LRESULT OnNcPaint(Subclass::Message message);
  LRESULT OnSettingsChanged(const Subclass::Message& message);
  void TakeOverFrame(bool take);
  void PaintAgain();
  void Paint();

  Subclass subclass_;
  HWND window_ = nullptr;
  CaptionPainter* painter_ = nullptr;
  bool active_ = false;
  bool dialogActive_ = false;  ///< A hooked window that this one owns is active.
  bool frameTaken_ = false;
  std::optional<HICON> icon_;  ///< The window's or its class's; null when there is none.
};

}  // namespace snip
