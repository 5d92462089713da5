#include "app/StartUp.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

TEST(StartUpTest, WhatThereIsToSayFollowsTheNoticeOnce) {
  const TestRegistry user;
  std::vector<std::string> log;
  const ShowMessageFunction showMessage = [&](const std::string& prompt, int, const std::string& title) {
    log.push_back(title + "|" + prompt.substr(0, prompt.find(' ', 10)));
    return MessageResult::Ok;
  };
  const Registry32 registry(showMessage);
  registry.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore", "   ");  // as if there were none
  const auto note = [&log](const char* entry) { log.emplace_back(entry); };
  const Registration registration{.enter =
                                      [&] {
                                        note("enter");
                                        return std::string("more to say");
                                      },
                                  .enterAgain = [&] { note("again"); }};
  for (int time = 0; time < 2; ++time)
    StartUp(StartMode::Standalone, registry, showMessage, registration, [&] { note("window"); });
  EXPECT_EQ(log, (std::vector<std::string>{"enter", "Brennic Snipstore 2.0|Brennic Snipstore",
                                           "Brennic Snipstore 2.0|more to say", "again", "window"}));
}

}  // namespace
}  // namespace snip::test
