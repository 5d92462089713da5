#include <gtest/gtest.h>

#include "platform/Window.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

class Plain : public Window {
 public:
  Plain() {
    Create({.className = "PointerLookTest",
            .title = "Pointer",
            .style = WS_POPUP | WS_VISIBLE,
            .place = {100, 100, 300, 300}});
  }
  ~Plain() override { Destroy(); }
};

/// Moves the pointer and takes the message that tells so.
bool PointerIsToldAt(POINT place) {
  MovePointer(place);
  return WaitUntil([&] {
    const DWORD told = GetMessagePos();
    return static_cast<short>(LOWORD(told)) == place.x && static_cast<short>(HIWORD(told)) == place.y;
  });
}

TEST(PointerLookTest, APlaceThatThePointerHasLeftUntoldIsLookedAtNowAndThen) {
  const Plain window;
  PointerQuery look;
  ASSERT_TRUE(PointerIsToldAt({500, 500}));
  EXPECT_FALSE(look.Needed(window.hWnd()));
  ASSERT_TRUE(PointerIsToldAt({200, 200}));
  for (int tick = 0; tick < 20; ++tick) {
    EXPECT_TRUE(look.Needed(window.hWnd())) << "while it is where the message says";
    look.Found({200, 200});
  }

  EXPECT_TRUE(look.Needed(window.hWnd()));
  int looks = 0;
  for (int tick = 0; tick < 80; ++tick) {
    look.Found({900, 700});
    if (look.Needed(window.hWnd())) ++looks;
  }
  EXPECT_GT(looks, 4);
  EXPECT_LT(looks, 20);
  look.Found({900, 700});
  ASSERT_TRUE(PointerIsToldAt({201, 200}));
  EXPECT_TRUE(look.Needed(window.hWnd())) << "as soon as it comes back";
}

}  // namespace
}  // namespace snip::test
