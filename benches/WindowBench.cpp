// The program's own windows beside the platform's bare ones. Prints report lines for ./bench.
//   window_bench list | code | walk | hover | find

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "benches/WindowBenches.h"
#include "platform/Com.h"

int main(int count, char** arguments) {
  using namespace snip;
  const ComApartment apartment;
  const OleThread dragging;
  InitCommonControls();
  const std::string_view group = count == 2 ? arguments[1] : "";
  if (group == "list") {
    bench::BenchList();
  } else if (group == "code") {
    bench::BenchCodeField();
  } else if (group == "code-field") {
    return bench::ShowInField();
  } else if (group == "code-bare") {
    return bench::ShowInBareControl();
  } else if (group == "code-keys-field") {
    return bench::TypeInField();
  } else if (group == "code-keys-bare") {
    return bench::TypeInBareControl();
  } else if (group == "code-parts") {
    return bench::FillBareControlInParts();
  } else if (group == "walk") {
    bench::BenchWalk();
  } else if (group == "hover") {
    bench::BenchHover();
  } else if (group == "find") {
    bench::BenchFind();
  } else if (group.starts_with("find-first-")) {
    return bench::OpenPaletteFirst(std::atoi(group.data() + group.rfind('-') + 1));
  } else {
    std::fputs("usage: window_bench list | code | walk | hover | find\n", stderr);
    return 2;
  }
  return 0;
}
