// Filling the snippet list, beside the same names added one by one to a bare list box.

#include <memory>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/WindowBenches.h"
#include "library/LibraryFolder.h"
#include "platform/Fonts.h"
#include "platform/Win32Text.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/SnippetControls.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 9;
constexpr Limit kLimit{1.2, "the list box itself sets the time"};
constexpr int kLimitedSize = 32767;  ///< The limit is for the fullest list.
constexpr Rect kPlace{0, 0, 200, 480};

void AddOneByOne(HWND list, const std::vector<Snippet>& snippets) {
  // Shown meanwhile, it would paint itself for every row, which takes seconds.
  SendMessageA(list, WM_SETREDRAW, FALSE, 0);
  SendMessageA(list, LB_RESETCONTENT, 0, 0);
  for (const Snippet& snippet : snippets) {
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(snippet.Name.c_str()));
  }
  SendMessageA(list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(list, nullptr, TRUE);
}

/// The main window's controls by themselves, with what they are made with.
struct ListControls {
  ShowMessageFunction showMessage = [](const std::string&, int, const std::string&) {
    return MessageResult::No;
  };
  Registry32 registry{showMessage};
  SoundEffects sounds{registry};
  CaptionPainter captions;
  LibraryFolder store{""};
  Library library;
  MainToolbars toolbars{sounds, showMessage, operations, {}};
  LibraryChooser chooser{captions};
  SnippetControls controls{{}, toolbars, chooser};
  SnippetEditing editing{library, controls, showMessage, &SameTextIgnoringCase};
  LibraryOperations operations{
      library, editing, controls, chooser, store, showMessage, &SameTextIgnoringCase};
};

}  // namespace

void BenchList() {
  for (const int count : kLibrarySizes) {
    const auto snippets = GeneratedSnippets(count);
    const BareWindow window;
    const UniqueFont font = MessageFont();
    ListControls made;
    SnippetControls& controls = made.controls;
    controls.Create(window.hWnd(), {.lstCode = 1, .txtName = 2, .txtDesc = 3, .txtCode = 4}, font.get());
    MoveTo(controls.lstCode(), kPlace);
    const HWND bare = CreateControl(
        window.hWnd(), "LISTBOX", "", WS_VISIBLE | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
        WS_EX_CLIENTEDGE, 5, font.get(), {kPlace.right(), 0, kPlace.width, kPlace.height});
    AnswerAll();
    const Comparison filling = Compare(
        kRuns,
        [&] {
          return Milliseconds([&] {
            controls.FillRows(snippets);
            AnswerAll();
          });
        },
        [&] {
          return Milliseconds([&] {
            AddOneByOne(bare, snippets);
            AnswerAll();
          });
        });
    PrintRatio("fill the snippet list, " + std::to_string(count) + " names", filling,
               count == kLimitedSize ? std::optional(kLimit) : std::nullopt);
  }
}

}  // namespace snip::bench
