#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>

namespace snip::test {
namespace {

/// Several times what the longest case takes under a heavy load.
constexpr DWORD kLongestCaseMs = 240000;

BOOL CALLBACK TellWindow(HWND window, LPARAM /*parameter*/) {
  if (IsWindowVisible(window) == 0) return TRUE;
  wchar_t title[64]{};
  InternalGetWindowText(window, title, 64);  // which asks no thread
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  DWORD_PTR result = 0;
  const bool answers = SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, 1000, &result) != 0;
  std::printf("  window \"%ls\" of process %lx %s\n", title, process,
              answers ? "answers" : "does not answer");
  return TRUE;
}

void CALLBACK EndProgram(void* test, BOOLEAN /*fired*/) {
  const auto& info = *static_cast<const testing::TestInfo*>(test);
  std::printf("%s.%s hangs; on the screen are:\n", info.test_suite_name(), info.name());
  EnumWindows(&TellWindow, 0);
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 124);
}

/// Ends the tests when one of them waits for ever, as for a message that another process never answers.
class HangGuard : public testing::EmptyTestEventListener {
 public:
  void OnTestStart(const testing::TestInfo& test) override {
    auto* parameter = const_cast<testing::TestInfo*>(&test);
    CreateTimerQueueTimer(&timer_, nullptr, &EndProgram, parameter, kLongestCaseMs, 0, WT_EXECUTEONLYONCE);
  }
  void OnTestEnd(const testing::TestInfo& /*test*/) override {
    DeleteTimerQueueTimer(nullptr, timer_, INVALID_HANDLE_VALUE);
  }

 private:
  HANDLE timer_ = nullptr;
};

[[maybe_unused]] const bool guarded = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new HangGuard);  // which owns it
  return true;
}();

}  // namespace
}  // namespace snip::test
