#include "app/StartUp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

std::string AddInEntry() {
  char text[100]{};
  GetPrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", "", text, sizeof text, "vbaddin.ini");
  return text;
}

class StartUpTest : public testing::Test {
 protected:
  StartUpTest() { RemoveEntry(); }
  ~StartUpTest() override { RemoveEntry(); }

  static void RemoveEntry() {
    WritePrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", nullptr, "vbaddin.ini");
  }

  void Start(StartMode mode) {
    StartUp(
        mode, registry_, showMessage_,
        [this] {
          log_.emplace_back("server");
          return registers_;
        },
        [this] { log_.emplace_back("window"); });
  }

  std::string Marker() const { return registry_.GetRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore"); }

  TestRegistry testRegistry_;
  bool registers_ = true;
  std::vector<std::string> log_;
  ShowMessageFunction showMessage_ = [this](const std::string& prompt, int style, const std::string& title) {
    EXPECT_EQ(style, 0);
    EXPECT_EQ(Marker(), "") << "the marker is only set once the notice has been read";
    EXPECT_EQ(AddInEntry(), "0");
    log_.push_back(title + "|" + prompt);
    return MessageResult::Ok;
  };
  Registry32 registry_{showMessage_};
};

TEST_F(StartUpTest, TheFirstStandaloneStartRegistersAndOpensNoWindow) {
  Start(StartMode::Standalone);
  EXPECT_EQ(log_,
            (std::vector<std::string>{
                "server",
                "Brennic Snipstore 2.0|Brennic Snipstore 2.0 was added to VB's list of add-ins. Run the "
                "executable again to start Snipstore outside the VB IDE."}));
  EXPECT_EQ(AddInEntry(), "0");
  EXPECT_EQ(Marker(), "Yes");
}

TEST_F(StartUpTest, AFailedRegistrationIsToldOnce) {
  registers_ = false;
  Start(StartMode::Standalone);
  ASSERT_EQ(log_.size(), 3U);
  EXPECT_TRUE(log_[2].starts_with("Brennic Snipstore 2.0|The program could not be registered"));
  Start(StartMode::Standalone);
  EXPECT_EQ(log_.back(), "window");
}

TEST_F(StartUpTest, AnyMarkerTextOpensTheWindowAndWritesNothing) {
  for (const char* marker : {"Yes", "No", "0"}) {
    SCOPED_TRACE(marker);
    registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore", marker);
    log_.clear();
    Start(StartMode::Standalone);
    EXPECT_EQ(log_, std::vector<std::string>{"window"});
    EXPECT_EQ(AddInEntry(), "");
    EXPECT_EQ(Marker(), marker);
  }
}

TEST_F(StartUpTest, AMarkerOfBlanksIsNone) {
  registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore", "   ");
  Start(StartMode::Standalone);
  EXPECT_EQ(log_.size(), 2U);
  EXPECT_EQ(Marker(), "Yes");
}

TEST_F(StartUpTest, AComponentDoesNothingByItself) {
  Start(StartMode::Component);
  EXPECT_TRUE(log_.empty());
  EXPECT_EQ(AddInEntry(), "");
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Brennic", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
}

TEST_F(StartUpTest, TheListEntryComesAndGoes) {
  EXPECT_FALSE(AddInRegistered());
  // As the environment writes it when the add-in shall be loaded at its start.
  WritePrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", "1", "vbaddin.ini");
  EXPECT_TRUE(AddInRegistered());
  UnregisterAddIn();
  EXPECT_EQ(AddInEntry(), "");
  EXPECT_FALSE(AddInRegistered());
}

}  // namespace
}  // namespace snip::test
