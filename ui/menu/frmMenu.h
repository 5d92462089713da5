#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/AccessibleList.h"
#include "platform/Geometry.h"
#include "platform/Lifetime.h"
#include "platform/Subclass.h"
#include "platform/TipWindow.h"
#include "platform/Window.h"
#include "ui/commandbar/PaintEffects.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/menu/MenuAccessible.h"
#include "ui/menu/MenuInput.h"
#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuMetrics.h"
#include "ui/menu/MenuPort.h"

namespace snip {

/// A pop-up menu: a drop-down that can be torn off and then stays as a palette.
///
/// The object keeps the items and may be opened any number of times; its window exists from `Popup` until
/// the menu is closed. MenuInput takes the decisions; this window decodes messages, does what MenuInput asks
/// for through MenuPort, and paints.
///
/// A docked menu has the mouse but never the focus, so that the owner stays active and keeps its caret and
/// selection. Keys go to the owner's focus, and the owner's message loop has to offer them to the menu:
///
///     if (menu.PreTranslate(message)) continue;
class frmMenu : public Window, MenuPort {
 public:
  /// What the owner may react to. All are optional; any of them may change, open, unload or destroy the menu.
  struct Events {
    std::function<void(std::int32_t ID)> Clicked;
    /// The pointer or an arrow key came to an item.
    std::function<void(std::int32_t ID)> Selected;
    /// The menu is not a drop-down any more: it was torn off, is about to report a click, or was unloaded.
    std::function<void()> HideMenu;
  };

  /// What the menu needs of others.
  struct Services {
    const SoundEffects& sounds;
    /// Makes the tip each time the menu is opened. Without this function, or if it returns null, there is no
    /// tip.
    std::function<std::unique_ptr<TipWindow>()> makeTip;
    /// What the owner's message loop does before it dispatches a message; the menu sometimes dispatches that
    /// loop's messages.
    std::function<bool(MSG& message)> preTranslate{};
  };

  /// `name` is the menu's accessible name.
  frmMenu(std::string name, Services services, Events events);
  ~frmMenu() override;

  void Clear();
  /// Appends an item. An `ID` of MenuItem::kOwnIndex is the item's own place. `Caption` "-" is a separator.
  void Add(const std::string& Caption, bool bEnabled, bool bChecked, std::shared_ptr<const Picture> pPicture,
           std::int32_t ID = MenuItem::kOwnIndex);
  std::int16_t iCount() const { return items_.iCount(); }
  bool IEnabled(int Index) const { return items_.IEnabled(Index); }
  void SetIEnabled(int Index, bool enabled);
  bool IChecked(int Index) const { return items_.IChecked(Index); }
  void SetIChecked(int Index, bool isChecked) { items_.SetIChecked(Index, isChecked); }

  /// Opens the menu with its left top corner there, in twips of the screen; both -1 for the mouse pointer.
  /// `MsgWnd` is a window of the owner; the top-level window around it becomes the owner of a torn-off
  /// menu. `AllowDetach` gives the menu the bar to tear it off by.
  void Popup(int X, int Y, HWND MsgWnd, bool AllowDetach);
  /// Closes the menu, docked or torn off. A closed menu does nothing.
  void Unload();

  /// To be called when the focus goes to another of the owner's controls: without a window manager, Wine 8
  /// then draws the owner over a torn-off menu.
  void StayInFront() const;

  /// Measures again, for another font. Items that were added before keep the width they were measured with.
  void ResetInfo();
  /// The caller owns the font; null is the system's default for windows.
  void SetFont(HFONT font);

  bool AllowRightClick() const { return input_.AllowRightClick; }
  void SetAllowRightClick(bool allow) { input_.AllowRightClick = allow; }

  /// For the owner's message loop: true if the docked menu has handled the message. It handles every key
  /// press and the wheel, whichever window they were for.
  bool PreTranslate(const MSG& message);

  /// Does what a click on the item would; for assistive programs.
  void DoDefaultAction(int index) { input_.DoDefaultAction(index); }

  const MenuItems& items() const { return items_; }
  const MenuInput& input() const { return input_; }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  static constexpr UINT_PTR kCloseTimer = 1;

  // MenuPort.
  void PaintRow(int index) override;
  void PaintDragBar() override { Repaint(input_.Layout().DragBar()); }
  void PaintAll() override { RepaintAll(); }
  bool RaiseSelected(std::int32_t ID) override;
  bool RaiseClicked(std::int32_t ID) override { return lifetime_.Call(events_.Clicked, ID); }
  bool RaiseHideMenu() override { return lifetime_.Call(events_.HideMenu); }
  void PlaySystemSound(std::int16_t index) override { services_.sounds.PlaySystemSound(index); }
  void PlayOfficeSound(const char* eventName) override { services_.sounds.PlayOfficeSound(eventName); }
  bool Load() override;
  bool Unfold(const Unfolding& unfolding) override;
  void Hide() override;
  void BecomeOwned() override;
  void BecomeUnowned() override;
  void DropTopmost() override;
  void SetHeight(int height) override;
  bool StartSystemDrag(Point screen) override;
  bool RunPendingEvents() override;
  void ReleaseParts() override;
  void DestroyForm() override;
  void TakeCapture() override { SetCapture(hWnd()); }
  void ReleaseCapture() override { ::ReleaseCapture(); }
  void PostClick(std::uint32_t message, std::uint32_t keys, Point screen) override;
  void StartTimer() override;
  void StopTimer() override { KillTimer(hWnd(), kCloseTimer); }
  void ShowTip(const std::string& text) override;
  void HideTip() override;

  void KeepAboveOwner();
  void Repaint(const Rect& area) const;
  void RepaintAll() const;
  void AnnounceEnd();

  void Form_Paint();
  void Form_MouseMove(const MenuMouse& mouse, WPARAM keys);
  void OwnerMessage(UINT message, WPARAM wParam);
  void OnDestroy();
  HFONT Font() const;
  int TextWidth(std::string_view text) const;

  std::string name_;
  Services services_;
  Events events_;
  HFONT font_ = nullptr;
  MenuItems items_;
  MenuMetrics metrics_;
  MenuInput input_{items_, metrics_, *this};

  HWND owner_ = nullptr;  ///< Of a torn-off menu; a top-level window.
  Subclass watch_;        ///< Watches the owner's messages.
  std::unique_ptr<TipWindow> tip_;
  std::optional<PaintEffects> painter_;

  MenuAccessible accessibleItems_{*this};
  AccessibleList accessible_{*this, accessibleItems_};
  bool announced_ = false;  ///< Assistive programs were told that a menu is open.
  bool destroying_ = false;
  bool tracksLeave_ = false;

  struct LastMove {
    Point screen;
    WPARAM keys = 0;
    friend bool operator==(const LastMove&, const LastMove&) = default;
  };
  std::optional<LastMove> lastMove_;

  Lifetime lifetime_;
};

}  // namespace snip
