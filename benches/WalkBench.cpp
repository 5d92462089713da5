// Walking through snippets with the Down key, beside the same texts put into a bare rich-edit control.

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

constexpr int kRuns = 9;
constexpr double kLimit = 1.5;
constexpr int kSnippets = 1000;
/// One walk in pieces, each beside its reference; with the first, which does not count, they are the whole.
constexpr int kPiece = kSnippets / (kRuns + 1);
constexpr int kLines = 40;

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
  const Size place = ClientSize(real.Code());
  const auto font = reinterpret_cast<HFONT>(SendMessageA(real.Code(), WM_GETFONT, 0, 0));
  const HWND bare = MakeBareRichEdit(window.hWnd(), {0, 0, place.width, place.height}, font);
  std::size_t filled = 0;
  const auto fill = [&] {
    return Milliseconds([&] {
      for (int i = 0; i < kPiece; ++i) ShowIn(bare, snippets[++filled].Code);
    });
  };

  const Comparison walking = Compare(kRuns, walk, fill);
  if (WindowText(real.Code()) != snippets.back().Code) {
    std::fputs("window_bench: the last snippet is not shown\n", stderr);
    std::exit(1);
  }
  PrintRatio("walk through 1000 snippets of 40 lines with the Down key", walking, kLimit);
}

}  // namespace snip::bench
