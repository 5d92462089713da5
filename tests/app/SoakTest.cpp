#include <gtest/gtest.h>

#include <filesystem>

#include "platform/Com.h"
#include "tests/soak/SoakRun.h"

namespace snip::test {
namespace {

void Replays(const Script& script) {
  const ComApartment apartment;
  const auto failure = Replay(script);
  EXPECT_FALSE(failure) << (failure->line < script.size() ? script[failure->line] : "the end") << ": "
                        << failure->difference;
}

TEST(Soak, ScriptsShowWhatTheySay) {
  int scripts = 0;
  for (const auto& file : std::filesystem::directory_iterator(SNIPSTORE_SCRIPTS)) {
    SCOPED_TRACE(file.path().filename().string());
    ++scripts;
    Replays(ReadScript(file.path().string()));
  }
  EXPECT_GT(scripts, 0);
}

}  // namespace
}  // namespace snip::test
