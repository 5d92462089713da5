#include <gtest/gtest.h>

#include <memory>
#include <initializer_list>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Drawing.h"
#include "platform/Handle.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "tests/support/TestCanvas.h"
#include "tests/support/TestDesktop.h"
#include "ui/caption/CaptionHook.h"

namespace snip::test {
namespace {

constexpr COLORREF kBlue = 0xFF0000;
constexpr COLORREF kSilver = 0xC0C0C0;
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr DWORD kDialog = WS_POPUP | WS_CAPTION | WS_SYSMENU;

/// Counts the messages that come to its own procedure.
class Frame : public Window {
 public:
  ~Frame() override { Destroy(); }
  bool Make(const Rect& place, DWORD style = WS_OVERLAPPEDWINDOW, DWORD exStyle = 0, HWND owner = nullptr) {
    return Create({.className = "CaptionTestFrame",
                   .title = "Gradient",
                   .style = style | WS_VISIBLE,
                   .exStyle = exStyle,
                   .place = place,
                   .parent = owner,
                   .iconId = IDI_SNIPSTORE});
  }
  std::multiset<UINT> seen;
  std::function<void()> onGetIcon;

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    seen.insert(message);
    if (message == WM_GETICON && onGetIcon) onGetIcon();
    return Default(message, wParam, lParam);
  }
};

Rect Place(HWND window) {
  return PlaceInParent(window);
}

/// The pixels of a title bar's filled part.
Image CaptionOf(HWND window) {
  const CaptionPainter painter;
  RECT bounds{};
  GetRgnBox(painter.Covered(window).get(), &bounds);
  const Rect place = Place(window);
  const FrameDC dc(window);
  TestCanvas canvas(static_cast<int>(bounds.right - bounds.left),
                    static_cast<int>(bounds.bottom - bounds.top), 0);
  const Image size = canvas.Read();
  BitBlt(canvas.dc(), 0, 0, size.width, size.height, dc.get(), bounds.left - place.left,
         bounds.top - place.top, SRCCOPY);
  return canvas.Read();
}

bool HasGradient(HWND window, COLORREF end) {
  const Image bar = CaptionOf(window);
  const COLORREF middle = bar.At(bar.width / 2, 0);
  const int half = GetBValue(middle);
  return bar.At(0, 0) == 0 && bar.At(0, bar.height - 1) == 0 && bar.At(bar.width - 1, 0) == end &&
         bar.At(bar.width - 1, bar.height - 1) == end && half > 0x50 && half < 0x90 &&
         GetRValue(middle) == (end == kBlue ? 0 : half);
}

/// How many pixels of the columns from `left` fit.
template <class Fits>
int Count(HWND window, int left, int right, Fits fits) {
  const Image bar = CaptionOf(window);
  int count = 0;
  for (int y = 0; y < bar.height; ++y) {
    for (int x = left; x < right; ++x) count += fits(bar.At(x, y)) ? 1 : 0;
  }
  return count;
}

int TextPixels(HWND window) {
  const Image bar = CaptionOf(window);
  return Count(window, bar.height + 4, bar.width / 2, [](COLORREF color) { return color == kWhite; });
}

class CaptionTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(frame_.Make({100, 100, 400, 200}));
    hook_.Install(frame_.hWnd(), painter_);
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(frame_.hWnd()) && HasGradient(frame_.hWnd(), kBlue); }));
  }

  /// Where the system has one of its buttons, in client pixels.
  static POINT Button(HWND window, LRESULT hitTest) {
    const Rect place = Place(window);
    std::vector<int> columns;
    const int y = place.top + GetSystemMetrics(SM_CYSIZEFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
    for (int x = place.left; x < place.right(); ++x) {
      if (SendMessageA(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == hitTest) columns.push_back(x);
    }
    if (columns.empty()) throw std::runtime_error("no such button");
    POINT at{columns[columns.size() / 2], y};
    ScreenToClient(window, &at);
    return at;
  }

  Frame frame_;
  CaptionPainter painter_;
  CaptionHook hook_;
};

WNDPROC ProcedureOf(HWND window) {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(window, GWLP_WNDPROC));
}

TEST_F(CaptionTest, AnOwnerLooksActiveWhileItsHookedDialogIs) {
  CaptionHook hook;
  {
    Frame dialog;
    ASSERT_TRUE(dialog.Make({120, 320, 200, 100}, kDialog, 0, frame_.hWnd()));
    ASSERT_TRUE(WaitUntil([&] { return HasGradient(frame_.hWnd(), kSilver); })) << "not hooked yet";
    hook.Install(dialog.hWnd(), painter_);
    SetActiveWindow(frame_.hWnd());
    SetActiveWindow(dialog.hWnd());
    EXPECT_TRUE(WaitUntil([&] { return HasGradient(dialog.hWnd(), kBlue); }));
    EXPECT_TRUE(HasGradient(frame_.hWnd(), kBlue));

    Frame other;
    ASSERT_TRUE(other.Make({550, 100, 200, 100}));
    EXPECT_TRUE(WaitUntil([&] { return HasGradient(frame_.hWnd(), kSilver); }));
    SetActiveWindow(dialog.hWnd());
  }
  SetActiveWindow(frame_.hWnd());
  EXPECT_TRUE(WaitUntil([&] { return HasGradient(frame_.hWnd(), kBlue); }));
  Frame other;
  ASSERT_TRUE(other.Make({550, 100, 200, 100}));
  EXPECT_TRUE(WaitUntil([&] { return HasGradient(frame_.hWnd(), kSilver); })) << "the dialog is gone";
}

TEST_F(CaptionTest, ShowsIconAndText) {
  const int text = TextPixels(frame_.hWnd());
  EXPECT_GT(text, 20);
  // Nothing else at the left end is other than a shade of blue.
  const int side = CaptionOf(frame_.hWnd()).height;
  EXPECT_GT(Count(frame_.hWnd(), 0, side, [](COLORREF color) { return (color & 0x00FFFF) != 0; }), 50);

  SetWindowTextA(frame_.hWnd(), "Gradient Gradient");
  EXPECT_TRUE(HasGradient(frame_.hWnd(), kBlue));
  EXPECT_GT(TextPixels(frame_.hWnd()), text + 20);
  const auto shown = [this](const char* title) {
    SetWindowTextA(frame_.hWnd(), title);
    return TextPixels(frame_.hWnd());
  };
  EXPECT_EQ(shown(""), 0);
  EXPECT_GT(shown("&&"), shown("&"));
}

TEST_F(CaptionTest, PaintsAfterEachMessageThatMayHaveSpoiltIt) {
  for (const UINT message : std::initializer_list<UINT>{
           WM_KILLFOCUS, WM_MOUSEACTIVATE, WM_MDIACTIVATE, WM_SETTEXT, WM_NCPAINT, WM_INITMENUPOPUP,
           WM_SYSCOMMAND, WM_NCRBUTTONDOWN, WM_NCLBUTTONDOWN, WM_SIZE, WM_SETICON, WM_SETTINGCHANGE}) {
    SCOPED_TRACE(message);
    {
      const FrameDC dc(frame_.hWnd());
      FillArea(dc.get(), {0, 0, 200, 15}, RGB(255, 0, 0));
    }
    ASSERT_FALSE(HasGradient(frame_.hWnd(), kBlue));
    frame_.seen.clear();
    const LPARAM lParam = message == WM_SETTEXT ? reinterpret_cast<LPARAM>("Text") : 0;
    SendMessageA(frame_.hWnd(), message, message == WM_NCPAINT ? 1 : 0, lParam);
    EXPECT_TRUE(HasGradient(frame_.hWnd(), kBlue));
    EXPECT_EQ(frame_.seen.count(message), 1U);
  }
}

TEST_F(CaptionTest, ButtonsWorkAndStayWhereTheSystemHasThem) {
  const HWND window = frame_.hWnd();
  for (const LRESULT button : {HTMINBUTTON, HTMAXBUTTON, HTCLOSE}) {
    const Rect place = Place(window);
    POINT at = Button(window, button);
    ClientToScreen(window, &at);
    // Beside the sign on it: a face that the system has drawn, no shade of blue.
    const COLORREF face = GetPixel(FrameDC(window).get(), at.x - place.left,
                                   at.y - place.top - GetSystemMetrics(SM_CYSIZE) / 3);
    EXPECT_GT(GetGValue(face), 0x60) << button;
  }
  ClickAt(window, {150, -8}, 2);
  EXPECT_TRUE(WaitUntil([&] { return IsZoomed(window) != 0 && HasGradient(window, kBlue); }));
  ClickAt(window, Button(window, HTMAXBUTTON));
  EXPECT_TRUE(WaitUntil([&] { return IsZoomed(window) == 0 && HasGradient(window, kBlue); }));
  ClickAt(window, Button(window, HTMINBUTTON));
  EXPECT_TRUE(WaitUntil([&] { return IsIconic(window) != 0; }));
  ShowWindow(window, SW_RESTORE);
  EXPECT_TRUE(WaitUntil([&] { return IsIconic(window) == 0 && HasGradient(window, kBlue); }));
  ClickAt(window, Button(window, HTCLOSE));
  EXPECT_TRUE(WaitUntil([&] { return frame_.hWnd() == nullptr; }));
}

TEST_F(CaptionTest, ShowsTheCursorsOfTheUpperEdges) {
  const std::vector<std::pair<int, const char*>> cursors = {
      {HTLEFT, IDC_SIZEWE},       {HTRIGHT, IDC_SIZEWE},   {HTTOP, IDC_SIZENS},  {HTTOPLEFT, IDC_SIZENWSE},
      {HTTOPRIGHT, IDC_SIZENESW}, {HTCLIENT, nullptr},     {HTCAPTION, nullptr}, {HTBOTTOM, nullptr},
      {HTBOTTOMLEFT, nullptr},    {HTBOTTOMRIGHT, nullptr}};
  for (const auto& [part, cursor] : cursors) {
    frame_.seen.clear();
    SetCursor(nullptr);
    const LRESULT done = SendMessageA(frame_.hWnd(), WM_SETCURSOR, 0, MAKELPARAM(part, WM_MOUSEMOVE));
    EXPECT_EQ(frame_.seen.count(WM_SETCURSOR), cursor == nullptr ? 1U : 0U) << part;
    EXPECT_TRUE(cursor == nullptr || (done == TRUE && GetCursor() == LoadCursorA(nullptr, cursor))) << part;
  }
}

TEST(CaptionHook, HooksAndUnhooksInAnyOrder) {
  for (const int first : {0, 1}) {
    Frame frames[2];
    CaptionPainter painter;
    CaptionHook hooks[2];
    WNDPROC own = nullptr;
    for (const int i : {0, 1}) {
      ASSERT_TRUE(frames[i].Make({100 + 300 * i, 100, 250, 100}));
      own = ProcedureOf(frames[i].hWnd());
      hooks[i].Install(frames[i].hWnd(), painter);
      EXPECT_NE(ProcedureOf(frames[i].hWnd()), own);
      EXPECT_EQ(GetPropA(frames[i].hWnd(), "OldMeProc"), reinterpret_cast<HANDLE>(own));
    }
    const HWND removed = frames[first].hWnd();
    const HWND last = frames[1 - first].hWnd();
    hooks[first].Remove();
    EXPECT_EQ(ProcedureOf(removed), own);
    EXPECT_EQ(GetPropA(removed, "OldMeProc"), nullptr);
    EXPECT_TRUE(WaitUntil([&] { return HasGradient(last, IsForeground(last) ? kBlue : kSilver); }));
    EXPECT_TRUE(WaitUntil([&] {
      const Image bar = CaptionOf(removed);
      return bar.At(0, 0) == bar.At(bar.width - 1, 0);
    }));
    CaptionHook second;
    second.Install(last, painter);  // has no effect
    frames[1 - first].Destroy();
    EXPECT_EQ(frames[1 - first].seen.count(WM_NCDESTROY), 1U);
  }
}

TEST(CaptionHook, MayBeRemovedWhileItAsksForTheIcon) {
  Frame frame;
  CaptionPainter painter;
  CaptionHook hook;
  ASSERT_TRUE(frame.Make({100, 100, 300, 100}));
  ASSERT_TRUE(WaitUntil([&] { return IsForeground(frame.hWnd()); }));
  frame.onGetIcon = [&] { hook.Remove(); };
  hook.Install(frame.hWnd(), painter);
  EXPECT_EQ(GetPropA(frame.hWnd(), "OldMeProc"), nullptr);
  EXPECT_FALSE(HasGradient(frame.hWnd(), kBlue));
}

LRESULT CALLBACK Replaced(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return CallWindowProcA(reinterpret_cast<WNDPROC>(GetPropA(window, "TestPrevious")), window, message, wParam,
                         lParam);
}

TEST(CaptionHook, LeavesAProcedureInFrontOfItInPlace) {
  Frame frame;
  CaptionPainter painter;
  ASSERT_TRUE(frame.Make({100, 100, 300, 100}));
  const HWND window = frame.hWnd();
  const WNDPROC own = ProcedureOf(window);
  CaptionHook hook;
  hook.Install(window, painter);
  const WNDPROC hooked = ProcedureOf(window);
  SetPropA(window, "TestPrevious", reinterpret_cast<HANDLE>(hooked));
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Replaced));

  hook.Remove();
  EXPECT_EQ(ProcedureOf(window), &Replaced);
  EXPECT_EQ(GetPropA(window, "OldMeProc"), nullptr);
  frame.seen.clear();
  SendMessageA(window, WM_APP, 0, 0);
  EXPECT_EQ(frame.seen.count(WM_APP), 1U);

  hook.Install(window, painter);
  EXPECT_EQ(GetPropA(window, "OldMeProc"), reinterpret_cast<HANDLE>(own));
  EXPECT_TRUE(WaitUntil([&] { return HasGradient(window, kBlue); }));
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(hooked));
  hook.Remove();
  EXPECT_EQ(ProcedureOf(window), own);
  RemovePropA(window, "TestPrevious");
}

TEST(CaptionHook, PaintsEveryKindOfFrame) {
  struct Case {
    const char* name;
    DWORD style;
    DWORD exStyle;
    Rect place;
  };
  const std::vector<Case> cases = {
      {"dialog", kDialog, WS_EX_DLGMODALFRAME, {100, 100, 300, 100}},
      {"tool window", kDialog, WS_EX_TOOLWINDOW, {100, 100, 300, 100}},
      {"sizeable tool window", WS_OVERLAPPEDWINDOW, WS_EX_TOOLWINDOW, {100, 100, 300, 100}},
      {"without buttons", WS_POPUP | WS_CAPTION, 0, {100, 100, 300, 100}},
      {"scroll bars", WS_OVERLAPPEDWINDOW | WS_VSCROLL | WS_HSCROLL, WS_EX_CLIENTEDGE, {100, 100, 300, 100}},
      {"partly off the screen", WS_OVERLAPPEDWINDOW, 0, {-100, 100, 300, 100}},
      {"narrow", kDialog, 0, {100, 100, 60, 100}},
  };
  CaptionPainter painter;
  for (const Case& kind : cases) {
    SCOPED_TRACE(kind.name);
    Frame frame;
    ASSERT_TRUE(frame.Make(kind.place, kind.style, kind.exStyle));
    CaptionHook hook;
    hook.Install(frame.hWnd(), painter);
    EXPECT_TRUE(WaitUntil([&] { return HasGradient(frame.hWnd(), kBlue); }, 3000));
  }
  Frame tiny;
  ASSERT_TRUE(tiny.Make({100, 100, 1, 1}, kDialog));
  CaptionHook hook;
  hook.Install(tiny.hWnd(), painter);
  SendMessageA(tiny.hWnd(), WM_NCPAINT, 1, 0);
}

TEST_F(CaptionTest, AThousandPaintsLoseNothing) {
  const int before = FreeGdiHandles();
  for (int i = 0; i < 500; ++i) {
    SendMessageA(frame_.hWnd(), WM_NCPAINT, 1, 0);
    SendMessageA(frame_.hWnd(), WM_NCACTIVATE, i % 2 == 0 ? FALSE : TRUE, 0);
  }
  EXPECT_EQ(FreeGdiHandles(), before);
  EXPECT_TRUE(HasGradient(frame_.hWnd(), kBlue));
}

}  // namespace
}  // namespace snip::test
