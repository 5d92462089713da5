#include "tests/windows/TestRegistry.h"

#include <shlwapi.h>

#include <stdexcept>

namespace snip::test {

TestRegistry::TestRegistry(HKEY root)
    : root_(root),
      name_("Software\\SnipstoreTest" + std::to_string(GetCurrentProcessId()) +
            (root == HKEY_CURRENT_USER ? "User" : "Machine")) {
  SHDeleteKeyA(HKEY_CURRENT_USER, name_.c_str());
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    throw std::runtime_error("no test key");
  }
  key_.Reset(key);
  RegOverridePredefKey(root_, key);
}

void TestRegistry::Refuse() const {
  RegOverridePredefKey(root_, nullptr);
  SHDeleteKeyA(HKEY_CURRENT_USER, name_.c_str());
  RegOverridePredefKey(root_, key_.get());  // a key that has been deleted
}

TestRegistry::~TestRegistry() {
  RegOverridePredefKey(root_, nullptr);
  key_.Reset();
  SHDeleteKeyA(HKEY_CURRENT_USER, name_.c_str());
}

std::set<std::string> RegistryContents(HKEY root, const std::string& path) {
  std::set<std::string> contents;
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return contents;
  const UniqueRegKey key(opened);
  char text[MAX_PATH]{};
  DWORD size = sizeof text;
  const bool hasText = RegQueryValueExA(opened, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text),
                                        &size) == ERROR_SUCCESS;
  contents.insert(path + (hasText ? std::string("=") + text : ""));
  char name[256]{};
  for (DWORD i = 0; RegEnumKeyA(opened, i, name, sizeof name) == ERROR_SUCCESS; ++i) {
    contents.merge(RegistryContents(root, path + "\\" + name));
  }
  return contents;
}

}  // namespace snip::test
