#include "app/StartMode.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace snip::test {
namespace {

TEST(StartModeTest, SwitchesOfComAndOfRegistration) {
  using Arguments = std::vector<std::string>;
  const std::pair<Arguments, StartMode> cases[] = {
      {{"-Embedding"}, StartMode::Component},
      {{"/EMBEDDING"}, StartMode::Component},
      {{"C:\\My Snippets", "-embedding", "more"}, StartMode::Component},
      {{"/regserver"}, StartMode::Register},
      {{"-RegServer"}, StartMode::Register},
      {{"/UNREGSERVER"}, StartMode::Unregister},
      {{"-unregserver", "/regserver"}, StartMode::Unregister},
      {{}, StartMode::Standalone},
      {{""}, StartMode::Standalone},
      {{"-"}, StartMode::Standalone},
      {{"Embedding"}, StartMode::Standalone},
      {{"--Embedding"}, StartMode::Standalone},
      {{"-Embeddings", "-Embed", "- Embedding", "-Embedding ", "regserver"}, StartMode::Standalone},
  };
  for (const auto& [arguments, mode] : cases) {
    EXPECT_EQ(StartModeFromArguments(arguments), mode) << testing::PrintToString(arguments);
    EXPECT_FALSE(IsSilent(arguments));
  }
  EXPECT_TRUE(IsSilent(Arguments{"/regserver", "/silent"}));
  EXPECT_TRUE(IsSilent(Arguments{"-SILENT", "-unregserver"}));
}

}  // namespace
}  // namespace snip::test
