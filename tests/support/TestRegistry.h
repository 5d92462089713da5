#pragma once

#include <windows.h>
#include <shlwapi.h>

#include <set>
#include <string>

#include "platform/Handle.h"

namespace snip::test {

/// Lets HKEY_CURRENT_USER, or another root, be an empty key of the test's own, which goes with all it holds.
class TestRegistry {
 public:
  explicit TestRegistry(HKEY root = HKEY_CURRENT_USER);
  ~TestRegistry();
  /// From now on the system refuses whatever is asked of that root.
  void Refuse() const;
  /// From now on nobody has the right to do anything with a key of that root, which is made.
  void Forbid(const std::string& key);
  TestRegistry(const TestRegistry&) = delete;
  TestRegistry& operator=(const TestRegistry&) = delete;

 private:
  void Delete() const;

  HKEY root_;
  std::string name_;
  std::string forbidden_;  ///< A key, from HKEY_CURRENT_USER.
  UniqueRegKey key_;
};

/// A text of the registry, the key's default one without a `name`; empty when there is none.
inline std::string RegistryText(HKEY root, const std::string& key, const char* name = nullptr) {
  char text[MAX_PATH]{};
  DWORD size = sizeof text;
  return SHGetValueA(root, key.c_str(), name, nullptr, text, &size) == ERROR_SUCCESS ? text : "";
}

/// Every key from `path` on, with its default text if it has one.
std::set<std::string> RegistryContents(HKEY root, const std::string& path);

}  // namespace snip::test
