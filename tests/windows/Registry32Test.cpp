#include "platform/Registry32.h"

#include <gtest/gtest.h>

#include <string>
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

  static std::string RawData(const UniqueRegKey& key, const std::string& name, DWORD expectedType) {
    std::string data(1000, '?');
    DWORD type = 0;
    auto size = static_cast<DWORD>(data.size());
    EXPECT_EQ(RegQueryValueExA(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data.data()),
                               &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, expectedType);
    data.resize(size);
    return data;
  }

  static void WriteRaw(const UniqueRegKey& key, const std::string& name, DWORD type,
                       const std::string& data) {
    ASSERT_EQ(RegSetValueExA(key.get(), name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }

  static bool KeyExists(const std::string& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
  }
};

TEST_F(Registry32Test, ASettingThatWasNeverWrittenReadsEmptyAndLeavesItsKeyBehind) {
  EXPECT_EQ(registry_.GetRegSetting("Brennic", "BnSnipstore\\2.0", "Settings", "FontName"), "");
  EXPECT_TRUE(KeyExists("Software\\Brennic\\BnSnipstore\\2.0\\Settings"));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, SettingsReadBackTrimmedUpTo254Characters) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Yes", "Yes"},
      {"  two words ", "two words"},
      {"", ""},
      {"   ", ""},
      {"\t x", "\t x"},
      {"gr\xFC\xDF \x80", "gr\xFC\xDF \x80"},
      {std::string(254, 'x'), std::string(254, 'x')},
  };
  for (const auto& [stored, expected] : cases) {
    SCOPED_TRACE(stored);
    registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "Value", stored);
    EXPECT_EQ(registry_.GetRegSetting("Brennic", "BnSnipstore", "2.0", "Value"), expected);
  }
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, AValueTooLongForTheBufferIsReportedAndReadsEmpty) {
  registry_.SaveRegSetting("Brennic", "BnSnipstore", "2.0", "Value", std::string(255, 'x'));
  EXPECT_EQ(registry_.GetRegSetting("Brennic", "BnSnipstore", "2.0", "Value"), "");
  EXPECT_EQ(messages_, std::vector<std::string>{"Undefined key error code! -- 234"});
}

TEST_F(Registry32Test, QueryRegStringGivesTheTextOrTheDefault) {
  const UniqueRegKey key = Key();
  WriteRaw(key, "", REG_SZ, "default value\0"s);
  WriteRaw(key, "text", REG_SZ, " kept as it is \0"s);
  WriteRaw(key, "long", REG_SZ, std::string(3000, 'y') + '\0');
  WriteRaw(key, "empty", REG_SZ, "\0"s);
  WriteRaw(key, "no data", REG_SZ, "");
  WriteRaw(key, "number", REG_DWORD, "\x01\0\0\0"s);
  WriteRaw(key, "expand", REG_EXPAND_SZ, "%PATH%\0"s);
  const auto query = [&](const std::string& name) {
    return registry_.QueryRegString(HKEY_CURRENT_USER, "Software\\Values", name, "none");
  };
  EXPECT_EQ(query(""), "default value");
  EXPECT_EQ(query("text"), " kept as it is ");
  EXPECT_EQ(query("long"), std::string(3000, 'y'));
  EXPECT_EQ(query("empty"), "");
  EXPECT_EQ(query("no data"), " ");
  EXPECT_EQ(query("number"), "none");
  EXPECT_EQ(query("expand"), "none");
  EXPECT_EQ(query("missing"), "none");
  EXPECT_EQ(registry_.QueryRegString(HKEY_CURRENT_USER, "Software\\Missing", "", "none"), "none");
  EXPECT_FALSE(KeyExists("Software\\Missing"));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, WritesEachTypeInItsLayout) {
  const UniqueRegKey key = Key();
  const std::vector<std::string> extras = {"two", "", "\0"s, "three"};
  registry_.SetRegValue("text", key, "sz", REG_SZ);
  registry_.SetRegValue("%a%", key, "expand", REG_EXPAND_SZ);
  registry_.SetRegValue("123456", key, "digits", REG_DWORD);
  registry_.SetRegValue("-7", key, "short", REG_DWORD);
  registry_.SetRegValue("one", key, "multi", REG_MULTI_SZ, extras);
  EXPECT_EQ(RawData(key, "sz", REG_SZ), "text\0"s);
  EXPECT_EQ(RawData(key, "expand", REG_EXPAND_SZ), "%a%\0"s);
  EXPECT_EQ(RawData(key, "digits", REG_DWORD), "1234");
  EXPECT_EQ(RawData(key, "short", REG_DWORD), "-7\0\0"s);
  EXPECT_EQ(RawData(key, "multi", REG_MULTI_SZ), "one\0two\0three\0\0"s);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, ReadsEachTypeAsText) {
  const UniqueRegKey key = Key();
  WriteRaw(key, "sz", REG_SZ, "text\0"s);
  WriteRaw(key, "binary", REG_BINARY, "\x01\xAB\0"s);
  WriteRaw(key, "multi", REG_MULTI_SZ, "one\0two\0\0"s);
  WriteRaw(key, "emptyMulti", REG_MULTI_SZ, "\0"s);
  const auto query = [&](const std::string& name, DWORD type, std::vector<std::string>* strings = nullptr) {
    return registry_.QueryRegValue(key, name, type, strings);
  };
  EXPECT_EQ(query("sz", REG_SZ), "text");
  EXPECT_EQ(query("sz", REG_EXPAND_SZ), "text");
  EXPECT_EQ(query("binary", REG_BINARY), "01AB00");
  std::vector<std::string> strings;
  EXPECT_EQ(query("multi", REG_MULTI_SZ, &strings), "one");
  EXPECT_EQ(strings, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(query("emptyMulti", REG_MULTI_SZ), "");
  EXPECT_EQ(query("missing", REG_SZ), std::string(254, ' '));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(Registry32Test, TypesThatAreNotHandledGiveAMessageAndChangeNothing) {
  const UniqueRegKey key = Key();
  for (const DWORD type : {0UL, 3UL, 5UL, 6UL, 8UL}) registry_.SetRegValue("x", key, "value", type);
  EXPECT_EQ(messages_, std::vector<std::string>(
                           5, "Unable to process that type of data. Please contact KVR Development."));
  messages_.clear();
  for (DWORD type : {0UL, 4UL, 5UL, 6UL, 8UL}) EXPECT_EQ(registry_.QueryRegValue(key, "value", type), "");
  EXPECT_EQ(messages_, std::vector<std::string>(
                           5, "Unable to query that type of data. Please contact KVR Development."));
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key.get(), "value", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
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
