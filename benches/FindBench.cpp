// The palette: from a key to the painted list, and how long it takes to open.

#include <algorithm>
#include <string>
#include <vector>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/OwnProcess.h"
#include "benches/RealWindow.h"
#include "benches/WindowBenches.h"
#include "platform/Win32Text.h"
#include "ui/main/MainWindowCommands.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 9;
constexpr int kFirstRuns = 7;
constexpr Limit kOpenLimit{50, "what comes sooner is there at once"};
constexpr std::size_t kLibraries = 4;
constexpr std::string_view kTyped = "index text";

Limit KeyLimit(int count) {
  return {count <= 10000 ? 16.0 : 50.0, "the list has to follow the typing"};
}

/// The program with that many snippets in four libraries.
class FourLibraries {
 public:
  explicit FourLibraries(int count) : snippets_(GeneratedSnippets(count)), window_(Part(0)) {
    for (std::size_t library = 1; library < kLibraries; ++library) {
      window_.AddLibrary("Other" + std::to_string(library), Part(library));
    }
  }

  /// Opens the palette; the time from the key to the painted list.
  double Open() {
    return Milliseconds([&] {
      SendMessageA(window_.hWnd(), WM_COMMAND, Command::kFind, 0);
      palette_ = test::FindVisibleWindow("Find Snippets");
      UpdateWindow(GetDlgItem(palette_, frmFind::kListId));
    });
  }
  HWND palette() const { return palette_; }

 private:
  std::vector<Snippet> Part(std::size_t library) const {
    const std::size_t share = snippets_.size() / kLibraries;
    const auto begin = snippets_.begin() + static_cast<std::ptrdiff_t>(library * share);
    return {begin, library + 1 == kLibraries ? snippets_.end() : begin + static_cast<std::ptrdiff_t>(share)};
  }

  std::vector<Snippet> snippets_;
  RealWindow window_;
  HWND palette_ = nullptr;
};

void Measure(int count) {
  std::vector<double> first(kFirstRuns);
  for (double& time : first) time = MeasuredInOwnProcess("find-first-" + std::to_string(count));
  FourLibraries libraries(count);
  std::vector<double> again;
  std::vector<double> keys;
  for (int run = 0; run < kRuns; ++run) {
    const double opened = libraries.Open();
    if (run > 0) again.push_back(opened);
    const HWND palette = libraries.palette();
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
  PrintValue("open the palette" + suffix, Median(first), kOpenLimit, "ms");
  PrintValue("open it again", Median(again), kOpenLimit, "ms");
  PrintValue("the slowest key, to the painted list", Median(keys), KeyLimit(count), "ms");
}

}  // namespace

int OpenPaletteFirst(int snippets) {
  return Microseconds(FourLibraries(snippets).Open());
}

void BenchFind() {
  for (const int count : {10000, 32767}) Measure(count);
}

}  // namespace snip::bench
