#pragma once

#include <windows.h>

#include <optional>

#include "platform/Subclass.h"
#include "ui/caption/CaptionPainter.h"

namespace snip {

/// Subclasses a window so that a `CaptionPainter` paints its title bar. The window's own procedure is kept in
/// the window property "OldMeProc".
class CaptionHook {
 public:
  CaptionHook() = default;
  ~CaptionHook() { Remove(); }
  CaptionHook(const CaptionHook&) = delete;
  CaptionHook& operator=(const CaptionHook&) = delete;

  /// Hooks a window of this thread instead of the previous one; does nothing if another hook has the window.
  /// The painter has to live as long as the hook is installed; it may be shared, and reads its metrics again
  /// when the user changes them.
  void Install(HWND window, CaptionPainter& painter);

  /// Restores the window's procedure and title bar. Does nothing if no window is hooked; destroying the
  /// window removes the hook.
  void Remove();

 private:
  static CaptionHook* Of(HWND window);
  static void ShareWithOwner(HWND window, bool active);

  void Detach();
  LRESULT HandleMessage(const Subclass::Message& message);
  LRESULT OnNcActivate(Subclass::Message message);
  LRESULT OnNcPaint(Subclass::Message message);
  LRESULT OnSettingsChanged(const Subclass::Message& message);
  void UseClassicFrame(bool use);
  void PaintAgain();
  void Paint();

  Subclass subclass_;
  HWND window_ = nullptr;
  CaptionPainter* painter_ = nullptr;
  bool active_ = false;
  bool dialogActive_ = false;  ///< A hooked window that this one owns is active.
  bool usesClassicFrame_ = false;
  std::optional<HICON> icon_;  ///< The window's or its class's, null if there is none; read when painted.
};

}  // namespace snip
