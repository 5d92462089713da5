#pragma once

#include <optional>
#include <string>

#include "platform/AccessibleList.h"
#include "platform/TipWindow.h"
#include "platform/Window.h"
#include "ui/main/SnippetTips.h"

namespace snip {

/// A borderless window in the system's tip colours that shows one line of text above everything else, without
/// ever taking the focus. A click on it goes to the window beneath.
class frmTip : public Window, public TipWindow {
 public:
  frmTip() = default;
  ~frmTip() override;

  /// Makes the hidden window now instead of with the first tip; false if it cannot be made.
  bool Load();
  /// The caller owns the font.
  void SetFont(HFONT font) { font_ = font; }
  /// The window that the tip extends: a click over it goes to it, and the tip stays.
  void SetExtended(HWND window) { extended_ = window; }

  void ShowTip(const std::string& text, int x, int y) override;
  /// The same, except that a coordinate of 0 is the edge of the screen instead of none.
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
  void Attach(HWND list);
  void Unload() { tip_.Destroy(); }
  /// Takes the font of the list.
  void TakeListFont();

  /// False while the pointer is elsewhere, so that polling may stop until it moves.
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
  int ListWidth() const override;
  bool TipVisible() const override { return tip_.Visible(); }
  void ShowTip(const std::string& text, int x, int y) override { tip_.ShowTipAt(text, {x, y}); }
  void HideTip() override { tip_.Hide(); }

  HWND list_ = nullptr;
  // What PlaceOfPointer found last.
  POINT pointer_{};  ///< On the screen.
  Place place_ = Place::Elsewhere;
  // The text measured last: the pointer mostly rests on one entry, and measuring is slow.
  std::string measured_;
  int measuredWidth_ = 0;
  frmTip tip_;
  SnippetTips tips_{*this};
};

}  // namespace snip
