#pragma once

#include <string>

#include "library/ByteSource.h"

namespace snip::test {

/// Everything that a source gives, asked for in small pieces.
inline std::string AllBytes(ByteSource& source) {
  std::string all;
  char piece[7];
  while (const std::size_t got = source.Read(piece)) all.append(piece, got);
  return all;
}

}  // namespace snip::test
