#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "history/Version.h"
#include "ui/history/HistoryRows.h"

namespace snip {

/// Reads and compares a library's versions in a second thread, because that takes long for a large library.
class HistoryReader {
 public:
  using ReadVersion = std::function<std::optional<std::string>(const Version&)>;

  /// A version compared with the library as it is now.
  struct Compared {
    std::size_t version = 0;
    std::vector<Snippet> snippets{};
    std::vector<SnippetRow> rows{};
    bool readable = true;
  };
  /// What has been found since the last call.
  struct Found {
    std::vector<std::pair<std::size_t, std::string>> changes;  ///< What each version changed, by its index.
    std::vector<DeletedSnippets::Row> deleted;
    std::optional<Compared> compared;
    bool all = false;  ///< All versions have been compared.
  };

  HistoryReader() = default;
  /// Waits at most until the version being read is finished.
  ~HistoryReader();
  HistoryReader(const HistoryReader&) = delete;
  HistoryReader& operator=(const HistoryReader&) = delete;

  /// Starts on these versions, the newest first, and drops those given before. `read` is called in the second
  /// thread. False if the system cannot start a thread.
  bool Begin(std::vector<Version> versions, ReadVersion read, std::vector<Snippet> now);
  /// Compares this version next, instead of one requested before, and waits a moment for the result. Without
  /// a second thread the version counts as unreadable.
  void Compare(std::size_t version, std::chrono::milliseconds wait);
  Found Take();

 private:
  /// Never changed; `Begin` replaces it as a whole.
  struct Library {
    std::vector<Version> versions;
    ReadVersion read;
    std::vector<Snippet> now;
  };
  struct Task {
    std::shared_ptr<const Library> library;
    std::size_t version = 0;
    bool compares = false;  ///< With the library as it is now; otherwise with the previous version.
  };

  static std::optional<std::vector<Snippet>> SnippetsOf(const Library& library, std::size_t version);
  static Compared CompareWithNow(const Library& library, std::size_t version);
  void Work();
  std::optional<Task> Next();
  template <class Add>
  void Tell(const Task& task, Add add);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::condition_variable compared_;
  // Guarded by the mutex.
  std::shared_ptr<const Library> library_;
  std::optional<std::size_t> wanted_;
  std::size_t looked_ = 0;  ///< How many versions have been compared with the previous ones, or are being.
  bool working_ = false;
  bool ends_ = false;
  Found found_;

  std::thread thread_;
};

}  // namespace snip
