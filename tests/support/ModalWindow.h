#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/TestDesktop.h"

namespace snip::test {

using TestOwner = TestFrame;  ///< That a dialog belongs to.

/// Waits until a modal window of that title takes input, lets `script` work on it and sees it close; the
/// script has to close it. To be run beside the window's thread.
inline void WorkOnModal(const std::string& title, const std::function<void(HWND)>& script) {
  const HWND window = WaitForWindow(title);
  ASSERT_NE(window, nullptr) << title;
  EXPECT_TRUE(WaitUntil([&] { return IsForeground(window); }));
  script(window);
  if (WaitUntil([&] { return IsWindow(window) == 0; })) return;
  ADD_FAILURE() << title << " stayed open";
  PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
}

/// Shows a modal window by `show` while `script` works on it.
inline void DriveModal(const std::string& title, const std::function<void()>& show,
                       const std::function<void(HWND)>& script) {
  const Driver driver([&] { WorkOnModal(title, script); });
  show();
}

/// Controls of the system's font dialog.
enum FontDialog { kFace = 1136, kStyle = 1137, kSize = 1138 };

/// Chooses the entry of a dialog's combo box that begins so.
inline void ChooseInCombo(HWND dialog, int id, const char* text) {
  SendDlgItemMessageA(dialog, id, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
  SendMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, CBN_SELCHANGE)), 0);
}

}  // namespace snip::test
