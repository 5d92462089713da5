// The palette: from a key to the painted list, and how long it takes to open.

#include <algorithm>
#include <span>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/RealWindow.h"
#include "benches/WindowBenches.h"
#include "platform/Win32Text.h"
#include "ui/main/MainWindowCommands.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 9;
constexpr double kOpenLimitMs = 50;
constexpr std::size_t kLibraries = 4;
constexpr std::string_view kTyped = "index text";

double KeyLimitMs(std::size_t count) {
  return count <= 10000 ? 16 : 50;
}

void Measure(int count) {
  const auto all = GeneratedSnippets(count);
  const std::size_t share = all.size() / kLibraries;
  const auto part = [&](std::size_t library) {
    const auto begin = all.begin() + static_cast<std::ptrdiff_t>(library * share);
    return std::vector<Snippet>(
        begin, library + 1 == kLibraries ? all.end() : begin + static_cast<std::ptrdiff_t>(share));
  };
  RealWindow window(part(0));
  for (std::size_t library = 1; library < kLibraries; ++library) {
    window.AddLibrary("Other" + std::to_string(library), part(library));
  }
  HWND palette = nullptr;
  double first = 0;
  std::vector<double> again;
  std::vector<double> keys;
  for (int run = 0; run < kRuns; ++run) {
    const double opened = Milliseconds([&] {
      SendMessageA(window.hWnd(), WM_COMMAND, Command::kFind, 0);
      palette = test::FindVisibleWindow("Find Snippets");
      UpdateWindow(GetDlgItem(palette, frmFind::kListId));
    });
    if (run == 0) first = opened;
    if (run > 0) again.push_back(opened);
    test::WaitUntil([&] {
      return WindowText(GetDlgItem(palette, frmFind::kStatusId)).find("reading") == std::string::npos;
    });
    const HWND field = GetDlgItem(palette, frmFind::kFieldId);
    SetWindowTextA(field, "");
    double slowest = 0;
    for (const char letter : kTyped) {
      // The field tells of its change, and the list is painted before it goes on.
      slowest = std::max(slowest,
                         Milliseconds([&] { SendMessageA(field, WM_CHAR, static_cast<WPARAM>(letter), 1); }));
    }
    keys.push_back(slowest);
    SendMessageA(palette, WM_CLOSE, 0, 0);
    AnswerAll();
  }
  const std::string suffix = ", " + std::to_string(count) + " snippets in four libraries";
  PrintValue("open the palette" + suffix, first, kOpenLimitMs, "ms");
  PrintValue("open it again", Median(again), kOpenLimitMs, "ms");
  PrintValue("the slowest key, to the painted list", Median(keys), KeyLimitMs(all.size()), "ms");
}

}  // namespace

void BenchFind() {
  for (const int count : {10000, 32767}) Measure(count);
}

}  // namespace snip::bench
