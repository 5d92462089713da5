#include "tests/soak/SoakRun.h"

#include <algorithm>
#include <exception>

namespace snip::test {

std::optional<Failure> Replay(const std::vector<Action>& actions, const RunOptions& options,
                              Measurement* measured) {
  std::size_t done = 0;
  try {
    SoakHands hands;
    SoakModel model(hands);
    hands.Watch(model);
    hands.Trace(options.trace);
    model.StartProgram();
    for (; done < actions.size(); ++done) {
      if (options.trace) options.trace(Describe(actions[done]));
      if (options.progress) options.progress(done);
      model.Do(actions[done]);
      if (measured != nullptr && done == options.warmUpEnd) measured->warm = hands.Use();
    }
    if (measured != nullptr) measured->end = hands.Use();
    // Twice, since a name that another snippet has keeps the window open once.
    model.Do({.kind = ActionKind::CancelName});
    model.Do({.kind = ActionKind::Restart});
    return std::nullopt;
  } catch (const std::exception& difference) {
    return Failure{done, difference.what()};
  }
}

std::vector<Action> Shrink(std::vector<Action> failing, unsigned seconds) {
  const DWORD start = GetTickCount();
  const auto timeLeft = [&] { return GetTickCount() - start < seconds * 1000; };
  // A script cut after its failing action; empty when it does not fail.
  const auto fails = [](std::vector<Action> script) {
    const auto failure = Replay(script);
    script.resize(failure ? std::min(failure->action + 1, script.size()) : 0);
    return script;
  };
  // What matters mostly lies shortly before the failure.
  for (std::size_t length = 16; length < failing.size() && timeLeft(); length *= 4) {
    const auto tail = fails({failing.end() - static_cast<std::ptrdiff_t>(length), failing.end()});
    if (!tail.empty()) {
      failing = tail;
      break;
    }
  }
  for (std::size_t piece = std::max<std::size_t>(failing.size() / 2, 1); timeLeft(); piece /= 2) {
    for (std::size_t from = 0; from < failing.size() && timeLeft();) {
      std::vector<Action> shorter = failing;
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
