#include "tests/soak/SoakRun.h"

#include <algorithm>
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

Script Shrink(Script failing, unsigned seconds) {
  const DWORD start = GetTickCount();
  const auto timeLeft = [&] { return GetTickCount() - start < seconds * 1000; };
  // A script cut after its failing action; empty when it does not fail.
  const auto fails = [](Script script) {
    const auto failure = Replay(script);
    script.resize(failure ? std::min(failure->line + 1, script.size()) : 0);
    return script;
  };
  // What matters mostly lies shortly before the failure.
  for (std::size_t length = 16; length < failing.size() && timeLeft(); length *= 4) {
    Script tail(failing.end() - static_cast<std::ptrdiff_t>(length), failing.end());
    tail.insert(tail.begin(), failing.front());  // which makes the libraries
    tail = fails(tail);
    if (!tail.empty()) {
      failing = tail;
      break;
    }
  }
  for (std::size_t piece = std::max<std::size_t>(failing.size() / 2, 1); timeLeft(); piece /= 2) {
    for (std::size_t from = 0; from < failing.size() && timeLeft();) {
      Script shorter = failing;
      const auto first = shorter.begin() + static_cast<std::ptrdiff_t>(from);
      shorter.erase(first, first + static_cast<std::ptrdiff_t>(std::min(piece, failing.size() - from)));
      shorter = fails(std::move(shorter));
      if (shorter.empty()) {
        from += piece;
      } else {
        failing = std::move(shorter);
      }
    }
    if (piece == 1) break;
  }
  return failing;
}

}  // namespace snip::test
