#pragma once

#include <array>
#include <functional>
#include <span>

#include "ui/commandbar/SoundEffects.h"
#include "ui/main/MainWindowCommands.h"
#include "ui/menu/frmMenu.h"

namespace snip {

/// The four pop-up menus of the main window.
class MainMenus {
 public:
  struct Events {
    std::function<bool(MSG& message)> preTranslate;  ///< Of the window's message loop.
    std::function<void(int command)> Clicked;
    std::function<bool(int command)> isEnabled;
    std::function<void()> mnuModFuncs_HideMenu;
  };

  /// A menu, and the items that `Prepare` fills it with.
  struct Menu : frmMenu {
    Menu(const char* title, std::span<const CommandItem> itemsShown, const SoundEffects& sounds,
         const MainMenus::Events& events, std::function<void()> hidden = {});
    std::span<const CommandItem> items;
  };

  MainMenus(const SoundEffects& sounds, const Events& events);

  /// Must be called before a menu is opened. The first call adds the items and loads their pictures.
  void Prepare();
  /// Enables and greys the items of torn-off menus; true if there are any.
  bool UpdateTornOff();
  void Unload();
  void StayInFront();
  /// For the message loop: true if an open menu has handled the message.
  bool PreTranslate(const MSG& message);

  Menu mnuModFuncs;
  Menu mnuSnippets;
  Menu mnuAttach;
  Menu mnuEdit;

 private:
  std::array<Menu*, 4> All() { return {&mnuModFuncs, &mnuSnippets, &mnuAttach, &mnuEdit}; }
  void Update(Menu& menu) const;

  std::function<bool(int command)> isEnabled_;
};

}  // namespace snip
