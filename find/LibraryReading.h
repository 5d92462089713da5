#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "find/SearchedLibrary.h"
#include "library/LibraryStore.h"

namespace snip {

/// A library and its name in lists.
struct NamedLibrary {
  std::string name;
  std::string path;
  friend bool operator==(const NamedLibrary&, const NamedLibrary&) = default;
};

/// A library as it was read from its file.
struct LibraryAsRead {
  NamedLibrary file;
  SearchedLibraryPtr library;  ///< Null if the file is not read yet, cannot be read, or is not a library.
  std::optional<FileStamp> stamp{};  ///< The file's stamp when it was read.
};

/// Reads libraries for a search in a second thread, independently of the open library.
class LibraryReading {
 public:
  /// `store` and `folding` must outlive this. `arrived` is called in the second thread for each result; it
  /// must not call this object.
  LibraryReading(const LibraryStore& store, const Folding& folding, std::function<void()> arrived);
  /// Waits at most until the current piece of a file is read.
  ~LibraryReading();
  LibraryReading(const LibraryReading&) = delete;
  LibraryReading& operator=(const LibraryReading&) = delete;

  /// Reads these in order, and drops what was not read yet. If a file has not changed since it was read, the
  /// result is the library that was given with it. False if the system cannot start a thread.
  bool Read(const std::vector<LibraryAsRead>& files);
  /// The results since the last call, in order.
  std::vector<LibraryAsRead> Take();

 private:
  class Interruptible;

  void Work();
  void Refresh(LibraryAsRead& file, unsigned int order);
  SearchedLibraryPtr ReadOne(const NamedLibrary& file, std::size_t bytes, unsigned int order);

  const LibraryStore& store_;
  const Folding& folding_;
  std::function<void()> arrived_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by the mutex.
  std::deque<LibraryAsRead> wanted_;
  std::vector<LibraryAsRead> results_;
  unsigned int order_ = 0;  ///< Counts the calls of Read, to drop the results of earlier ones.
  bool ending_ = false;

  std::thread thread_;
};

}  // namespace snip
