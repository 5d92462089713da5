#include <gtest/gtest.h>

#include "platform/Com.h"
#include "tests/soak/SoakRun.h"

namespace snip::test {
namespace {

TEST(Soak, AShortRunShowsNoDifference) {
  constexpr std::size_t actions = 300;
  constexpr std::uint32_t seed = 1;
  const ComApartment apartment;
  const auto failure = Replay(RandomActions(actions, seed));
  EXPECT_FALSE(failure) << "action " << failure->action << ": " << failure->difference << "run tools/soak "
                        << actions << " " << seed << " for the shortest script";
}

TEST(Soak, TwoClicksOnARowAreNoDoubleClick) {
  const ComApartment apartment;
  const Action click{.kind = ActionKind::ClickRow, .real = true, .a = 1};
  const auto failure = Replay({click, {.kind = ActionKind::SelectRow}, click});
  EXPECT_FALSE(failure) << failure->difference;
}

}  // namespace
}  // namespace snip::test
