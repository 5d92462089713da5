#include "tests/windows/TestRegistry.h"

#include <shlwapi.h>

#include <stdexcept>
#include <string>

namespace snip::test {
namespace {

std::string KeyName() {
  return "Software\\SnipstoreTest" + std::to_string(GetCurrentProcessId());
}

}  // namespace

TestRegistry::TestRegistry() {
  SHDeleteKeyA(HKEY_CURRENT_USER, KeyName().c_str());
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, KeyName().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    throw std::runtime_error("no test key");
  }
  key_.Reset(key);
  RegOverridePredefKey(HKEY_CURRENT_USER, key);
}

TestRegistry::~TestRegistry() {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  key_.Reset();
  SHDeleteKeyA(HKEY_CURRENT_USER, KeyName().c_str());
}

}  // namespace snip::test
