// How much the command bar draws while the pointer goes over it. The bar is covered with a colour of its own
// before each move; what it draws then stands out.

#include <oleacc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/Pixels.h"
#include "benches/RealWindow.h"
#include "benches/WindowBenches.h"
#include "platform/Com.h"
#include "platform/Handle.h"

namespace snip::bench {
namespace {

/// Longer than the bar takes to look at the pointer a few times.
constexpr int kSettleMs = 250;

/// The places of a bar's buttons in its pixels, those that cannot be pressed left out.
std::vector<Rect> Buttons(HWND bar) {
  std::vector<Rect> places;
  ComPtr<IAccessible> accessible;
  AccessibleObjectFromWindow(bar, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             accessible.PutVoid());
  long count = 0;
  if (!accessible || FAILED(accessible->get_accChildCount(&count))) return places;
  for (long i = 1; i <= count; ++i) {
    VARIANT child{};
    child.vt = VT_I4;
    child.lVal = i;
    VARIANT role{};
    VARIANT state{};
    accessible->get_accRole(child, &role);
    accessible->get_accState(child, &state);
    if (role.lVal == ROLE_SYSTEM_SEPARATOR || (state.lVal & STATE_SYSTEM_UNAVAILABLE) != 0) continue;
    POINT place{};
    LONG width = 0;
    LONG height = 0;
    if (FAILED(accessible->accLocation(&place.x, &place.y, &width, &height, child))) continue;
    if (role.lVal == ROLE_SYSTEM_BUTTONDROPDOWN) {  // drawn with the button in front of it
      places.back().width += static_cast<int>(width);
      continue;
    }
    ScreenToClient(bar, &place);
    places.push_back({static_cast<int>(place.x), static_cast<int>(place.y), static_cast<int>(width),
                      static_cast<int>(height)});
  }
  return places;
}

class HoveredBar {
 public:
  explicit HoveredBar(HWND bar) : bar_(bar), size_(ClientSize(bar)), buttons_(snip::bench::Buttons(bar)) {}

  const std::vector<Rect>& buttons() const { return buttons_; }

  /// Moves the pointer to a place in the bar's pixels; how many buttons were drawn for it. A pixel drawn
  /// outside the buttons counts as one more.
  int DrawnAfterMoveTo(POINT place, bool expectsDrawing) {
    Cover();
    ClientToScreen(bar_, &place);
    test::MovePointer(place);
    if (expectsDrawing) test::WaitUntil([this] { return Drawn() > 0; });
    const double start = Now();
    test::WaitUntil([&] { return Now() - start > kSettleMs; });
    return Drawn();
  }

 private:
  void Cover() {
    const WindowDC dc(bar_);
    const RECT all{0, 0, size_.width, size_.height};
    const UniqueBrush brush(CreateSolidBrush(RGB(255, 0, 255)));
    FillRect(dc.get(), &all, brush.get());
    covered_ = Pixels(bar_);
  }

  int Drawn() const {
    const std::vector<std::uint32_t> now = Pixels(bar_);
    std::vector<bool> drawn(buttons_.size());
    bool outside = false;
    for (std::size_t i = 0; i < now.size(); ++i) {
      if (now[i] == covered_[i]) continue;
      const int x = static_cast<int>(i) % size_.width;
      const auto button = std::find_if(buttons_.begin(), buttons_.end(), [x](const Rect& place) {
        return x >= place.left && x < place.right();
      });
      if (button == buttons_.end()) {
        outside = true;
      } else {
        drawn[static_cast<std::size_t>(button - buttons_.begin())] = true;
      }
    }
    return static_cast<int>(std::count(drawn.begin(), drawn.end(), true)) + (outside ? 1 : 0);
  }

  HWND bar_;
  Size size_;
  std::vector<Rect> buttons_;
  std::vector<std::uint32_t> covered_;
};

POINT Centre(const Rect& place) {
  return {place.left + place.width / 2, place.top + place.height / 2};
}

}  // namespace

void BenchHover() {
  RealWindow real(GeneratedSnippets(3));
  const HWND bar = real.Control(frmAddIn::kMainBarId);
  HoveredBar hovered(bar);
  if (hovered.buttons().size() < 2) {
    std::fputs("window_bench: the bar has no buttons\n", stderr);
    std::exit(1);
  }
  const POINT away{10, 200};
  hovered.DrawnAfterMoveTo(away, false);

  int mostAtRest = 0;
  double mostPerChange = 0;
  bool onButton = false;
  const auto change = [&](POINT place, bool toButton) {
    const int changes = (onButton ? 1 : 0) + (toButton ? 1 : 0);  // one button is left, one is entered
    const int drawn = hovered.DrawnAfterMoveTo(place, true);
    mostPerChange = std::max(mostPerChange, static_cast<double>(drawn) / changes);
    onButton = toButton;
  };
  for (const Rect& button : hovered.buttons()) {
    change(Centre(button), true);
    const POINT beside{Centre(button).x + 2, Centre(button).y + 1};
    mostAtRest = std::max(mostAtRest, hovered.DrawnAfterMoveTo(beside, false));
  }
  change(away, false);
  mostAtRest = std::max(mostAtRest, hovered.DrawnAfterMoveTo({away.x + 5, away.y}, false));
  PrintValue("hover over the command bar: buttons drawn per change, at most", mostPerChange,
             Limit{1, "more would flicker"}, "");
  PrintValue("the same while nothing changes", mostAtRest, Limit{0, "what does not change needs no work"},
             "");
}

}  // namespace snip::bench
