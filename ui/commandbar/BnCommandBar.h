#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/AccessibleList.h"
#include "platform/Handle.h"
#include "platform/Lifetime.h"
#include "platform/MessageFunction.h"
#include "platform/OleDragSource.h"
#include "platform/OleDropTarget.h"
#include "platform/TipWindow.h"
#include "platform/Twips.h"
#include "platform/Window.h"
#include "ui/commandbar/BarButtonDrawing.h"
#include "ui/commandbar/BarPort.h"
#include "ui/commandbar/CommandBarAccessible.h"
#include "ui/commandbar/CommandBarButtons.h"
#include "ui/commandbar/CommandBarInput.h"
#include "ui/commandbar/CommandBarProperties.h"
#include "ui/commandbar/PaintEffects.h"
#include "ui/commandbar/Picture.h"
#include "ui/commandbar/SoundEffects.h"

namespace snip {

/// The toolbar control. It knows nothing of what its buttons are for: a container adds them and reacts to the
/// events. Coordinates are client pixels unless said otherwise; buttons are numbered from 0.
///
/// The decisions are taken by CommandBarButtons and CommandBarInput; this window decodes messages, does
/// what it is asked for as their BarPort, and paints.
class BnCommandBar : public Window, private BarPort {
 public:
  /// What a container may react to. All are optional; any of them may change or destroy the bar.
  struct Events {
    std::function<void(int button)> ButtonClicked{};
    std::function<void(int button)> Dropdown{};
    std::function<void(int button)> MouseHover{};
    std::function<void(int button)> MouseLeave{};
    std::function<void(const BarMouse&)> MouseDown{};
    std::function<void(const BarMouse&)> MouseMove{};
    std::function<void(const BarMouse&)> MouseUp{};
    /// Declared for containers that expect it of every control; a click on a button is `ButtonClicked`, and
    /// the bar itself never raises this.
    std::function<void()> Click{};
    std::function<void()> DblClick{};
    // Dragging out of the bar and, with OLEDropMode 1, onto it.
    std::function<void(OleData& data, DWORD& allowedEffects)> OLEStartDrag{};
    std::function<void(OleData& data, CLIPFORMAT format)> OLESetData{};
    std::function<void(DWORD effect, bool& defaultCursors)> OLEGiveFeedback{};
    std::function<void(OleData& data, DWORD& effect, const BarMouse& mouse, OleDragState state)>
        OLEDragOver{};
    std::function<void(OleData& data, DWORD& effect, const BarMouse& mouse)> OLEDragDrop{};
    std::function<void(DWORD effect)> OLECompleteDrag{};
    std::function<void()> Resize{};
    /// A property that the container keeps was changed, by its name in BarProperty.
    std::function<void(const char* name)> PropertyChanged{};
  };

  /// What the bar needs of others; `tip` may be null for a bar without tips.
  struct Services {
    const SoundEffects& sounds;
    TipWindow* tip = nullptr;
    ShowMessageFunction showMessage;
  };

  BnCommandBar(Services services, Events events);
  ~BnCommandBar() override;

  /// Makes the bar as a child window. `runMode` is false in a designer, where a bar shows no buttons and does
  /// not follow the mouse. `ambientFont` is the container's font, which the bar takes until it is given its
  /// own.
  /// `name` is what assistive programs call the bar.
  bool CreateIn(HWND parent, int id, const std::string& name, const FontProperty& ambientFont,
                bool runMode = true);

  /// Takes design-time properties from a bag, or puts them there.
  void ReadProperties(const PropertyBag& bag);
  void WriteProperties(PropertyBag& bag) const;

  // Buttons.
  void AddButton(const std::string& caption, PictureRef picture, ButtonType type, DisplayType display,
                 bool grayBtn = false);
  void RemoveButton(int index);
  void MoveButton(int index, int newIndex);
  int IndexFromKey(const std::string& key) const { return buttons_.IndexFromKey(key); }
  int ButtonCount() const { return buttons_.Count(); }
  /// Where the next button would start, in twips.
  int NextButtonX() const;
  int BtnFromPoint(int x, int y) { return buttons_.BtnFromPoint(x, y); }
  /// Where a button's menu is to open; nothing for a button that does not exist.
  std::optional<Point> GetMenuPos(int index) const { return buttons_.GetMenuPos(index); }

  bool Grayed(int index) const { return buttons_.Grayed(index); }
  void SetGrayed(int index, bool grayed);
  std::int32_t state(int index) const { return buttons_.State(index); }
  void SetState(int index, std::int32_t state);
  std::string Caption(int index) const { return buttons_.Caption(index); }
  void SetCaption(int index, const std::string& caption);
  /// The keys that the container has given a button's part, as a person reads them ("Ctrl+S"), to be told by
  /// assistive programs.
  void SetShortcut(int index, ButtonPart part, const std::string& keys) {
    shortcuts_[{buttons_.IdOf(index), part}] = keys;
  }
  std::string Shortcut(int index, ButtonPart part) const;
  PictureRef ButtonPicture(int index) const { return buttons_.Picture(index); }
  /// Nothing is drawn until the button is redrawn.
  void SetPicture(int index, PictureRef picture) { buttons_.SetPicture(index, std::move(picture)); }

  void EraseBtn(int index);
  void RedrawButton(int index);
  void Refresh();
  /// Has the bar look where the pointer is, which may have come onto it without a move.
  void LookForPointer() {
    if (input_.InRunMode()) hover_.Start();
  }
  void Freeze() { Tell(&CommandBarInput::Freeze); }
  /// Paints the whole bar at once.
  void Thaw() {
    LookForPointer();
    Tell(&CommandBarInput::Thaw);
  }

  // The whole control.
  bool Enabled() const { return properties_.Enabled; }
  void SetEnabled(bool enabled);
  const FontProperty& Font() const { return properties_.Font; }
  void SetFont(const FontProperty& font);
  std::int16_t BorderStyle() const { return properties_.BorderStyle; }
  void SetBorderStyle(std::int16_t style);
  ColorProperty MaskColor() const { return properties_.MaskColor; }
  void SetMaskColor(ColorProperty color);
  bool Dockable() const { return properties_.Dockable; }
  void SetDockable(bool dockable);
  bool PlaysSounds() const { return properties_.SoundEffects; }
  void SetPlaysSounds(bool plays) { properties_.SoundEffects = plays; }
  const std::string& MouseIcon() const { return properties_.MouseIcon.file; }
  void SetMouseIcon(const std::string& cursorFile);
  std::int16_t MousePointer() const { return properties_.MousePointer; }
  void SetMousePointer(std::int16_t pointer);
  std::int16_t OLEDropMode() const { return properties_.OLEDropMode; }
  void SetOLEDropMode(std::int16_t mode);
  /// Starts to drag from the bar and returns when that has ended; the bar's thread has an OleThread.
  void OLEDrag() { OleDrag(dragEvents_); }

  /// Presses the button that has this access key: the character, as typed with Alt, that the container's
  /// message loop sees. It is compared as it is with the keys, which are lower-case letters. False when no
  /// button has it.
  bool AccessKeyPress(char key);
  /// Does what a click on the button's part would; for assistive programs.
  void DoDefaultAction(int index, ButtonPart part = ButtonPart::Push) {
    Tell(&CommandBarInput::DoDefaultAction, index, part);
  }

  /// The bar's device context, the same for its whole life; it needs no release.
  HDC hDC() const { return GetDC(hWnd()); }
  /// Shows a menu of the system's at a place in client pixels and returns the chosen command, 0 for none.
  int PopupMenu(HMENU menu, Point at) const;

  void ShowAboutBox() const;

  const CommandBarButtons& buttons() const { return buttons_; }
  const CommandBarInput& input() const { return input_; }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  static constexpr UINT_PTR kHoverTimer = 1;

  /// False when an event that came of it has ended the bar: then nothing of it is to be touched any more.
  bool Apply(const BarChange& change);
  bool PropertyChanged(const char* name);
  /// Calls a handler; false when it has ended the bar, or its window alone.
  template <class Handler, class... Arguments>
  bool CallAsWindow(const Handler& handler, const Arguments&... arguments) {
    return lifetime_.Call(handler, arguments...) && hWnd() != nullptr;
  }
  /// Hands an input on, and announces what has become of the buttons by it.
  template <class... Parameters, class... Arguments>
  void Tell(void (CommandBarInput::*what)(Parameters...), const Arguments&... arguments) {
    const Lifetime::Watch watch = lifetime_.Begin();
    (input_.*what)(arguments...);
    if (!watch.Ended() && hWnd() != nullptr) AnnounceStates();
  }
  void AnnounceStates();

  void PaintButton(int button, const ButtonLook& look) override;
  void PaintBar() override { Refresh(); }
  void PlayClick() override { services_.sounds.PlayOfficeSound("ToolbarClick"); }
  void ShowTip(const std::string& text, Point screen) override;
  void HideTip() override;
  void StartHoverTimer() override { hover_.Start(); }
  void StopHoverTimer() override { hover_.Stop(); }
  bool TakeCapture() override;
  void ReleaseCapture() override;
  bool Raise(BarMouseEvent event, const BarMouse& mouse) override;
  bool Raise(BarButtonEvent event, int button) override;
  bool RaiseDblClick() override { return CallAsWindow(events_.DblClick); }

  BarMetrics Metrics() const;
  void MakeFont();
  void LoadMouseIcon();
  void LayOut();
  void UserControl_Resize();
  void UserControl_Paint(HDC dc);
  BarStyle Style() const;
  void tHitTest_Timer();
  bool SetPointer() const;
  void FollowOLEDropMode();

  Services services_;
  Events events_;
  TwipsPerPixel twips_;
  PaintEffects painter_;
  CommandBarProperties properties_;
  FontProperty ambientFont_;
  CommandBarButtons buttons_;
  CommandBarInput input_;
  UniqueFont font_;
  UniqueCursor mouseIcon_;
  PictureRef drop_;  ///< The arrow of drop-down buttons.
  CommandBarAccessible accessibleItems_{*this};
  AccessibleList accessible_{*this, accessibleItems_};
  int lineHeight_ = 0;
  HoverTimer hover_{*this, kHoverTimer};
  bool showsTip_ = false;                                         ///< The tip that is up is this bar's.
  std::map<CommandBarAccessible::PartId, LONG> announcedStates_;  ///< What assistive programs were told last.
  std::map<CommandBarAccessible::PartId, std::string> shortcuts_;
  /// Those of `events_` that a drag raises; it may outlast the bar and is given up then.
  std::shared_ptr<const OleDragEvents> dragEvents_ =
      std::make_shared<const OleDragEvents>(OleDragEvents{.OLEStartDrag = events_.OLEStartDrag,
                                                          .OLESetData = events_.OLESetData,
                                                          .OLEGiveFeedback = events_.OLEGiveFeedback,
                                                          .OLECompleteDrag = events_.OLECompleteDrag});
  OleDropTarget dropTarget_;
  Lifetime lifetime_;
};

}  // namespace snip
