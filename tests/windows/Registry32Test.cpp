#include "platform/Registry32.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

class Registry32Test : public testing::Test {
 protected:
  TestRegistry testRegistry_;
  std::vector<std::string> messages_;
  Registry32 registry_{[this](const std::string& prompt, int style, const std::string& title) {
    EXPECT_EQ(style, 0);
    EXPECT_EQ(title, "");
    messages_.push_back(prompt);
    return MessageResult::Ok;
  }};

  UniqueRegKey Key() { return registry_.CreateRegKey(HKEY_CURRENT_USER, "Software\\Values"); }

  /// A stored value: its type, a blank, and its bytes.
  std::string Stored(const std::string& name) {
    std::string data(1000, '?');
    DWORD type = 0;
    auto size = static_cast<DWORD>(data.size());
    RegQueryValueExA(Key().get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()), &size);
    return std::to_string(type) + ' ' + data.substr(0, size);
  }

  void Store(const std::string& name, DWORD type, const std::string& data) {
    ASSERT_EQ(RegSetValueExA(Key().get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }
};

TEST_F(Registry32Test, SettingsReadBackTrimmedUpTo254Characters) {
  const auto read = [&] {
    return registry_.GetRegSetting("Brennic", "BnSnipstore\\2.0", "Settings", "Value");
  };
  EXPECT_EQ(read(), "") << "never written";
  EXPECT_FALSE(RegistryContents(HKEY_CURRENT_USER, "Software\\Brennic\\BnSnipstore\\2.0\\Settings").empty());
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"  two words ", "two words"},
      {"", ""},
      {"   ", ""},
      {"\t x", "\t x"},
      {"gr\xFC\xDF \x80", "gr\xFC\xDF \x80"},
      {std::string(254, 'x'), std::string(254, 'x')},
  };
  for (const auto& [stored, expected] : cases) {
    registry_.SaveRegSetting("Brennic", "BnSnipstore\\2.0", "Settings", "Value", stored);
    EXPECT_EQ(read(), expected) << stored;
  }
  EXPECT_TRUE(messages_.empty());
  registry_.SaveRegSetting("Brennic", "BnSnipstore\\2.0", "Settings", "Value", std::string(255, 'x'));
  EXPECT_EQ(read(), "");
  EXPECT_EQ(messages_, std::vector<std::string>{"Undefined key error code! -- 234"});
}

TEST_F(Registry32Test, QueryRegStringGivesTheTextOrTheDefault) {
  for (const auto& [name, type, stored, read] :
       std::vector<std::tuple<const char*, DWORD, std::string, std::string>>{
           {"", REG_SZ, "default value\0"s, "default value"},
           {"text", REG_SZ, " kept as it is \0"s, " kept as it is "},
           {"long", REG_SZ, std::string(3000, 'y') + '\0', std::string(3000, 'y')},
           {"empty", REG_SZ, "\0"s, ""},
           {"no data", REG_SZ, "", " "},
           {"number", REG_DWORD, "\x01\0\0\0"s, "none"},
           {"expand", REG_EXPAND_SZ, "%PATH%\0"s, "none"},
       }) {
    Store(name, type, stored);
    EXPECT_EQ(registry_.QueryRegString(HKEY_CURRENT_USER, "Software\\Values", name, "none"), read) << name;
  }
  for (const char* path : {"Software\\Values", "Software\\Missing"}) {
    EXPECT_EQ(registry_.QueryRegString(HKEY_CURRENT_USER, path, "missing", "none"), "none");
  }
  EXPECT_TRUE(RegistryContents(HKEY_CURRENT_USER, "Software\\Missing").empty());
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, WritesAndReadsTheTypesThatAreHandled) {
  constexpr DWORD kOther = 5;
  const UniqueRegKey key = Key();
  const std::vector<std::string> extras = {"two", "", "\0"s, "three"};
  for (const auto& [type, text, stored] : std::vector<std::tuple<DWORD, std::string, std::string>>{
           {REG_SZ, "text", "1 text\0"s},
           {REG_EXPAND_SZ, "%a%", "2 %a%\0"s},
           {REG_DWORD, "123456", "4 1234"},
           {REG_MULTI_SZ, "one", "7 one\0two\0three\0\0"s},
           {REG_BINARY, "x", "7 one\0two\0three\0\0"s},
           {kOther, "x", "7 one\0two\0three\0\0"s}}) {
    registry_.SetRegValue(text, key, "value", type, extras);
    EXPECT_EQ(Stored("value"), stored);
  }
  EXPECT_EQ(messages_, std::vector<std::string>(
                           2, "Unable to process that type of data. Please contact KVR Development."));
  messages_.clear();
  std::vector<std::string> strings;
  for (const auto& [type, stored, asked, text] :
       std::vector<std::tuple<DWORD, std::string, DWORD, std::string>>{
           {REG_SZ, "text\0"s, REG_EXPAND_SZ, "text"},
           {REG_BINARY, "\x01\xAB\0"s, REG_BINARY, "01AB00"},
           {REG_MULTI_SZ, "\0"s, REG_MULTI_SZ, ""},
           {REG_MULTI_SZ, "one\0two\0\0"s, REG_MULTI_SZ, "one"},
           {REG_DWORD, "1234", REG_DWORD, ""},
           {REG_DWORD, "1234", kOther, ""}}) {
    Store("value", type, stored);
    DWORD wanted = asked;
    EXPECT_EQ(registry_.QueryRegValue(key, "value", wanted, &strings), text);
  }
  EXPECT_EQ(messages_, std::vector<std::string>(
                           2, "Unable to query that type of data. Please contact KVR Development."));
  EXPECT_EQ(strings, (std::vector<std::string>{"one", "two"}));
  DWORD text = REG_SZ;
  EXPECT_EQ(registry_.QueryRegValue(key, "missing", text), std::string(254, ' '));
}

TEST_F(Registry32Test, WhatTheRegistryRefusesIsToldStepByStep) {
  // A volatile key takes no lasting keys below it: the one refusal that needs no other user.
  HKEY parent = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Brennic", 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &parent, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(parent);
  registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore", "Yes");
  const std::vector<std::string> expected = {"Undefined key error code! -- 1021",
                                             "Undefined key error code! -- 6",
                                             "Undefined key error code! -- 6"};
  EXPECT_EQ(messages_, expected);
  messages_.clear();
  EXPECT_EQ(registry_.GetRegSetting("Brennic", "BnSnipstore", "2.0", "RunBefore"), "");
  EXPECT_EQ(messages_, expected);
}

}  // namespace
}  // namespace snip::test
