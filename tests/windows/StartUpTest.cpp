#include "app/StartUp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

class StartUpTest : public testing::Test {
 protected:
  void Start() {
    log_.clear();
    StartUp(StartMode::Standalone, registry_, showMessage_,
            {.enter =
                 [this] {
                   log_.emplace_back("enter");
                   return remarks_;
                 },
             .enterAgain = [this] { log_.emplace_back("moved?"); }},
            [this] { log_.emplace_back("window"); });
  }

  std::string Marker() const { return registry_.GetRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore"); }

  TestRegistry testRegistry_;
  std::string remarks_;
  std::vector<std::string> log_;
  ShowMessageFunction showMessage_ = [this](const std::string& prompt, int /*style*/,
                                            const std::string& title) {
    EXPECT_EQ(Marker(), "") << "the marker is only set once the notice has been read";
    log_.push_back(title + "|" + prompt.substr(0, prompt.find(' ', 10)));
    return MessageResult::Ok;
  };
  Registry32 registry_{showMessage_};
};

TEST_F(StartUpTest, WhatThereIsToSayFollowsTheNoticeOnce) {
  remarks_ = "more to say";
  Start();
  EXPECT_EQ(log_, (std::vector<std::string>{"enter", "Brennic Snipstore 2.0|Brennic Snipstore",
                                            "Brennic Snipstore 2.0|more to say"}));
  Start();
  EXPECT_EQ(log_, (std::vector<std::string>{"moved?", "window"}));
}

TEST_F(StartUpTest, AMarkerOfBlanksIsNone) {
  registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore", "   ");
  Start();
  EXPECT_EQ(log_.size(), 2U);
  EXPECT_EQ(Marker(), "Yes");
}

}  // namespace
}  // namespace snip::test
