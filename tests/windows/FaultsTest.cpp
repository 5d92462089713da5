#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "app/AddInWindow.h"
#include "library/BnsFormat.h"
#include "platform/Clipboard.h"
#include "platform/Win32Text.h"
#include "tests/support/MainWindowParts.h"
#include "ui/main/MainWindowKeys.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

constexpr int kSave = int{Command::kMainButton} + int{MainButton::kSaveLibrary};

/// The real window on a library "Lib" of one snippet, while something around it fails.
class FaultsTest : public testing::Test, protected MainWindowParts {
 protected:
  FaultsTest()
      : MainWindowParts([this](const std::string& prompt, int, const std::string&) {
          messages_.push_back(prompt);
          return answer_();
        }) {
    folder_.Write("Lib.bns", NewLibraryBns());
  }
  ~FaultsTest() override { window_.reset(); }

  void Make() { window_ = std::make_unique<frmAddIn>(Services()); }
  void Open() {
    Make();
    ASSERT_TRUE(window_->Show());
    AnswerMessages();
  }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(window_->hWnd(), message, wParam, lParam);
  }
  void Save() const { Send(WM_COMMAND, kSave); }
  HWND Description() const { return FindControl(window_->hWnd(), frmAddIn::kDescriptionId); }
  void Describe(const std::string& text) const {
    SendMessageA(Description(), EM_SETSEL, 0, -1);
    SendMessageA(Description(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
  }
  std::string Stored() const { return folder_.Read("Lib.bns"); }

  std::vector<std::string> messages_;
  std::function<MessageResult()> answer_ = [] { return MessageResult::Ok; };
  std::unique_ptr<frmAddIn> window_;
};

TEST_F(FaultsTest, MemoryThatRunsOutWhileClosingKeepsTheWindowAndItsChanges) {
  Open();
  Describe("changed");
  for (const auto message : {UINT{WM_CLOSE}, UINT{WM_QUERYENDSESSION}, UINT{WM_CLOSE}}) {
    answer_ = []() -> MessageResult { throw std::bad_alloc(); };
    EXPECT_EQ(Send(message), 0);
    ASSERT_NE(window_->hWnd(), nullptr);
    EXPECT_EQ(messages_, std::vector<std::string>{"Save changes to 'Lib'?"});
    messages_.clear();
  }
  answer_ = [] { return MessageResult::Yes; };
  Send(WM_CLOSE);
  EXPECT_EQ(window_->hWnd(), nullptr);
  EXPECT_NE(Stored().find("changed"), std::string::npos);
}

LRESULT CALLBACK RefuseWindow(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
  return 0;
}

TEST_F(FaultsTest, AWindowThatCannotBeMadeIsNotWaitedFor) {
  struct User final : WindowUser {
    void OnHidden() override {}
  } user;
  // A class of this name that refuses each of its windows takes the place of the program's.
  const HINSTANCE instance = GetModuleHandleA(nullptr);
  UnregisterClassA("frmAddIn", instance);
  WNDCLASSA refusing{};
  refusing.lpfnWndProc = &RefuseWindow;
  refusing.hInstance = instance;
  refusing.lpszClassName = "frmAddIn";
  ASSERT_NE(RegisterClassA(&refusing), 0);
  Make();
  AddInWindow addIn(*window_);
  EXPECT_FALSE(addIn.Show(user, nullptr));
  EXPECT_TRUE(addIn.Unload(user));
  UnregisterClassA("frmAddIn", instance);
  EXPECT_TRUE(addIn.Show(user, nullptr));
  EXPECT_TRUE(addIn.Unload(user));
  EXPECT_EQ(window_->hWnd(), nullptr);
}

TEST_F(FaultsTest, ASaveThatCannotBeWrittenIsSilentAndCanBeRepeated) {
  Open();
  Describe("first");
  const std::string moved = folder_.path() + " moved";
  ASSERT_NE(MoveFileA(folder_.path().c_str(), moved.c_str()), 0);
  Save();  // the folder is gone
  ASSERT_NE(MoveFileA(moved.c_str(), folder_.path().c_str()), 0);
  EXPECT_EQ(Stored(), NewLibraryBns());
  {
    const UniqueFile lock(
        CreateFileA(folder_.File("Lib.bns").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    Save();  // another program has the file for itself
  }
  EXPECT_EQ(Stored(), NewLibraryBns());
  EXPECT_TRUE(messages_.empty());

  Save();
  EXPECT_NE(Stored().find("first"), std::string::npos);
  EXPECT_EQ(WindowText(Description()), "first");
  Send(WM_CLOSE);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(FaultsTest, ACutWaitsForTheClipboardOrLeavesTheCode) {
  Open();
  const HWND code = GetDlgItem(FindControl(window_->hWnd(), frmAddIn::kCodeId), BnRichEdit::kControlId);
  Send(WM_COMMAND, Command::kEditSnippet);
  Send(WM_COMMAND, Command::kSelectAll);
  for (const bool letsGo : {false, true}) {
    std::atomic<bool> held = false, done = false;
    const Driver other([&] {
      held = OpenClipboard(nullptr) != 0;
      if (letsGo) Sleep(60);  // a moment
      WaitUntil([&] { return letsGo || done; });
      CloseClipboard();
    });
    ASSERT_TRUE(WaitUntil([&] { return held.load(); }));
    Send(WM_COMMAND, Command::kCut);
    done = true;
    EXPECT_EQ(WindowText(code), letsGo ? "" : DefaultSnippet().Code);
  }
  EXPECT_EQ(messages_,
            std::vector<std::string>{"The clipboard is in use by another program. Please try again."});
  EXPECT_EQ(ClipboardText(window_->hWnd()), DefaultSnippet().Code);
}

TEST_F(FaultsTest, ARegistryThatRefusesIsReportedAndTheProgramGoesOn) {
  for (const bool byRights : {true, false}) {
    SCOPED_TRACE(byRights ? "no rights" : "nothing works");
    if (byRights) {
      testRegistry_.Forbid("Software\\Brennic");
    } else {
      testRegistry_.Refuse();
    }
    Open();
    EXPECT_FALSE(messages_.empty());
    EXPECT_EQ(SendMessageA(FindControl(window_->hWnd(), frmAddIn::kListId), LB_GETCOUNT, 0, 0), 1);
    messages_.clear();
    Describe("changed");
    Save();
    EXPECT_NE(Stored().find("changed"), std::string::npos);
    EXPECT_TRUE(messages_.empty());
    Send(WM_CLOSE);
    EXPECT_EQ(window_->hWnd(), nullptr);
    EXPECT_FALSE(messages_.empty()) << "the place could not be stored";
    EXPECT_EQ(messages_.front() == "Access to Registry Denied", byRights) << messages_.front();
    messages_.clear();
    folder_.Write("Lib.bns", NewLibraryBns());
  }
}

TEST_F(FaultsTest, WhatALibraryOfAStrangerHoldsIsShownAndSavedAsItIs) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\r' && byte != '\n') all += static_cast<char>(byte);
  }
  const std::string rtf = "{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"file:///C:/x.exe\"}{\\fldrslt x}}}";
  std::vector<Snippet> snippets;
  for (const std::string& text : {all, std::string(3, '\0'), std::string(100000, 'n'), "\rlone\nends\r"s, rtf,
                                  "&a&&b%s%n%1\t"s, "\xFF\xFE\x41"s, ""s}) {
    snippets.push_back({.Name = text, .Attachment = text, .Code = text, .Description = text});
  }
  const std::string bytes = WriteBns(snippets);
  folder_.Write("Lib.bns", bytes);
  Open();
  const HWND list = FindControl(window_->hWnd(), frmAddIn::kListId);
  ASSERT_EQ(SendMessageA(list, LB_GETCOUNT, 0, 0), static_cast<LRESULT>(snippets.size()));
  for (std::size_t row = 0; row < snippets.size(); ++row) {
    SendMessageA(list, LB_SETCURSEL, row, 0);
    SendMessageA(GetParent(list), WM_COMMAND, MAKEWPARAM(frmAddIn::kListId, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
    SendMessageA(window_->hWnd(), WM_COMMAND, Command::kRenameSnippet, 0);
    SendMessageA(window_->hWnd(), WM_COMMAND, Command::kCancelName, 0);
    AnswerMessages();
    DeleteFileA(folder_.File("Lib.bns").c_str());
    Save();
    ASSERT_TRUE(Stored() == bytes) << "after snippet " << row << "\n" << testing::PrintToString(Stored());
  }
  EXPECT_TRUE(messages_.empty());
  Send(WM_CLOSE);
  EXPECT_EQ(messages_, std::vector<std::string>{}) << "nothing was changed";
}

TEST_F(FaultsTest, SettingsThatMakeNoSenseLeaveAUsableWindow) {
  for (const auto& [name, text] : {std::pair("FontName", std::string(200, 'x')),
                                   {"FontName", "\x01?*"},
                                   {"FontSize", "1e300"},
                                   {"FontSize", "-1"},
                                   {"FontSize", "0.0001"},
                                   {"ColorSyntax", "1e30"},
                                   {"KeepOnTop", "\xFF"}}) {
    SCOPED_TRACE(std::string(name) + " = " + text);
    settings_.Save(name, text);
    Open();
    EXPECT_EQ(WindowText(Description()), DefaultSnippet().Description);
    const auto font = reinterpret_cast<HFONT>(SendMessageA(Description(), WM_GETFONT, 0, 0));
    LOGFONTA description{};
    ASSERT_NE(GetObjectA(font, sizeof description, &description), 0);
    EXPECT_LE(std::abs(description.lfHeight), 4000);
    Send(WM_CLOSE);
    EXPECT_EQ(window_->hWnd(), nullptr);
  }
  EXPECT_TRUE(messages_.empty());
}

}  // namespace
}  // namespace snip::test
