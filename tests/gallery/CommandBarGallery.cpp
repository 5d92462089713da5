// Shows every type of command bar button in every state, for people to look at, and a live bar to try.
// Shown by tools/gallery, which also takes the picture in the documentation.

#include <windows.h>

#include <cmath>
#include <string>
#include <vector>

#include "platform/Fonts.h"
#include "platform/Handle.h"
#include "platform/Registry32.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "ui/commandbar/BarButtonDrawing.h"
#include "ui/commandbar/BnCommandBar.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/main/frmTip.h"

namespace {

using namespace snip;

struct Row {
  const char* label;
  ButtonType type;
  DisplayType display;
};

const std::vector<Row> kRows = {
    {"push, picture", ButtonType::Push, DisplayType::Picture},
    {"push, caption", ButtonType::Push, DisplayType::Caption},
    {"push, both", ButtonType::Push, DisplayType::PictureAndCaption},
    {"menu, picture", ButtonType::Menu, DisplayType::Picture},
    {"menu, caption", ButtonType::Menu, DisplayType::Caption},
    {"menu, both", ButtonType::Menu, DisplayType::PictureAndCaption},
    {"toggle, picture", ButtonType::Toggle, DisplayType::Picture},
    {"toggle, caption", ButtonType::Toggle, DisplayType::Caption},
    {"toggle, both", ButtonType::Toggle, DisplayType::PictureAndCaption},
    {"drop-down, picture", ButtonType::DropDown, DisplayType::Picture},
    {"drop-down, caption", ButtonType::DropDown, DisplayType::Caption},
    {"drop-down, both", ButtonType::DropDown, DisplayType::PictureAndCaption},
    {"separator", ButtonType::Separator, DisplayType::Picture},
};

const std::vector<std::string> kColumns = {"flat", "hot",          "pressed", "arrow pressed",
                                           "on",   "on, disabled", "disabled"};

/// The look of a button in a column; false where a button of that type has no such state.
bool LookOf(BarButton& button, const std::string& column, ButtonLook& look) {
  const bool acts = !button.Is(ButtonType::Separator);
  if (column == "flat") {
    look = RedrawLook(button);
  } else if (column == "hot" && acts) {
    look = RaisedLook();
  } else if (column == "pressed" && acts) {
    look = PressedLook(button, ButtonPart::Push, true);
  } else if (column == "arrow pressed" && button.Is(ButtonType::DropDown)) {
    look = PressedLook(button, ButtonPart::Arrow, true);
  } else if (column == "on" && button.Is(ButtonType::Toggle)) {
    button.State = 1;
    look = RedrawLook(button);
  } else if (column == "on, disabled" && button.Is(ButtonType::Toggle)) {
    button.State = 1;
    button.Enabled = false;
    look = RedrawLook(button);
  } else if (column == "disabled" && acts) {
    button.Enabled = false;
    look = RedrawLook(button);
  } else {
    return false;
  }
  return true;
}

class Gallery : public Window {
 public:
  ~Gallery() override { Destroy(); }

  bool Show() {
    const int width = Scaled(kLabelWidth + static_cast<int>(kColumns.size()) * kColumnWidth);
    const int height = Scaled(kTop + static_cast<int>(kRows.size()) * kRowHeight + 40);
    if (!Create({.className = "Gallery",
                 .title = "Command bar gallery",
                 .style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU,
                 .place = {20, 20, width, height},
                 .iconId = IDI_SNIPSTORE})) {
      return false;
    }
    ShowWindow(hWnd(), SW_SHOWNORMAL);
    UpdateWindow(hWnd());
    return true;
  }

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case WM_CREATE:
        MakeBars();
        return 0;
      case WM_PAINT: {
        const PaintDC dc(hWnd());
        DrawTable(dc.get());
        return 0;
      }
      case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
      default:
        return Default(message, wParam, lParam);
    }
  }

 private:
  // At 96 dpi.
  static constexpr int kTop = 100;
  static constexpr int kRowHeight = 30;
  static constexpr int kLabelWidth = 130;
  static constexpr int kColumnWidth = 100;
  static constexpr int kBarHeight = 26;
  static constexpr int kPicture = 16;

  int Scaled(int value) const { return static_cast<int>(std::lround(value * 15.0 / twips_.y)); }
  PictureRef Icon(int id) const { return Picture::FromResource(id, {Scaled(kPicture), Scaled(kPicture)}); }

  void MakeBars() {
    tip_.Load();
    for (BnCommandBar* bar : {&bar_, &dockable_}) {
      bar->CreateIn(hWnd(), bar == &bar_ ? 1 : 2, bar == &bar_ ? "Live" : "Dockable",
                    {.Name = "Tahoma", .Size = 8.25});
      MoveTo(bar->hWnd(), {Scaled(8), Scaled(bar == &bar_ ? 8 : 42), Scaled(600), Scaled(kBarHeight)});
      for (int id = IDB_PASTE_TO_CODE; id <= IDB_SYNTAX_HIGHLIGHTING; ++id) {
        const int place = id - IDB_PASTE_TO_CODE;
        bar->AddButton("Picture " + std::to_string(id), Icon(id),
                       place == 4   ? ButtonType::DropDown
                       : place == 5 ? ButtonType::Toggle
                                    : ButtonType::Push,
                       DisplayType::Picture, bar == &dockable_);
        if (place % 7 == 6) bar->AddButton("", nullptr, ButtonType::Separator, DisplayType::Picture);
      }
    }
    dockable_.SetDockable(true);
  }

  void DrawTable(HDC dc) {
    const SelectedObject font(dc, font_.get());
    SetBkMode(dc, TRANSPARENT);
    for (std::size_t column = 0; column < kColumns.size(); ++column) {
      TextOutA(dc, Scaled(kLabelWidth + static_cast<int>(column) * kColumnWidth), Scaled(kTop - 24),
               kColumns[column].c_str(), static_cast<int>(kColumns[column].size()));
    }
    for (std::size_t row = 0; row < kRows.size(); ++row) {
      const int top = Scaled(kTop + static_cast<int>(row) * kRowHeight);
      TextOutA(dc, Scaled(8), top + Scaled(6), kRows[row].label, lstrlenA(kRows[row].label));
      for (std::size_t column = 0; column < kColumns.size(); ++column) {
        DrawCell(dc, kRows[row], kColumns[column],
                 {Scaled(kLabelWidth + static_cast<int>(column) * kColumnWidth), top});
      }
    }
  }

  void DrawCell(HDC dc, const Row& row, const std::string& column, Point at) {
    const PictureRef picture = Icon(IDB_SAVE_LIBRARY);
    CommandBarButtons one(
        {.toLower = [](char c) { return c; }, .sameText = [](auto a, auto b) { return a == b; }});
    one.Add({.Caption = "&Caption",
             .Picture = picture,
             .PictureSize = picture->size(),
             .ButtonType = row.type,
             .DisplayType = row.display},
            {.scaleHeight = Scaled(kBarHeight), .dockable = false, .textWidth = [&](std::string_view text) {
               SIZE size{};
               GetTextExtentPoint32A(dc, text.data(), static_cast<int>(text.size()), &size);
               return static_cast<int>(size.cx);
             }});
    BarButton button = *one.Find(0);
    ButtonLook look;
    if (!LookOf(button, column, look)) return;
    TEXTMETRICA metrics{};
    GetTextMetricsA(dc, &metrics);
    SetViewportOrgEx(dc, at.x, at.y, nullptr);
    DrawBarButton(dc, effects_, button, look,
                  {.font = font_.get(),
                   .lineHeight = static_cast<int>(metrics.tmHeight),
                   .maskColor = 0xC0C0C0,
                   .drop = drop_.get(),
                   .scaleHeight = Scaled(kBarHeight)});
    SetViewportOrgEx(dc, 0, 0, nullptr);
  }

  TwipsPerPixel twips_ = ScreenTwips();
  UniqueFont font_ = FontOfSize("Tahoma", 8);
  PaintEffects effects_;
  PictureRef drop_ = Picture::FromResource(IDB_DROP_ARROW);
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  SoundEffects sounds_{registry_};
  frmTip tip_;
  BnCommandBar bar_{{.sounds = sounds_, .tip = &tip_, .showMessage = {}}, {}};
  BnCommandBar dockable_{{.sounds = sounds_, .tip = &tip_, .showMessage = {}}, {}};
};

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
  Gallery gallery;
  if (!gallery.Show()) return 1;
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return 0;
}
