#include "ui/main/DeferredRows.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Window.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

constexpr int kCount = 5000;

class DeferredRowsTest : public testing::Test {
 protected:
  void Fill(int count) {
    std::vector<Snippet> snippets(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) snippets[static_cast<std::size_t>(i)].Name = "row " + std::to_string(i);
    rows_.Fill(list_, snippets);
  }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(list_, message, wParam, lParam);
  }
  /// The rows that the control has, without asking for the missing ones.
  int RowsSoFar() const {
    const auto procedure = reinterpret_cast<WNDPROC>(GetClassLongPtrA(list_, GCLP_WNDPROC));
    return static_cast<int>(CallWindowProcA(procedure, list_, LB_GETCOUNT, 0, 0));
  }
  std::string Row(int row) const {
    char text[20]{};
    Send(LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text));
    return text;
  }

  void Show(bool shown) const { ShowWindow(list_, shown ? SW_SHOW : SW_HIDE); }

  const TestFrame frame_{"frame", {100, 100, 400, 300}};
  HWND list_ =
      CreateControl(frame_.get(), "LISTBOX", "", WS_VSCROLL | LBS_NOTIFY, 0, 1, nullptr, {0, 0, 200, 200});
  DeferredRows rows_;
};

TEST_F(DeferredRowsTest, NobodyFindsFewerRows) {
  const std::pair<const char*, std::function<bool()>> questions[] = {
      {"count", [&] { return Send(LB_GETCOUNT) == kCount; }},
      {"last row", [&] { return Row(kCount - 1) == "row 4999"; }},
      {"selection", [&] { return Send(LB_SETCURSEL, kCount - 1) == kCount - 1; }},
      {"wheel", [&] { return Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA)), Send(LB_GETTOPINDEX) > 0; }},
      {"scroll bar pressed", [&] { return Send(WM_NCLBUTTONDOWN, HTBORDER) == 0; }},
      {"End key", [&] { return Send(WM_KEYDOWN, VK_END), Send(LB_GETCURSEL) == kCount - 1; }},
      {"scrolled", [&] { return Send(WM_VSCROLL, SB_BOTTOM), Send(LB_GETTOPINDEX) > 4900; }},
  };
  for (const auto& [name, answered] : questions) {
    SCOPED_TRACE(name);
    Show(false);
    Fill(kCount);
    Show(true);
    EXPECT_EQ(Send(LB_SETCURSEL, 0), 0);
    EXPECT_EQ(Row(0), "row 0");
    EXPECT_LT(RowsSoFar(), kCount);
    EXPECT_TRUE(answered());
    EXPECT_GE(RowsSoFar(), kCount);
  }
}

TEST_F(DeferredRowsTest, TheOthersFollowOnceTheFirstAreSeen) {
  Fill(kCount);
  Send(LB_SETCURSEL, 3);
  EXPECT_LT(RowsSoFar(), kCount);
  Show(true);
  EXPECT_TRUE(WaitUntil([&] { return RowsSoFar() == kCount; }));
  EXPECT_EQ(Row(kCount - 1), "row 4999");
  EXPECT_EQ(Send(LB_GETCURSEL), 3);
  EXPECT_EQ(Send(LB_GETTOPINDEX), 0);
}

TEST_F(DeferredRowsTest, RowsOfThePreviousLibraryDoNotFollow) {
  for (const int count : {3, 1000}) {
    Show(false);
    Fill(kCount);
    Show(true);
    UpdateWindow(list_);
    Fill(count);
    EXPECT_EQ(RowsSoFar(), count) << "at once, since the list is seen";
    EXPECT_EQ(Send(LB_GETCOUNT), count);
    EXPECT_EQ(Row(count - 1), "row " + std::to_string(count - 1));
  }
}

}  // namespace
}  // namespace snip::test
