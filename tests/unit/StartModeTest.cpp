#include "app/StartMode.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace snip::test {
namespace {

TEST(StartModeTest, OnlyTheSwitchOfComMakesItAComponent) {
  using Arguments = std::vector<std::string>;
  for (const Arguments& arguments :
       {Arguments{"-Embedding"}, Arguments{"/Embedding"}, Arguments{"-embedding"}, Arguments{"/EMBEDDING"},
        Arguments{"C:\\My Snippets", "-Embedding"}, Arguments{"-Embedding", "more"}}) {
    EXPECT_EQ(StartModeFromArguments(arguments), StartMode::Component) << testing::PrintToString(arguments);
  }
  for (const Arguments& arguments :
       {Arguments{}, Arguments{""}, Arguments{"Embedding"}, Arguments{"--Embedding"},
        Arguments{"-Embeddings"}, Arguments{"-Embed"}, Arguments{"- Embedding"}, Arguments{"-Embedding "},
        Arguments{"/regserver"}}) {
    EXPECT_EQ(StartModeFromArguments(arguments), StartMode::Standalone) << testing::PrintToString(arguments);
  }
}

}  // namespace
}  // namespace snip::test
