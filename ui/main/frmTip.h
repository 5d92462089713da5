#pragma once

#include <optional>
#include <string>

#include "platform/AccessibleList.h"
#include "platform/TipWindow.h"
#include "platform/Window.h"
#include "ui/main/SnippetTips.h"

namespace snip {

/// A borderless window in the system's tip colours that shows one line of text above everything else, without
/// ever taking the focus. A click on it goes to what lies beneath.
class frmTip : public Window, public TipWindow {
 public:
  frmTip() = default;
  ~frmTip() override;

  /// Makes the window, hidden; otherwise the first tip does.
  bool Load();
  /// The font stays the caller's.
  void SetFont(HFONT font) { font_ = font; }
  /// The window whose extension it is: a click over it goes there and leaves the tip.
  void SetExtended(HWND window) { extended_ = window; }

  void ShowTip(const std::string& text, int x, int y) override;
  /// The same with the left top corner at a place that may be 0, as the edge of the screen is.
  void ShowTipAt(const std::string& text, Point corner) { Show(text, corner.x, corner.y); }
  void Hide() override;
  bool Visible() const override { return IsWindowVisible(hWnd()) != 0; }
  bool Hides(HWND window, Point screen) override;

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Show(const std::string& text, std::optional<int> x, std::optional<int> y);
  void Form_Paint();
  bool ExtendsAt(POINT screen) const;
  HWND Beneath(POINT screen);
  void PassClickOn(UINT message, WPARAM wParam, POINT place);

  AccessiblePart accessible_{*this, ROLE_SYSTEM_TOOLTIP};
  std::string text_;
  HFONT font_ = nullptr;
  HWND extended_ = nullptr;
  bool lookedThrough_ = false;  ///< Hit tests answer that the tip is not there.
};

/// The tips over the snippet list: the list box, the tip window and the mouse behind `SnippetTips`.
class ListTips : private TipSurroundings {
 public:
  /// `pane` contains the list.
  void Attach(HWND pane, HWND list);
  void Unload() { tip_.Destroy(); }
  /// Takes the font of the list.
  void TakeListFont();

  /// False when the pointer is elsewhere, so that there is nothing to look at until it has moved.
  bool tTip_Timer() {
    tips_.tTip_Timer();
    return place_ != Place::Elsewhere;
  }
  void Hide() { tip_.Hide(); }

 private:
  Place PlaceOfPointer() override;
  std::int32_t EntryAtPointer() const override;
  std::string EntryText(std::int32_t entry) const override;
  Point OnScreen(int y) const override;
  int TopEntry() const override;
  int EntryHeight() const override;
  int TextWidth(const std::string& text) override;
  int PaneWidth() const override;
  bool TipVisible() const override { return tip_.Visible(); }
  void ShowTip(const std::string& text, int x, int y) override { tip_.ShowTipAt(text, {x, y}); }
  void HideTip() override { tip_.Hide(); }

  HWND pane_ = nullptr;
  HWND list_ = nullptr;
  // As PlaceOfPointer has found the pointer.
  POINT pointer_{};  ///< On the screen.
  Place place_ = Place::Elsewhere;
  // What was measured last: the pointer mostly rests on one entry, and measuring takes long.
  std::string measured_;
  int measuredWidth_ = 0;
  frmTip tip_;
  SnippetTips tips_{*this};
};

}  // namespace snip
