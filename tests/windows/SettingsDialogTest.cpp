#include <gtest/gtest.h>

#include "platform/Win32Text.h"
#include "settings/SettingsStore.h"
#include "tests/unit/FakeSettingsTarget.h"
#include "tests/support/ModalWindow.h"
#include "tests/support/TestRegistry.h"
#include "ui/dialogs/frmSettings.h"

namespace snip::test {
namespace {

/// The face and pixel height that the sample is shown in.
std::string SampleFont(HWND dialog) {
  const auto font =
      reinterpret_cast<HFONT>(SendDlgItemMessageA(dialog, frmSettings::lblDisp, WM_GETFONT, 0, 0));
  LOGFONTA description{};
  GetObjectA(font, sizeof description, &description);
  return std::string(description.lfFaceName) + " " + std::to_string(-description.lfHeight);
}

bool SampleBecomes(HWND dialog, const std::string& font) {
  return WaitUntil([&] { return SampleFont(dialog) == font; });
}

class SettingsDialogTest : public testing::Test {
 protected:
  const TestRegistry user_;
  const Registry32 registry_{[](const std::string& prompt, int, const std::string&) {
    ADD_FAILURE() << prompt;
    return MessageResult::Ok;
  }};
  const SettingsStore store_{registry_};
  FakeSettingsTarget target_;
  CaptionPainter captions_;
  const TestOwner owner_;

  void Show(const std::function<void(HWND)>& script) {
    target_.log.clear();
    DriveModal(
        "Settings", [&] { frmSettings(target_, store_, captions_).ShowMe(owner_.get()); }, script);
  }
  std::string AllSaved() const {
    std::string all;
    for (const char* name :
         {"FontName", "FontSize", "AllowMenuDrag", "UseSounds", "MinimizeOnView", "SnippetTips"}) {
      all += registry_.GetRegSetting("Brennic", "BnSnipstore\\2.0", "Settings", name) + "|";
    }
    return all;
  }
};

TEST_F(SettingsDialogTest, KeysAloneChangeEverythingAndOkAppliesAndSavesIt) {
  for (const Switch which : {Switch::MinimizeOnView, Switch::AllowMenuDrag})
    target_.switches.Set(which, false);
  Show([](HWND dialog) {
    EXPECT_NE(GetWindowLongA(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    EXPECT_EQ(SampleFont(dialog), "Verdana 16");
    PressKey(VK_UP), PressKey(VK_SPACE);  // from the first check box to the last one
    for (const char key : {'T', 'M', 'U'}) PressKey(static_cast<WORD>(key), {VK_MENU});
    PressKey('N', {VK_MENU}), PressKey(VK_UP), PressKey(VK_UP);
    EXPECT_TRUE(SampleBecomes(dialog, "Tahoma 16"));
    PressKey('Z', {VK_MENU}), TypeText("13,");
    PressKey(VK_BACK), PressKey(VK_RETURN);
  });
  EXPECT_EQ(target_.font, (FontProperty{.Name = "Tahoma", .Size = 13}));
  EXPECT_EQ(AllSaved(), "Tahoma|13|-1|0|-1|0|");
}

TEST_F(SettingsDialogTest, WhatIsNotConfirmedIsNotApplied) {
  const std::vector<std::function<void(HWND)>> ways = {
      [](HWND) { PressKey(VK_ESCAPE); }, [](HWND dialog) { ClickCentre(GetDlgItem(dialog, IDCANCEL)); },
      [](HWND dialog) { PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }};
  for (const auto& leave : ways) {
    Show([&](HWND dialog) {
      PressKey('T', {VK_MENU});
      EXPECT_TRUE(
          WaitUntil([&] { return IsDlgButtonChecked(dialog, frmSettings::IdOf(Switch::SnippetTips)) == 0; }));
      leave(dialog);
    });
  }
  EXPECT_EQ(target_.log, std::vector<std::string>());
  EXPECT_EQ(AllSaved(), "||||||");
}

TEST_F(SettingsDialogTest, OnlyANumberThatIsASizeChangesTheSample) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"18", "Verdana 24"},   {"abc", "Verdana 24"},  {"0", "Verdana 24"},   {"-3", "Verdana 24"},
      {"9.75", "Verdana 13"}, {"9999", "Verdana 13"}, {" 15 ", "Verdana 20"}};
  Show([&](HWND dialog) {
    const HWND box = GetDlgItem(dialog, frmSettings::cboFontSize);
    for (const auto& [typed, sample] : cases) {
      // The whole text at once, as pasted: typed key by key, its beginnings would be sizes as well.
      SetWindowTextA(box, typed);
      SendMessageA(dialog, WM_COMMAND,
                   static_cast<WPARAM>(MAKELONG(frmSettings::cboFontSize, CBN_EDITCHANGE)), 0);
      EXPECT_EQ(SampleFont(dialog), sample) << typed;
    }
    PressKey('Z', {VK_MENU}), PressKey(VK_DOWN);
    EXPECT_TRUE(SampleBecomes(dialog, "Verdana 13")) << "10 points, from the list";
    PressKey(VK_RETURN);
  });
  EXPECT_EQ(target_.font.Size, 10);
}

TEST_F(SettingsDialogTest, AStrangeCodeFontIsOfferedAndOkWithoutAChoiceGivesTheSamples) {
  target_.font = {.Name = "Liberation Mono", .Size = 10.5};
  Show([](HWND dialog) {
    const HWND list = GetDlgItem(dialog, frmSettings::lstFontName);
    EXPECT_EQ(SendMessageA(list, LB_GETCOUNT, 0, 0), 7);
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), LB_ERR);
    EXPECT_EQ(WindowText(GetDlgItem(dialog, frmSettings::cboFontSize)), "10");
    PressKey(VK_RETURN);
  });
  EXPECT_EQ(target_.font, (FontProperty{.Name = "Courier New", .Size = 10}));
}

TEST_F(SettingsDialogTest, TheSystemsFontDialogGivesNameAndSize) {
  Show([](HWND dialog) {
    PressKey('F', {VK_MENU});
    WorkOnModal("Font", [](HWND) { PressKey(VK_ESCAPE); });
    EXPECT_TRUE(WaitUntil([&] { return IsForeground(dialog); }));
    EXPECT_EQ(SampleFont(dialog), "Verdana 16") << "cancelled";
    PressKey('F', {VK_MENU});
    WorkOnModal("Font", [](HWND window) {
      ChooseInCombo(window, FontDialog::kFace, "Liberation Serif");
      ChooseInCombo(window, FontDialog::kSize, "18");
      PressKey(VK_RETURN);
    });
    EXPECT_TRUE(SampleBecomes(dialog, "Liberation Serif 24"));
    const HWND list = GetDlgItem(dialog, frmSettings::lstFontName);
    EXPECT_EQ(SendMessageA(list, LB_GETCURSEL, 0, 0), 6) << "appended and selected";
    EXPECT_TRUE(WaitUntil([&] { return IsForeground(dialog); }));
    PressKey(VK_RETURN);
  });
  EXPECT_EQ(target_.font, (FontProperty{.Name = "Liberation Serif", .Size = 18}));
}

}  // namespace
}  // namespace snip::test
