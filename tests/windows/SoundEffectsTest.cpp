#include "ui/commandbar/SoundEffects.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

class SoundEffectsTest : public testing::Test {
 protected:
  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string& prompt, int, const std::string&) {
    ADD_FAILURE() << prompt;
    return MessageResult::Ok;
  }};
  std::vector<std::string> played_;
  SoundEffects sounds_{registry_, [this](const std::string& fileName) { played_.push_back(fileName); }};

  void Assign(const std::string& key, const std::string& file) {
    const UniqueRegKey opened = registry_.CreateRegKey(HKEY_CURRENT_USER, "AppEvents\\Schemes\\Apps\\" + key);
    registry_.SetRegValue(file, opened, "", REG_SZ);
  }
};

TEST_F(SoundEffectsTest, PlaysWhatTheSchemeAssigns) {
  sounds_.PlayOfficeSound("ToolbarClick");
  sounds_.PlaySystemSound(22);
  sounds_.PlaySystemSound(-1);
  EXPECT_EQ(played_, (std::vector<std::string>{"", "", ""}))
      << "nothing sounds, but the sound before is cut off";
  played_.clear();
  Assign(".Default\\MenuPopup\\.Current", "C:\\popup.wav");
  Assign(".Default\\ToolbarClick\\.Current", "C:\\plain click.wav");
  Assign("Office97\\Office97-ToolbarClick\\.Current", "C:\\office click.wav");
  sounds_.PlaySystemSound(9);
  sounds_.PlayOfficeSound("ToolbarClick");
  sounds_.PlaySound("ToolbarClick", -1);
  sounds_.PlaySound("ToolbarClick", 0);
  sounds_.PlaySound("ToolbarClick", 1);  // only the value -1 is true
  EXPECT_EQ(played_,
            (std::vector<std::string>{"C:\\popup.wav", "C:\\office click.wav", "C:\\office click.wav",
                                      "C:\\plain click.wav", "C:\\plain click.wav"}));
}

}  // namespace
}  // namespace snip::test
