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

/// A library by the name that it has in lists.
struct NamedLibrary {
  std::string name;
  std::string path;
  friend bool operator==(const NamedLibrary&, const NamedLibrary&) = default;
};

/// A library as it was read from its file.
struct LibraryAsRead {
  NamedLibrary file;
  SearchedLibraryPtr library;        ///< Null if the file is not read yet, or cannot be, or is no library.
  std::optional<FileStamp> stamp{};  ///< Of the file when it was read.
};

/// Reads libraries for a search in a second thread, which shares nothing with the libraries that are open.
class LibraryReading {
 public:
  /// `store` and `folding` must outlive this. `arrived` is called in the second thread for each result; it
  /// may not call this.
  LibraryReading(const LibraryStore& store, const Folding& folding, std::function<void()> arrived);
  /// Waits for no more than the piece of a file that is being read.
  ~LibraryReading();
  LibraryReading(const LibraryReading&) = delete;
  LibraryReading& operator=(const LibraryReading&) = delete;

  /// Reads these in their order, in place of what is not read yet; the result for a file that has not changed
  /// since it was read is the library that is given with it. False if the system gives no thread.
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
  unsigned int order_ = 0;  ///< Counts calls of Read: results of earlier ones are dropped.
  bool ending_ = false;

  std::thread thread_;
};

}  // namespace snip
