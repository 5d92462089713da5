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

/// Reads a library's versions and compares them, in a second thread, because that takes long for a large one.
class HistoryReader {
 public:
  using ReadVersion = std::function<std::optional<std::string>(const Version&)>;

  /// A version beside the library as it is now.
  struct Compared {
    std::size_t version = 0;
    std::vector<Snippet> snippets{};
    std::vector<SnippetRow> rows{};
    bool readable = true;
  };
  /// What has been found out since it was asked last.
  struct Found {
    std::vector<std::pair<std::size_t, std::string>> changes;  ///< What versions' saves changed.
    std::vector<DeletedSnippets::Row> deleted;
    std::optional<Compared> compared;
    bool all = false;  ///< There is nothing more to come.
  };

  HistoryReader() = default;
  /// Waits for no more than one version that is being read.
  ~HistoryReader();
  HistoryReader(const HistoryReader&) = delete;
  HistoryReader& operator=(const HistoryReader&) = delete;

  /// Looks through these, the newest first, in place of what was looked through before. `read` is called in
  /// the second thread. False if the system gives no thread.
  bool Begin(std::vector<Version> versions, ReadVersion read, std::vector<Snippet> now);
  /// Compares this one next, in place of one that was to be, and waits a moment for it. Without the second
  /// thread it counts as one that cannot be read.
  void Compare(std::size_t version, std::chrono::milliseconds wait);
  Found Take();

 private:
  /// What is looked through does not change; another takes its place.
  struct Library {
    std::vector<Version> versions;
    ReadVersion read;
    std::vector<Snippet> now;
  };
  struct Task {
    std::shared_ptr<const Library> library;
    std::size_t version = 0;
    bool compares = false;  ///< With the library as it is now, otherwise with the version before.
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
  std::size_t looked_ = 0;  ///< How many versions have been compared with those before them, or are being.
  bool working_ = false;
  bool ends_ = false;
  Found found_;

  std::thread thread_;
};

}  // namespace snip
