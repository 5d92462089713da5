#include <gtest/gtest.h>

#include <windows.h>
#include <shlwapi.h>

#include <array>
#include <set>
#include <string>
#include <thread>

#include "app/ComRegistration.h"
#include "app/MessageFilter.h"
#include "app/ServerLife.h"
#include "platform/ComObject.h"
#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

UniqueRegKey MakeKey(HKEY root, const std::string& path, DWORD options = REG_OPTION_NON_VOLATILE) {
  HKEY key = nullptr;
  RegCreateKeyExA(root, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key, nullptr);
  return UniqueRegKey(key);
}

/// Two places to register in, in the order of preference, each with a key of somebody else's.
class ComRegistrationTest : public testing::Test {
 protected:
  static constexpr const char* kClasses = "Software\\Classes";

  ComRegistrationTest() {
    MakeKey(roots_[0], "Software\\Classes\\CLSID\\{other}");
    MakeKey(roots_[1], "Software\\Classes\\Other");
  }

  TestRegistry registry_;
  UniqueRegKey machine_ = MakeKey(HKEY_CURRENT_USER, "Machine");
  UniqueRegKey user_ = MakeKey(HKEY_CURRENT_USER, "User");
  std::array<HKEY, 2> roots_{machine_.get(), user_.get()};
};

TEST_F(ComRegistrationTest, EntersTheServerForTheMachineAndTakesAllOfItAway) {
  const auto before = RegistryContents(roots_[0], kClasses);
  const auto userBefore = RegistryContents(roots_[1], kClasses);
  ASSERT_TRUE(RegisterServer(roots_));
  ASSERT_TRUE(RegisterServer(roots_)) << "once more";
  const std::string id = "{25E7D835-FA5D-4BBE-9850-7E945446795C}";
  const std::string key = std::string(kClasses) + "\\CLSID\\" + id;
  std::set<std::string> expected = before;
  expected.merge(std::set<std::string>{std::string(kClasses) + "\\BnSnipstore2.Connect=Brennic Snipstore 2.0",
                                       std::string(kClasses) + "\\BnSnipstore2.Connect\\CLSID=" + id,
                                       key + "=Brennic Snipstore 2.0",
                                       key + "\\LocalServer32=\"" + ProgramPath() + "\"",
                                       key + "\\ProgID=BnSnipstore2.Connect", key + "\\Programmable"});
  EXPECT_EQ(RegistryContents(roots_[0], kClasses), expected);
  EXPECT_EQ(RegistryContents(roots_[1], kClasses), userBefore);
  EXPECT_TRUE(UnregisterServer(roots_));
  EXPECT_EQ(RegistryContents(roots_[0], kClasses), before);
  EXPECT_TRUE(UnregisterServer(roots_)) << "once more";
}

TEST_F(ComRegistrationTest, WhereTheMachineRefusesItIsEnteredForTheUser) {
  // Nothing lasting can be made below a key that does not last itself: half of the entries are refused.
  RegDeleteKeyA(roots_[0], "Software\\Classes\\CLSID\\{other}");
  RegDeleteKeyA(roots_[0], "Software\\Classes\\CLSID");
  const UniqueRegKey refusing = MakeKey(roots_[0], "Software\\Classes\\CLSID", REG_OPTION_VOLATILE);
  const UniqueRegKey kept = MakeKey(roots_[0], "Software\\Classes\\CLSID\\x", REG_OPTION_VOLATILE);
  const auto machineBefore = RegistryContents(roots_[0], kClasses);
  const auto before = RegistryContents(roots_[1], kClasses);
  ASSERT_TRUE(RegisterServer(roots_));
  EXPECT_EQ(RegistryContents(roots_[0], kClasses), machineBefore);
  EXPECT_EQ(RegistryContents(roots_[1], kClasses).size(), before.size() + 7)
      << "with a key for the class ids";
  EXPECT_TRUE(UnregisterServer(roots_));
  EXPECT_EQ(RegistryContents(roots_[1], kClasses), before);
  const std::array<HKEY, 1> onlyMachine{roots_[0]};
  EXPECT_FALSE(RegisterServer(onlyMachine));
}

TEST_F(ComRegistrationTest, WhatOthersPutBelowStays) {
  ASSERT_TRUE(RegisterServer(roots_));
  MakeKey(roots_[0], "Software\\Classes\\BnSnipstore2.Connect\\Foreign");
  EXPECT_FALSE(UnregisterServer(roots_));
  EXPECT_EQ(RegistryContents(roots_[0], "Software\\Classes\\BnSnipstore2.Connect\\Foreign").size(), 1U);
}

/// What COM starts for the class below a root.
std::wstring ServerCommand(HKEY root) {
  wchar_t text[MAX_PATH]{};
  DWORD size = sizeof text;
  SHGetValueW(root, L"Software\\Classes\\CLSID\\{25E7D835-FA5D-4BBE-9850-7E945446795C}\\LocalServer32",
              nullptr, nullptr, text, &size);
  return text;
}

TEST_F(ComRegistrationTest, AnotherCopyIsLeftAloneUntilThisOneStarts) {
  const UniqueRegKey classes = MakeKey(roots_[1], kClasses);
  RegisterWhereMoved(roots_);
  EXPECT_FALSE(AnyRegistered(roots_)) << "taken away on purpose";
  // A system's file stands for a copy that is there; the other one's name no code page has.
  for (const std::wstring path : {L"C:\\windows\\system32\\kernel32.dll", L"C:\\\x3b1\x416\x4e2d.exe"}) {
    ASSERT_TRUE(RegisterClass(classes.get(), path));
    EXPECT_EQ(ServerCommand(roots_[1]), L"\"" + path + L"\"");
    EXPECT_TRUE(UnregisterServer(roots_));
    EXPECT_EQ(AnyRegistered(roots_), path.ends_with(L".dll"));
    ASSERT_TRUE(RegisterClass(classes.get(), path));
    RegisterWhereMoved(roots_);
    EXPECT_EQ(ServerCommand(roots_[0]), L"\"" + WideProgramPath() + L"\"");
    EXPECT_EQ(ServerCommand(roots_[1]), L"") << "would hide the other";
    EXPECT_TRUE(UnregisterServer(roots_));
    EXPECT_FALSE(AnyRegistered(roots_));
  }
}

/// Whether the thread's loop is quit within some time; takes the request.
bool Quit(int milliseconds) {
  bool quit = false;
  return WaitUntil([&] { return quit; }, milliseconds,
                   [&] {
                     MSG message{};
                     while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
                       quit = quit || message.message == WM_QUIT;
                       DispatchMessageA(&message);
                     }
                   });
}

class Object final : public ServerObject<IUnknown> {
 public:
  explicit Object(ServerLife& life) : ServerObject(life) {}
};

TEST(ServerLifeTest, EndsWithTheLastObjectOrLock) {
  const ComApartment apartment;
  ServerLife life(60000, 500);
  bool withdrawn = false;
  life.SetWithdraw([&] { withdrawn = true; });
  {
    const ComPtr<IUnknown> object(new Object(life));
    life.Lock();
    EXPECT_FALSE(life.Over());
  }
  EXPECT_FALSE(Quit(600)) << "still locked";
  EXPECT_FALSE(withdrawn);
  life.Unlock();
  EXPECT_TRUE(withdrawn) << "before a new client can come";
  EXPECT_FALSE(Quit(0));
  life.Lock();
  EXPECT_FALSE(Quit(600)) << "a client that had the class already";
  life.Unlock();
  EXPECT_TRUE(Quit(5000));
  EXPECT_TRUE(life.Over());
  life.Lock();
  EXPECT_FALSE(life.Over()) << "a client that came at the last moment";
  life.Unlock();
  EXPECT_TRUE(Quit(5000));
}

TEST(ServerLifeTest, EndsWithAnObjectThatAnotherThreadReleasesLast) {
  const ComApartment apartment;
  ServerLife life(60000, 100);
  IUnknown* const object = new Object(life);
  std::thread([object] { object->Release(); }).join();
  EXPECT_TRUE(Quit(5000));
  EXPECT_TRUE(life.Over());
}

TEST(ServerLifeTest, EndsWhenNoEnvironmentIsConnectedForLong) {
  const ComApartment apartment;
  ServerLife life(100, 100);
  life.Lock();  // by a client that never comes back
  {
    const ServerLife::Connection connection(life);
    const ServerLife::Connection another(life);
    EXPECT_FALSE(Quit(500));
  }
  EXPECT_TRUE(Quit(5000));
  EXPECT_TRUE(life.Over());
  life.Unlock();
  Quit(1000);
}

TEST(MessageFilterTest, ABusyEnvironmentIsAskedAgainForSomeSeconds) {
  const ComApartment apartment;
  const MessageFilter filter;
  for (const DWORD type : {SERVERCALL_REJECTED, SERVERCALL_RETRYLATER}) {
    EXPECT_EQ(filter.get()->RetryRejectedCall(nullptr, 0, type), kBusyPauseMs);
    EXPECT_EQ(filter.get()->RetryRejectedCall(nullptr, kBusyPatienceMs - 1, type), kBusyPauseMs);
    EXPECT_EQ(filter.get()->RetryRejectedCall(nullptr, kBusyPatienceMs, type), static_cast<DWORD>(-1));
  }
}

}  // namespace
}  // namespace snip::test
