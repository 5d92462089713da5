#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
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

/// Reads libraries for a search in a second thread, which shares nothing with the libraries that are open.
class LibraryReading {
 public:
  struct Result {
    NamedLibrary file;
    SearchedLibraryPtr library;  ///< Null if the file cannot be read or is no library.
  };

  /// `store` and `folding` must outlive this. `arrived` is called in the second thread for each result; it
  /// may not call this.
  LibraryReading(const LibraryStore& store, const Folding& folding, std::function<void()> arrived);
  /// Waits for no more than the piece of a file that is being read.
  ~LibraryReading();
  LibraryReading(const LibraryReading&) = delete;
  LibraryReading& operator=(const LibraryReading&) = delete;

  /// Reads these in their order, in place of what is not read yet. False if the system gives no thread.
  bool Read(const std::vector<NamedLibrary>& files);
  /// The results since the last call, in order.
  std::vector<Result> Take();

 private:
  class Interruptible;

  void Work();
  SearchedLibraryPtr ReadOne(const NamedLibrary& file, unsigned int order);

  const LibraryStore& store_;
  const Folding& folding_;
  std::function<void()> arrived_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by the mutex.
  std::deque<NamedLibrary> wanted_;
  std::vector<Result> results_;
  unsigned int order_ = 0;  ///< Counts calls of Read: results of earlier ones are dropped.
  bool ending_ = false;

  std::thread thread_;
};

}  // namespace snip
