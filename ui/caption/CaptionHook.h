#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "ui/caption/CaptionPainter.h"

namespace snip {

/// Has a window's title bar painted by a `CaptionPainter`, by a window procedure in front of the window's
/// own.
///
/// The window's own procedure is kept in the window property "OldMeProc". When somebody has put a procedure
/// in front of ours since then, ours stays in the chain after the removal and only passes messages on.
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
  /// Expired once the hook is removed. A property tells it too, but takes a request to Wine's server each
  /// time.
  using Installed = std::weak_ptr<CaptionHook>;

  static CaptionHook* Of(HWND window);
  static LRESULT CALLBACK HookProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  /// Null for a removed one. What is called may remove it again.
  static CaptionHook* Still(const Installed& installed) { return installed.lock().get(); }
  static void PaintAgain(const Installed& installed);
  static void ShareWithOwner(HWND window, bool active);

  void Detach();
  LRESULT HandleMessage(WNDPROC previous, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT OnNcActivate(WNDPROC previous, WPARAM wParam, LPARAM lParam);
  LRESULT OnNcPaint(WNDPROC previous, WPARAM updateRegion, LPARAM lParam);
  LRESULT OnSettingsChanged(WNDPROC previous, UINT message, WPARAM wParam, LPARAM lParam);
  void TakeOverFrame(bool take);
  void Paint();

  std::shared_ptr<CaptionHook> installed_;  ///< This hook, while it has a window.
  HWND window_ = nullptr;
  WNDPROC previous_ = nullptr;  ///< As in the property, which takes long to be asked for with each message.
  CaptionPainter* painter_ = nullptr;
  bool active_ = false;
  bool dialogActive_ = false;  ///< A hooked window that this one owns is active.
  bool frameTaken_ = false;
  std::optional<HICON> icon_;  ///< The window's or its class's; null when there is none.
};

}  // namespace snip
