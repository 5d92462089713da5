// Opens a pop-up menu over a window, for people to look at and to try. A click on the window opens it anew;
// the bar at the menu's top tears it off.

#include <windows.h>

#include <memory>
#include <string>

#include "platform/Handle.h"
#include "platform/Registry32.h"
#include "platform/ScreenTwips.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "ui/commandbar/Picture.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/main/frmTip.h"
#include "ui/menu/frmMenu.h"

namespace {

using namespace snip;

class Gallery : public Window {
 public:
  ~Gallery() override { Destroy(); }

  bool Show() {
    if (!Create({.className = "MenuGallery",
                 .title = "Menu gallery",
                 .style = WS_OVERLAPPEDWINDOW,
                 .place = {20, 20, 420, 340},
                 .iconId = IDI_SNIPSTORE,
                 .background = COLOR_BTNSHADOW})) {
      return false;
    }
    ShowWindow(hWnd(), SW_SHOWNORMAL);
    UpdateWindow(hWnd());
    PostMessageA(hWnd(), WM_LBUTTONUP, 0, MAKELPARAM(60, 40));
    return true;
  }

  bool PreTranslate(const MSG& message) { return menu_.PreTranslate(message); }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case WM_CREATE:
        Fill();
        return 0;
      case WM_LBUTTONUP: {
        POINT corner{60, 40};
        ClientToScreen(hWnd(), &corner);
        const TwipsPerPixel twips = ScreenTwips();
        menu_.Popup(twips.ToTwipsX(corner.x), twips.ToTwipsY(corner.y), hWnd(), true);
        return 0;
      }
      case WM_PAINT: {
        const PaintDC dc(hWnd());
        SetBkMode(dc.get(), TRANSPARENT);
        TextOutA(dc.get(), 8, 8, last_.c_str(), static_cast<int>(last_.size()));
        return 0;
      }
      case WM_DESTROY:
        menu_.Unload();
        PostQuitMessage(0);
        return 0;
      default:
        return Default(message, wParam, lParam);
    }
  }

 private:
  void Fill() {
    const auto add = [&](const char* caption, int picture, bool enabled = true) {
      menu_.Add(caption, enabled, false, picture != 0 ? Picture::FromResource(picture) : nullptr);
    };
    add("Rename Snippet", IDB_RENAME_LIBRARY);
    add("-", 0);
    add("Edit Snippet", IDB_EDIT_SNIPPET);
    add("Delete Snippet", IDB_DELETE_SNIPPET, false);
    add("-", 0);
    add("Paste to Code Window", IDB_PASTE_TO_CODE);
    add("Copy to Clipboard", IDB_COPY);
    add("Undo", IDB_UNDO, false);
    add("No picture", 0);
    add("No picture, disabled", 0, false);
  }

  void Tell(const std::string& what) {
    last_ = what;
    InvalidateRect(hWnd(), nullptr, TRUE);
  }

  std::string last_ = "Click to open the menu";
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  SoundEffects sounds_{registry_};
  frmMenu menu_{"Gallery",
                {.sounds = sounds_,
                 .makeTip = [](HWND) -> std::unique_ptr<TipWindow> {
                   auto tip = std::make_unique<frmTip>();
                   if (!tip->Load()) return nullptr;
                   return tip;
                 }},
                {.Clicked = [this](std::int32_t ID) { Tell("Clicked " + std::to_string(ID)); },
                 .Selected = [this](std::int32_t ID) { Tell("Selected " + std::to_string(ID)); },
                 .HideMenu = [this] { Tell("HideMenu"); }}};
};

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
  Gallery gallery;
  if (!gallery.Show()) return 1;
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (gallery.PreTranslate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return 0;
}
