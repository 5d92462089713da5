#pragma once

#include "history/Files.h"
#include "history/VersionFolder.h"

namespace snip {

/// The files of this machine (WindowsFiles.cpp, PosixFiles.cpp).
class SystemFiles : public Files {
 public:
  using Files::Files;

  std::optional<FileStamp> Stamp(const std::string& path) override;
  std::optional<std::string> Read(const std::string& path) override;
  std::optional<bool> Holds(const std::string& path, std::string_view bytes) override;
  bool Write(const std::string& path, std::string_view bytes) override;
  bool Move(const std::string& from, const std::string& to) override;
  bool Remove(const std::string& path) override;
  bool MakeFolder(const std::string& path) override;
  std::vector<FileEntry> List(const std::string& folder) override;
  UtcTime Now() override;
  std::string Identity(const std::string& path) override;
  std::unique_ptr<Held> Lock(const std::string& path) override;
  std::unique_ptr<Held> Claim(const std::string& path) override;
};

/// How much history the user wants to keep, if the system has a place for such settings.
HistoryLimits UserLimits();

/// The folder of all histories: "History" beside the program if there is a file "portable.txt", otherwise in
/// the user's folder for application data. Empty if the system has no such folder.
std::string HistoryRoot();

}  // namespace snip
