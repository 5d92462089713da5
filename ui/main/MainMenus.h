#pragma once

#include <functional>

#include "ui/commandbar/SoundEffects.h"
#include "ui/menu/frmMenu.h"

namespace snip {

/// The four pop-up menus of the main window.
class MainMenus {
 public:
  /// Called with the index of the chosen item; separators count.
  struct Events {
    std::function<void(int index)> mnuModFuncs_Clicked;
    std::function<void()> mnuModFuncs_HideMenu;
    std::function<void(int index)> mnuSnippets_Clicked;
    std::function<void(int index)> mnuAttach_Clicked;
    std::function<void(int index)> mnuEdit_Clicked;
  };

  /// `preTranslate` is that of the window's message loop.
  MainMenus(const SoundEffects& sounds, const std::function<bool(MSG& message)>& preTranslate, Events events);

  /// To be called before a menu is opened: the pictures are loaded for whoever opens one.
  void Fill();
  void Unload();
  void StayInFront() const;
  /// For the message loop: whether the message was for an open menu.
  bool PreTranslate(const MSG& message);

  frmMenu mnuModFuncs;
  frmMenu mnuSnippets;
  frmMenu mnuAttach;
  frmMenu mnuEdit;
};

/// The items by their index; the numbers left out are separators.
namespace SnippetsItem {
enum : int { kRename = 0, kEdit = 2, kDelete = 3, kPaste = 5, kCopy = 6 };
}  // namespace SnippetsItem
namespace AttachItem {
enum : int { kView = 0, kSet = 1 };
}  // namespace AttachItem
namespace EditItem {
enum : int { kEdit = 0, kUndo = 2, kCut = 4, kCopy = 5, kPaste = 6, kSelectAll = 8 };
}  // namespace EditItem

}  // namespace snip
