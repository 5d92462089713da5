#pragma once

#include <windows.h>

#include "platform/Handle.h"

namespace snip::test {

/// Lets HKEY_CURRENT_USER be an empty key of the test's own, which goes with all it holds.
class TestRegistry {
 public:
  TestRegistry();
  ~TestRegistry();
  TestRegistry(const TestRegistry&) = delete;
  TestRegistry& operator=(const TestRegistry&) = delete;

 private:
  UniqueRegKey key_;
};

}  // namespace snip::test
