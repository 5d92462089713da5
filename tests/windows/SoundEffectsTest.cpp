#include "ui/commandbar/SoundEffects.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

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

TEST_F(SoundEffectsTest, ASoundThatCannotBePlayedDoesNoHarm) {
  const TemporaryFolder folder;
  // A tenth of a second of silence, 8000 bytes a second, one to a sample.
  const std::string sound =
      "RIFF\x44\x03\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x40\x1F\0\0\x40\x1F\0\0\x01\0\x08\0data\x20\x03\0\0"s +
      std::string(800, '\x80');
  folder.Write("whole.wav", sound);  // as well as on a machine without a device
  folder.Write("cut.wav", sound.substr(0, 100));
  folder.Write("no sound.wav", "text");
  const SoundEffects real(registry_);
  for (const char* file : {"whole.wav", "cut.wav", "no sound.wav", "missing.wav", "?*|"}) {
    SCOPED_TRACE(file);
    Assign(".Default\\MenuPopup\\.Current", folder.File(file));
    real.PlaySystemSound(9);
    real.PlaySystemSound(22);  // cuts it off
  }
}

}  // namespace
}  // namespace snip::test
