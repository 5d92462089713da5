#pragma once

#include <windows.h>

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
  TestRegistry(const TestRegistry&) = delete;
  TestRegistry& operator=(const TestRegistry&) = delete;

 private:
  HKEY root_;
  std::string name_;
  UniqueRegKey key_;
};

/// Every key from `path` on, with its default text if it has one.
std::set<std::string> RegistryContents(HKEY root, const std::string& path);

}  // namespace snip::test
