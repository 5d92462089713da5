#pragma once

#include <windows.h>

#include "platform/Window.h"
#include "ui/main/SnippetTips.h"
#include "ui/main/frmTip.h"

namespace snip {

/// The tips over the snippet list: the list box, the tip window and the mouse behind `SnippetTips`.
class ListTips : private TipSurroundings {
 public:
  /// How often the mouse is looked at.
  static constexpr UINT kIntervalMs = 55;

  /// `pane` is what the list lies in.
  void Attach(HWND pane, HWND list);
  void Unload() { tip_.Destroy(); }
  /// Takes the font of the list.
  void TakeListFont();

  void tTip_Timer() { tips_.tTip_Timer(); }
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
  PointerQuery look_;
  POINT pointer_{};  ///< As PlaceOfPointer has found it, on the screen.
  // What was measured last: the pointer mostly rests on one entry, and measuring takes long.
  std::string measured_;
  int measuredWidth_ = 0;
  frmTip tip_;
  SnippetTips tips_{*this};
};

}  // namespace snip
