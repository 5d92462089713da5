#include "ui/dialogs/CommonDialog.h"

#include <gtest/gtest.h>

#include <commdlg.h>

#include <filesystem>

#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"

namespace snip::test {
namespace {

// Controls of the system's dialogs.
constexpr int kFileName = 0x47C;
constexpr int kFileTypes = 0x470;
constexpr int kRed = 706;
constexpr int kStrikeOut = 1040;

class CommonDialogTest : public testing::Test {
 protected:
  CommonDialogTest() {
    folder_.Write("note.txt", "");
    dialog_.InitDir = folder_.path();
    dialog_.Filter = "Snippets|*.bns|All files|*.*";
    dialog_.FilterIndex = 2;
    dialog_.DialogTitle = "Choose one";
  }

  void Drive(const std::string& title, const std::function<void()>& show,
             const std::function<void(HWND)>& script) {
    ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == owner_.get(); }));
    DriveModal(title, show, [&](HWND window) {
      EXPECT_EQ(GetWindow(window, GW_OWNER), owner_.get());
      script(window);
    });
  }

  const TemporaryFolder folder_;
  CommonDialog dialog_;
  const TestOwner owner_;
};

TEST_F(CommonDialogTest, FileDialogsTakeTheirPropertiesAndGiveTheChosenFile) {
  const std::filesystem::path current = std::filesystem::current_path();
  folder_.Write("a rather long name.text", "");
  struct Case {
    const char* name;
    void (CommonDialog::*show)();
    std::string before;
    std::string proposed;
    std::string typed;  // Escape when empty
    std::string after;
  };
  const auto open = &CommonDialog::ShowOpen;
  const auto save = &CommonDialog::ShowSave;
  const std::string note = folder_.File("note.txt");
  const std::vector<Case> cases = {
      {"Open proposes nothing", open, "note.txt", "", "note.txt", note},
      {"Open cancelled", open, "other.txt", "", "", "other.txt"},
      {"Save proposes a file as its folder has it", save, "NOTE.TXT", "note.txt", "", "note.txt"},
      {"Save proposes a new name", save, "new", "new", "x y", folder_.File("x y.bns")},
      {"a long name has a short one", open, "", "", "a rather long name.text",
       folder_.File("a rather long name.text")},
  };
  dialog_.DefaultExt = "bns";
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    dialog_.hWnd = nullptr;
    dialog_.FileName = expected.before;
    Drive(
        "Choose one", [&] { (dialog_.*expected.show)(); },
        [&](HWND window) {
          EXPECT_TRUE(WaitUntil([&] {
            return WindowText(GetDlgItem(window, kFileName)) == expected.proposed;
          })) << WindowText(GetDlgItem(window, kFileName));
          EXPECT_EQ(SendDlgItemMessageA(window, kFileTypes, CB_GETCOUNT, 0, 0), 2);
          EXPECT_EQ(WindowText(GetDlgItem(window, kFileTypes)), "All files");
          TypeText(expected.typed);
          PressKey(expected.typed.empty() ? VK_ESCAPE : VK_RETURN);
        });
    EXPECT_EQ(dialog_.FileName, expected.after);
    EXPECT_EQ(dialog_.hWnd, owner_.get());
    if (!expected.typed.empty()) {
      EXPECT_EQ(dialog_.FileTitle(), expected.after.substr(folder_.path().size() + 1));
    }
  }

  EXPECT_EQ(std::filesystem::current_path(), current);
  EXPECT_LE(dialog_.ShortFileTitle().size(), 12U);
  EXPECT_TRUE(dialog_.ShortFileName().ends_with("\\" + dialog_.ShortFileTitle()));
  EXPECT_NE(GetFileAttributesA(dialog_.ShortFileName().c_str()), INVALID_FILE_ATTRIBUTES);
  dialog_.FileName = folder_.File("missing");
  EXPECT_EQ(dialog_.ShortFileName() + dialog_.ShortFileTitle(), "");
}

TEST_F(CommonDialogTest, TheChosenColourIsTaken) {
  dialog_.Flags = CC_FULLOPEN | CC_RGBINIT;
  const auto show = [&] { dialog_.ShowColor(); };
  Drive("Color", show, [](HWND window) {
    for (int i = 0; i < 3; ++i) SetDlgItemTextA(window, kRed + i, std::to_string(10 + i).c_str());
    PostMessageA(GetDlgItem(window, IDOK), BM_CLICK, 0, 0);
  });
  EXPECT_EQ(dialog_.Color, RGB(10, 11, 12));
  Drive("Color", show, [](HWND) { PressKey(VK_ESCAPE); });
  EXPECT_EQ(dialog_.Color, RGB(10, 11, 12));
}

TEST_F(CommonDialogTest, TheChosenFontIsTaken) {
  dialog_.Flags = CF_SCREENFONTS | CF_PRINTERFONTS | CF_EFFECTS;
  dialog_.FontUnderline = true;
  std::int32_t error = -1;
  const auto show = [&] { error = dialog_.ShowFont(); };
  Drive("Font", show, [](HWND window) {
    ChooseInCombo(window, FontDialog::kFace, "Tahoma");
    ChooseInCombo(window, FontDialog::kStyle, "Bold");
    ChooseInCombo(window, FontDialog::kSize, "14");
    SendDlgItemMessageA(window, kStrikeOut, BM_CLICK, 0, 0);
    PostMessageA(GetDlgItem(window, IDOK), BM_CLICK, 0, 0);
  });
  EXPECT_EQ(error, 0);
  std::string field = "Tahoma";
  field.resize(32, '\0');
  EXPECT_EQ(dialog_.FontName, field);
  EXPECT_EQ(dialog_.FontSize, 14);
  EXPECT_TRUE(dialog_.FontBold);
  EXPECT_TRUE(dialog_.FontStrikethru);
  EXPECT_FALSE(dialog_.FontItalic || dialog_.FontUnderline);
  EXPECT_EQ(dialog_.LastResult(), TRUE);

  for (const bool tells : {false, true}) {
    dialog_.CancelError = tells;
    Drive("Font", show, [](HWND) { PressKey(VK_ESCAPE); });
    EXPECT_EQ(error, tells ? 2001 : 0);
    EXPECT_EQ(dialog_.FontName, field);
    EXPECT_EQ(dialog_.FontSize, 14);
    EXPECT_EQ(dialog_.LastError(), 0U);
  }
}

}  // namespace
}  // namespace snip::test
