#include "cli/files/Paths.h"

#include "cli/Failure.h"
#include "cli/text/Utf8.h"

namespace snip {

std::filesystem::path ToPath(const std::string& utf8) {
#ifdef _WIN32
  if (!IsUtf8(utf8)) throw Failure(ExitCode::Usage, "a path is not UTF-8");
  return {std::u8string(utf8.begin(), utf8.end())};
#else
  return {utf8};
#endif
}

std::string ToUtf8(const std::filesystem::path& path) {
#ifdef _WIN32
  const std::u8string utf8 = path.u8string();
  return ValidUtf8(std::string(utf8.begin(), utf8.end()));
#else
  return ValidUtf8(path.native());
#endif
}

}  // namespace snip
