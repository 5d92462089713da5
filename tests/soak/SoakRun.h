#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tests/app/Program.h"
#include "tests/soak/SoakScript.h"

namespace snip::test {

struct Failure {
  std::size_t line = 0;  ///< From 0.
  std::string difference;
};

struct Measurement {
  ProcessUse warm;  ///< Early in the life of the process that lived to the end.
  ProcessUse end;
};

struct RunOptions {
  /// After which line the process counts as warmed up; it must not be ended later.
  std::size_t warmUpEnd = 0;
  std::function<void(const std::string& line)> trace{};
  std::function<void(std::size_t done)> progress{};
};

/// Carries a script out in a fresh folder until something is not as it must be; at the end the
/// program must close by itself. `measured`, unless null, gets what the process held.
std::optional<Failure> Replay(const Script& script, const RunOptions& options = {},
                              Measurement* measured = nullptr);

}  // namespace snip::test
