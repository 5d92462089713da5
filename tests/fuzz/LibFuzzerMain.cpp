#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tests/fuzz/FuzzTargets.h"

// What libFuzzer calls; SNIPSTORE_FUZZ_TARGET is the name of the target that this program is for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const snip::test::FuzzTarget& target : snip::test::FuzzTargets()) {
    if (std::strcmp(target.name, SNIPSTORE_FUZZ_TARGET) == 0) {
      target.run({reinterpret_cast<const char*>(data), size});
    }
  }
  return 0;
}
