#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "platform/Com.h"
#include "tests/soak/SoakRun.h"

namespace {

using namespace snip::test;

void Print(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

void Print(const char* when, const ProcessUse& use) {
  constexpr std::size_t kilobyte = 1024;
  Print(std::string(when) + ": " + std::to_string(use.handles) + " handles, " +
        std::to_string(use.workingSet / kilobyte) + " KB working set, " +
        std::to_string(use.privateBytes / kilobyte) + " KB private, " + std::to_string(use.gdiObjects) +
        " GDI and " + std::to_string(use.userObjects) + " USER objects");
}

int ShowScript(const Script& script) {
  const auto failure = Replay(script, {.trace = [](const std::string& line) { Print(line); }});
  Print(failure ? failure->difference : "No difference");
  return failure ? 1 : 0;
}

}  // namespace

/// soak_test [LINES [SEED]]: a random script; soak_test FILE: the script of that file
int main(int count, char** arguments) {
  constexpr unsigned long defaultActions = 20000;
  constexpr std::size_t warmUp = 2000;
  const snip::ComApartment apartment;
  if (count == 2 && std::string(arguments[1]).ends_with(".txt")) return ShowScript(ReadScript(arguments[1]));
  const auto number = [&](int index, unsigned long otherwise) {
    return count > index ? std::strtoul(arguments[index], nullptr, 10) : otherwise;
  };
  const std::size_t actions = number(1, defaultActions);
  const auto seed = static_cast<std::uint32_t>(number(2, GetTickCount()));
  Print(std::to_string(actions) + " actions, seed " + std::to_string(seed));

  const Script script = RandomScript(actions, seed);
  Measurement measured;
  const DWORD start = GetTickCount();
  RunOptions options{.warmUpEnd = actions * 2 / 5 + warmUp};
  options.progress = [](std::size_t done) {
    if (done % 1000 == 0 && done > 0) Print(std::to_string(done) + " done");
  };
  const auto failure = Replay(script, options, &measured);
  const double seconds = (GetTickCount() - start) / 1000.0;
  if (!failure) {
    Print("No difference in " + std::to_string(seconds) + " s, " +
          std::to_string(static_cast<double>(actions) / seconds) + " actions a second");
    if (options.warmUpEnd < actions) Print("After the warm-up", measured.warm);
    Print("At the end", measured.end);
    return 0;
  }
  Print("Action " + std::to_string(failure->line) + " of seed " + std::to_string(seed) + " differs:\n" +
        failure->difference);
  Print("soak_test FILE replays a file of these lines:");
  for (std::size_t line = 0; line <= failure->line && line < script.size(); ++line) Print(script[line]);
  return 1;
}
