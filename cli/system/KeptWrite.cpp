#include "cli/system/KeptWrite.h"

#include <filesystem>

#include "cli/system/Files.h"
#include "history/SafeSave.h"
#include "library/Library.h"

namespace snip {

std::optional<VersionFolder> HistoryOf(Files& files, const std::string& path) {
  const std::string root = HistoryRoot();
  if (root.empty() || !HasLibraryExtension(path)) return std::nullopt;
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(ToPath(path), error);
  return error ? std::nullopt : std::optional<VersionFolder>(std::in_place, files, root, ToUtf8(whole));
}

void WriteLibraryFile(const std::string& path, std::string_view bytes, Existing existing) {
  SystemFiles files;
  auto history = HistoryOf(files, path);
  if (history && !history->Make()) history.reset();
  const auto lock = history ? files.Lock(history->path()) : nullptr;
  if (history) KeepOldFile(files, *history, nullptr);
  // The file is replaced atomically, so an interrupted save need not be completed.
  WriteFileSafely(path, bytes, existing);
  if (!history) return;
  history->Keep(bytes, VersionTag::Saved);
  history->Prune(UserLimits());
}

}  // namespace snip
