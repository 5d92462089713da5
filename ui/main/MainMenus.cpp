#include "ui/main/MainMenus.h"

#include <array>
#include <memory>
#include <span>
#include <utility>

#include "platform/ScreenTwips.h"
#include "resources/resource.h"
#include "ui/commandbar/Picture.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmTip.h"

namespace snip {
namespace {

struct Item {
  const char* caption;
  int picture = 0;  ///< Resource number, 0 for none.
};

constexpr Item kSeparator{"-"};

constexpr std::array kOutputItems{
    Item{kPasteToCodeWindow, IDB_PASTE_TO_CODE},
    Item{kCopyToClipboard, IDB_COPY},
    Item{kCreateNewModule, IDB_NEW_MODULE},
};
constexpr std::array kSnippetsItems{
    Item{"Rename Snippet"},
    kSeparator,
    Item{"Edit Snippet", IDB_EDIT_SNIPPET},
    Item{"Delete Snippet", IDB_DELETE_SNIPPET},
    kSeparator,
    Item{"Paste to Code Window", IDB_PASTE_TO_CODE},
    Item{kCopyToClipboard, IDB_COPY},
};
constexpr std::array kAttachItems{
    Item{"View Attachment", IDB_VIEW_ATTACHMENT},
    Item{"Set Attachment..."},
};
constexpr std::array kEditItems{
    // The blanks at its end tell it from the item of the list's menu.
    Item{"Edit Snippet   ", IDB_EDIT_SNIPPET},
    kSeparator,
    Item{"Undo", IDB_UNDO},
    kSeparator,
    Item{"Cut", IDB_CUT},
    Item{"Copy", IDB_COPY},
    Item{"Paste", IDB_PASTE},
    kSeparator,
    Item{"Select All", IDB_SELECT_ALL},
};

/// The side of a picture, in twips.
constexpr int kPicture = 240;

void FillMenu(frmMenu& menu, std::span<const Item> items) {
  if (menu.iCount() == static_cast<int>(items.size())) return;
  menu.Clear();  // what was left when memory ran out
  const TwipsPerPixel twips = ScreenTwips();
  const Size pictureSize{twips.ToPixelsX(kPicture), twips.ToPixelsY(kPicture)};
  for (const Item& item : items) {
    menu.Add(item.caption, true, false,
             item.picture != 0 ? Picture::FromResource(item.picture, pictureSize) : nullptr);
  }
}

frmMenu::Services MenuServices(const SoundEffects& sounds,
                               const std::function<bool(MSG& message)>& preTranslate) {
  return {.sounds = sounds,
          .makeTip = [](HWND) -> std::unique_ptr<TipWindow> {
            auto tip = std::make_unique<frmTip>();
            return tip->Load() ? std::move(tip) : nullptr;
          },
          .preTranslate = preTranslate};
}

frmMenu::Events MenuEvents(std::function<void(int index)> clicked, std::function<void()> hidden = {}) {
  return {.Clicked = std::move(clicked), .Selected = {}, .HideMenu = std::move(hidden)};
}

}  // namespace

MainMenus::MainMenus(const SoundEffects& sounds, const std::function<bool(MSG& message)>& preTranslate,
                     Events events)
    : mnuModFuncs("Output", MenuServices(sounds, preTranslate),
                  MenuEvents(std::move(events.mnuModFuncs_Clicked), std::move(events.mnuModFuncs_HideMenu))),
      mnuSnippets("Snippets", MenuServices(sounds, preTranslate),
                  MenuEvents(std::move(events.mnuSnippets_Clicked))),
      mnuAttach("Attachment", MenuServices(sounds, preTranslate),
                MenuEvents(std::move(events.mnuAttach_Clicked))),
      mnuEdit("Edit", MenuServices(sounds, preTranslate), MenuEvents(std::move(events.mnuEdit_Clicked))) {}

void MainMenus::Fill() {
  FillMenu(mnuModFuncs, kOutputItems);
  FillMenu(mnuSnippets, kSnippetsItems);
  FillMenu(mnuAttach, kAttachItems);
  FillMenu(mnuEdit, kEditItems);
  // As everywhere, what a right click opens takes right clicks.
  mnuSnippets.SetAllowRightClick(true);
  mnuEdit.SetAllowRightClick(true);
}

void MainMenus::Unload() {
  for (frmMenu* menu : {&mnuModFuncs, &mnuSnippets, &mnuAttach, &mnuEdit}) menu->Unload();
}

void MainMenus::StayInFront() const {
  for (const frmMenu* menu : {&mnuModFuncs, &mnuSnippets, &mnuAttach, &mnuEdit}) menu->StayInFront();
}

bool MainMenus::PreTranslate(const MSG& message) {
  for (frmMenu* menu : {&mnuModFuncs, &mnuSnippets, &mnuAttach, &mnuEdit}) {
    if (menu->PreTranslate(message)) return true;
  }
  return false;
}

}  // namespace snip
