#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "tests/support/TestDesktop.h"
#include "ui/main/frmTip.h"

namespace snip::test {
namespace {

class TipTest : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* row : {"first", "second", "third"}) {
      SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row));
    }
    ASSERT_TRUE(tip_.Load());
    SetFocus(list_);
  }

  const TestFrame frame_{"frame", {100, 100, 400, 300}};
  HWND list_ =
      CreateControl(frame_.get(), "LISTBOX", "", WS_VISIBLE | LBS_NOTIFY, 0, 1, nullptr, {0, 0, 200, 200});
  frmTip tip_;
};

TEST_F(TipTest, ShowsTheTextOnTopWithoutTakingTheFocus) {
  EXPECT_FALSE(tip_.Visible());
  tip_.ShowTip("", 300, 310);
  EXPECT_FALSE(tip_.Visible());
  tip_.ShowTip("The whole name", 300, 310);
  EXPECT_TRUE(tip_.Visible());
  EXPECT_EQ(WindowText(tip_.hWnd()), "The whole name");
  EXPECT_EQ(PlaceOf(tip_.hWnd()).left, 300);
  EXPECT_EQ(PlaceOf(tip_.hWnd()).top, 310);
  EXPECT_NE(GetWindowLongA(tip_.hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  EXPECT_EQ(GetFocus(), list_);
  EXPECT_EQ(GetActiveWindow(), frame_.get());

  const int width = PlaceOf(tip_.hWnd()).width;
  tip_.ShowTip("The whole name and more", 300, 310);
  EXPECT_GT(PlaceOf(tip_.hWnd()).width, width);

  const Size size = ClientSize(tip_.hWnd());
  for (const Point corner : {Point{0, 0}, Point{size.width - 1, 0}, Point{size.width - 1, size.height - 1}}) {
    EXPECT_EQ(ShownAt(tip_.hWnd(), corner), GetSysColor(COLOR_INFOTEXT));
  }
  EXPECT_EQ(ShownAt(tip_.hWnd(), {1, 1}), GetSysColor(COLOR_INFOBK));
  tip_.Hide();
  EXPECT_FALSE(tip_.Visible());
}

/// The first row and column of a window in which its text shows, on the screen.
POINT FirstInk(HWND window, int inset, int ground, int height) {
  const WindowDC dc(window);
  const int width = ClientSize(window).width;
  POINT first{width, height};
  for (int y = inset; y < height - inset; ++y) {
    for (int x = inset; x < width - inset; ++x) {
      if (GetPixel(dc.get(), x, y) == GetSysColor(ground)) continue;
      first = {std::min<LONG>(first.x, x), std::min<LONG>(first.y, y)};
    }
  }
  ClientToScreen(window, &first);
  return first;
}

TEST_F(TipTest, ItsTextLiesOnTheRowsAlsoAtTheScreensEdge) {
  const std::string text = "Hamburgefonstiv, of which no list is wide enough to show the whole";
  SendMessageA(list_, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
  SendMessageA(list_, LB_RESETCONTENT, 0, 0);
  SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SetWindowLongA(frame_.get(), GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_VISIBLE));
  SetFocus(frame_.get());  // or the row has a frame
  ListTips tips;
  tips.Attach(list_);
  tips.TakeListFont();
  for (const int left : {120, 2}) {
    tips.Hide();
    SetWindowPos(frame_.get(), nullptr, left, 100, 400, 300, SWP_FRAMECHANGED);
    UpdateWindow(list_);
    const int row = static_cast<int>(SendMessageA(list_, LB_GETITEMHEIGHT, 0, 0));
    const POINT expected = FirstInk(list_, 0, COLOR_WINDOW, row);
    MovePointer({left + 40, 100 + row / 2});
    ASSERT_TRUE(WaitUntil([&] {
      tips.tTip_Timer();
      return FindVisibleWindow(text) != nullptr;
    }));
    const HWND tip = FindVisibleWindow(text);
    const POINT ink = FirstInk(tip, 1, COLOR_INFOBK, ClientSize(tip).height);
    EXPECT_EQ(ink.x, expected.x);
    EXPECT_EQ(ink.y, expected.y);
  }
}

TEST_F(TipTest, TheWheelTurnsTheListThatItExtends) {
  for (int row = 0; row < 50; ++row) SendMessageA(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("row"));
  tip_.SetExtended(list_);
  tip_.ShowTip("second, in full", 300, 310);
  SendMessageA(tip_.hWnd(), WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), MAKELPARAM(310, 315));
  EXPECT_GT(SendMessageA(list_, LB_GETTOPINDEX, 0, 0), 0);
  EXPECT_FALSE(tip_.Visible());
}

}  // namespace
}  // namespace snip::test
