#include "tests/support/TestRegistry.h"

#include <sddl.h>
#include <shlwapi.h>

#include <stdexcept>

namespace snip::test {
namespace {

/// Replaces the rights on a key by those of a description.
bool SetRights(const UniqueRegKey& key, const char* description) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const bool set = ConvertStringSecurityDescriptorToSecurityDescriptorA(description, SDDL_REVISION_1,
                                                                        &descriptor, nullptr) != 0 &&
                   RegSetKeySecurity(key.get(), DACL_SECURITY_INFORMATION, descriptor) == ERROR_SUCCESS;
  LocalFree(descriptor);
  return set;
}

}  // namespace

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
  Delete();
  RegOverridePredefKey(root_, key_.get());  // a key that has been deleted
}

void TestRegistry::Forbid(const std::string& key) {
  HKEY made = nullptr;
  RegCreateKeyExA(root_, key.c_str(), 0, nullptr, 0, WRITE_DAC, nullptr, &made, nullptr);
  if (!SetRights(UniqueRegKey(made), "D:(D;;KA;;;WD)")) throw std::runtime_error("no rights on keys");
  forbidden_ = name_ + "\\" + key;
}

TestRegistry::~TestRegistry() {
  RegOverridePredefKey(root_, nullptr);
  key_.Reset();
  Delete();
}

void TestRegistry::Delete() const {
  HKEY forbidden = nullptr;
  if (!forbidden_.empty() &&
      RegOpenKeyExA(HKEY_CURRENT_USER, forbidden_.c_str(), 0, WRITE_DAC, &forbidden) == ERROR_SUCCESS) {
    SetRights(UniqueRegKey(forbidden), "D:(A;;KA;;;WD)");
  }
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
