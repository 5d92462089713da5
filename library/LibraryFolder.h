#pragma once

#include "library/LibraryStore.h"
#include "platform/Patience.h"

namespace snip {

/// The libraries of one directory: the program's own, where `.bns` files are beside the executable. Files are
/// read from anywhere, but never while another program writes them, and written only in the directory itself,
/// where they are listed again.
class LibraryFolder : public LibraryStore {
 public:
  /// Waits for other programs that have a file open, but not longer than `patience` lasts.
  explicit LibraryFolder(std::string directory,
                         std::shared_ptr<Patience> patience = std::make_shared<Patience>());

  std::vector<std::string> Names() const override;
  std::string PathOf(const std::string& name) const override;
  bool Exists(const std::string& path) const override;
  std::optional<FileStamp> Stamp(const std::string& path) const override;
  std::unique_ptr<ByteSource> Open(const std::string& path) const override;
  bool Replace(const std::string& path, ByteSource&& bytes) override;
  bool Rename(const std::string& path, const std::string& newPath) override;

 private:
  bool IsInFolder(const std::string& path) const;

  std::string prefix_;  ///< The directory with a "\" at its end.
  std::shared_ptr<Patience> patience_;
};

}  // namespace snip
