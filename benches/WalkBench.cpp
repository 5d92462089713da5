// Walking through snippets with the Down key, beside the same by the same three controls bare.

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/RealWindow.h"
#include "benches/WindowBenches.h"
#include "platform/Win32Text.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 19;
constexpr Limit kLimit{1.1, "a held key must not queue up"};
constexpr int kSnippets = 1000;
/// One walk in pieces, each beside its reference; with the first, which does not count, they are the whole.
constexpr int kPiece = kSnippets / (kRuns + 1);
constexpr int kLines = 40;

HFONT FontOf(HWND control) {
  return reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0));
}

/// A list box, an edit and a rich-edit control as large as the program's, with nothing else: they get the
/// same key and texts, without colours.
class BareControls {
 public:
  BareControls(HWND parent, const RealWindow& real, const std::vector<Snippet>& snippets)
      : snippets_(snippets),
        list_(MakeLike(real.Control(frmAddIn::kListId), parent, "LISTBOX", {0, 0})),
        description_(MakeLike(real.Control(frmAddIn::kDescriptionId), parent, "EDIT", {kListWidth, 0})),
        code_(MakeBareRichEdit(parent, PlaceLike(real.Code(), {kListWidth, kDescriptionHeight}),
                               FontOf(real.Code()))) {
    for (const Snippet& snippet : snippets) {
      SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(snippet.Name.c_str()));
    }
    SetFocus(list_);
    SendMessageA(list_, LB_SETCURSEL, 0, 0);
    AnswerAll();
  }

  void ShowNext() const {
    SendMessageA(list_, WM_KEYDOWN, VK_DOWN, 0);
    const Snippet& snippet = snippets_[static_cast<std::size_t>(SendMessageA(list_, LB_GETCURSEL, 0, 0))];
    // As the program does, since it takes Wine less than WM_SETTEXT.
    SendMessageA(description_, EM_SETSEL, 0, -1);
    SendMessageA(description_, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(snippet.Description.c_str()));
    ShowIn(code_, snippet.Code);
  }

 private:
  static constexpr int kListWidth = 200;
  static constexpr int kDescriptionHeight = 120;

  static Rect PlaceLike(HWND control, Point at) {
    const Size size = ClientSize(control);
    return {at.x, at.y, size.width, size.height};
  }
  static HWND MakeLike(HWND control, HWND parent, const char* className, Point at) {
    return CreateControl(parent, className, "", static_cast<DWORD>(GetWindowLongA(control, GWL_STYLE)),
                         static_cast<DWORD>(GetWindowLongA(control, GWL_EXSTYLE)), 1, FontOf(control),
                         PlaceLike(control, at));
  }

  const std::vector<Snippet>& snippets_;
  HWND list_;
  HWND description_;
  HWND code_;
};

}  // namespace

void BenchWalk() {
  std::vector<Snippet> snippets = GeneratedSnippets(kSnippets + 1);
  for (std::size_t i = 0; i < snippets.size(); ++i)
    snippets[i].Code = GeneratedCode(kLines, static_cast<unsigned>(i));

  RealWindow real(snippets);
  const HWND list = real.Control(frmAddIn::kListId);
  const auto walk = [&] {
    return Milliseconds([&] {
      for (int i = 0; i < kPiece; ++i) {
        SendMessageA(list, WM_KEYDOWN, VK_DOWN, 0);
        AnswerAll();
      }
    });
  };

  const BareWindow window;
  const BareControls bare(window.hWnd(), real, snippets);
  const auto walkBare = [&] {
    return Milliseconds([&] {
      for (int i = 0; i < kPiece; ++i) bare.ShowNext();
    });
  };

  const Comparison walking = Compare(kRuns, walk, walkBare);
  if (WindowText(real.Code()) != snippets.back().Code) {
    std::fputs("window_bench: the last snippet is not shown\n", stderr);
    std::exit(1);
  }
  PrintRatio("walk with the Down key, " + std::to_string(kPiece) + " of 1000 snippets of 40 lines", walking,
             kLimit);
}

}  // namespace snip::bench
