// The program's own windows beside the platform's bare ones. Prints report lines for ./bench.
//   window_bench list | code | walk | hover | find

#include <windows.h>
#include <commctrl.h>

#include <cstdio>
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
  } else if (group == "walk") {
    bench::BenchWalk();
  } else if (group == "hover") {
    bench::BenchHover();
  } else if (group == "find") {
    bench::BenchFind();
  } else {
    std::fputs("usage: window_bench list | code | walk | hover | find\n", stderr);
    return 2;
  }
  return 0;
}
