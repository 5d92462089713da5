#include "ui/main/MainMenus.h"

#include <array>
#include <memory>
#include <utility>

#include "platform/ScreenTwips.h"
#include "ui/commandbar/Picture.h"
#include "ui/main/frmTip.h"

namespace snip {
namespace {

constexpr CommandItem kSeparator{"-"};

constexpr std::array kSnippetsItems{
    CommandItem{"Rename Snippet", 0, Command::kRenameSnippet},
    kSeparator,
    CommandItem{"Edit Snippet", IDB_EDIT_SNIPPET, Command::kEditSnippet},
    CommandItem{"Delete Snippet", IDB_DELETE_SNIPPET, Command::kDeleteSnippet},
    kSeparator,
    CommandItem{"Paste to Code Window", IDB_PASTE_TO_CODE, Command::kPasteCode},
    CommandItem{"Copy to Clipboard", IDB_COPY, Command::kCopyToClipboard},
};
constexpr std::array kAttachItems{
    CommandItem{"View Attachment", IDB_VIEW_ATTACHMENT, Command::kViewAttachment},
    CommandItem{"Set Attachment...", 0, Command::kSetAttachment},
};
constexpr std::array kEditItems{
    // The trailing blanks distinguish it from the item of the list's menu.
    CommandItem{"Edit Snippet   ", IDB_EDIT_SNIPPET, Command::kEditSnippet},
    kSeparator,
    CommandItem{"Undo", IDB_UNDO, Command::kUndo},
    kSeparator,
    CommandItem{"Cut", IDB_CUT, Command::kCut},
    CommandItem{"Copy", IDB_COPY, Command::kCopy},
    CommandItem{"Paste", IDB_PASTE, Command::kPaste},
    kSeparator,
    CommandItem{"Select All", IDB_SELECT_ALL, Command::kSelectAll},
};

/// The side of a picture, in twips.
constexpr int kPicture = 240;

void Fill(frmMenu& menu, std::span<const CommandItem> items) {
  if (menu.iCount() == static_cast<int>(items.size())) return;
  menu.Clear();  // of items left over from when memory ran out
  const TwipsPerPixel twips = ScreenTwips();
  const Size pictureSize{twips.ToPixelsX(kPicture), twips.ToPixelsY(kPicture)};
  for (const CommandItem& item : items) {
    menu.Add(item.caption, true, false,
             item.picture != 0 ? Picture::FromResource(item.picture, pictureSize) : nullptr);
  }
}

std::unique_ptr<TipWindow> MakeTip() {
  auto tip = std::make_unique<frmTip>();
  return tip->Load() ? std::move(tip) : nullptr;
}

}  // namespace

MainMenus::Menu::Menu(const char* title, std::span<const CommandItem> itemsShown, const SoundEffects& sounds,
                      const MainMenus::Events& events, std::function<void()> hidden)
    : frmMenu(title, {.sounds = sounds, .makeTip = &MakeTip, .preTranslate = events.preTranslate},
              {.Clicked = [itemsShown, clicked = events.Clicked](
                              int index) { clicked(itemsShown[static_cast<std::size_t>(index)].command); },
               .Selected = {},
               .HideMenu = std::move(hidden)}),
      items(itemsShown) {}

MainMenus::MainMenus(const SoundEffects& sounds, const Events& events)
    : mnuModFuncs("Output", kOutputModes, sounds, events, events.mnuModFuncs_HideMenu),
      mnuSnippets("Snippets", kSnippetsItems, sounds, events),
      mnuAttach("Attachment", kAttachItems, sounds, events),
      mnuEdit("Edit", kEditItems, sounds, events),
      isEnabled_(events.isEnabled) {}

void MainMenus::Prepare() {
  for (Menu* menu : All()) {
    Fill(*menu, menu->items);
    Update(*menu);
  }
  // A menu that opens on a right click accepts right clicks, as in other programs.
  mnuSnippets.SetAllowRightClick(true);
  mnuEdit.SetAllowRightClick(true);
}

bool MainMenus::UpdateTornOff() {
  bool any = false;
  for (Menu* menu : All()) {
    if (menu->input().State() != MenuState::Floating) continue;
    Update(*menu);
    any = true;
  }
  return any;
}

void MainMenus::Update(Menu& menu) const {
  for (std::size_t place = 0; place < menu.items.size(); ++place) {
    const int command = menu.items[place].command;
    const auto item = static_cast<int>(place);
    const bool enabled = command == 0 || isEnabled_(command);
    // Only changes, because a torn-off menu repaints itself and notifies assistive programs.
    if (menu.IEnabled(item) != enabled) menu.SetIEnabled(item, enabled);
  }
}

void MainMenus::Unload() {
  for (Menu* menu : All()) menu->Unload();
}

void MainMenus::StayInFront() {
  for (const Menu* menu : All()) menu->StayInFront();
}

bool MainMenus::PreTranslate(const MSG& message) {
  return std::ranges::any_of(All(), [&message](Menu* menu) { return menu->PreTranslate(message); });
}

}  // namespace snip
