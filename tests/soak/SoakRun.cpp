#include "tests/soak/SoakRun.h"

#include <exception>
#include <stdexcept>

#include "tests/soak/ScriptPlayer.h"

namespace snip::test {
namespace {

/// Carries out a line; what it says behind "->" has to be seen.
void DoAndCompare(ScriptPlayer& player, const std::string& line, const RunOptions& options) {
  const std::size_t arrow = line.find(" -> ");
  const std::string done = line.substr(0, arrow);
  const std::string state = player.Do(done);
  if (options.trace) options.trace(done + (state.empty() ? "" : " -> " + state));
  if (arrow != std::string::npos && !player.Sees(line.substr(arrow + 4))) throw std::runtime_error(state);
}

}  // namespace

std::optional<Failure> Replay(const Script& script, const RunOptions& options, Measurement* measured) {
  std::size_t done = 0;
  try {
    ScriptPlayer player;
    for (; done < script.size(); ++done) {
      if (options.progress) options.progress(done);
      DoAndCompare(player, script[done], options);
      if (measured != nullptr && done == options.warmUpEnd) measured->warm = player.Use();
    }
    if (measured != nullptr) measured->end = player.Use();
    // A name that another snippet has would keep the window open.
    player.Do("key Escape");
    player.Do("close");
    return std::nullopt;
  } catch (const std::exception& difference) {
    return Failure{done, difference.what()};
  }
}

}  // namespace snip::test
