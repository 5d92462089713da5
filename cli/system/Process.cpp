#include "cli/system/Process.h"

#include <array>
#include <cstdio>

namespace snip {

std::optional<std::string> OutputOf(const std::string& command) {
#ifdef _WIN32
  std::FILE* const pipe = _popen(command.c_str(), "r");
#else
  std::FILE* const pipe = popen(command.c_str(), "r");
#endif
  if (pipe == nullptr) return std::nullopt;
  std::string output;
  std::array<char, 256> piece;
  while (const std::size_t got = std::fread(piece.data(), 1, piece.size(), pipe)) {
    output.append(piece.data(), got);
  }
#ifdef _WIN32
  const int status = _pclose(pipe);
#else
  const int status = pclose(pipe);
#endif
  return status == 0 ? std::optional(output) : std::nullopt;
}

}  // namespace snip
