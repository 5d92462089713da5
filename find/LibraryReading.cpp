#include "find/LibraryReading.h"

#include <exception>
#include <utility>
#include <variant>

#include "library/BnsFormat.h"

namespace snip {

/// A file that seems to end as soon as its contents are no longer wanted.
class LibraryReading::Interruptible : public ByteSource {
 public:
  Interruptible(ByteSource& bytes, std::function<bool()> wanted)
      : bytes_(bytes), wanted_(std::move(wanted)) {}

  std::size_t Read(std::span<char> room) override {
    stopped_ = stopped_ || !wanted_();
    return stopped_ ? 0 : bytes_.Read(room);
  }
  bool Failed() const override { return stopped_ || bytes_.Failed(); }

 private:
  ByteSource& bytes_;
  std::function<bool()> wanted_;
  bool stopped_ = false;
};

LibraryReading::LibraryReading(const LibraryStore& store, const Folding& folding,
                               std::function<void()> arrived)
    : store_(store), folding_(folding), arrived_(std::move(arrived)) {}

LibraryReading::~LibraryReading() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

bool LibraryReading::Read(const std::vector<LibraryAsRead>& files) {
  {
    const std::lock_guard lock(mutex_);
    wanted_.assign(files.begin(), files.end());
    results_.clear();
    ++order_;
  }
  try {
    if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
  } catch (const std::exception&) {
    return false;
  }
  changed_.notify_one();
  return true;
}

std::vector<LibraryAsRead> LibraryReading::Take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(results_, {});
}

void LibraryReading::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return ending_ || !wanted_.empty(); });
    if (ending_) return;
    LibraryAsRead result = std::move(wanted_.front());
    wanted_.pop_front();
    const unsigned int order = order_;
    lock.unlock();
    try {
      Refresh(result, order);
    } catch (const std::exception&) {
      result.library = nullptr;  // reported as unreadable
    }
    lock.lock();
    if (order != order_) continue;
    results_.push_back(std::move(result));
    lock.unlock();
    arrived_();
    lock.lock();
  }
}

void LibraryReading::Refresh(LibraryAsRead& file, unsigned int order) {
  const auto stamp = store_.Stamp(file.file.path);
  if (file.library != nullptr && stamp && stamp == file.stamp) return;
  file.library = ReadOne(file.file, stamp ? static_cast<std::size_t>(stamp->size) : 0, order);
  file.stamp = stamp;
}

SearchedLibraryPtr LibraryReading::ReadOne(const NamedLibrary& file, std::size_t bytes, unsigned int order) {
  const std::unique_ptr<ByteSource> opened = store_.OpenToSearch(file.path);
  if (opened == nullptr) return nullptr;
  Interruptible source(*opened, [this, order] {
    const std::lock_guard lock(mutex_);
    return !ending_ && order == order_;
  });
  auto library = std::make_shared<SearchedLibrary>(file.name, file.path, bytes);
  const BnsResult result = ReadBns(source, [&](const Snippet& snippet) { library->Add(snippet, folding_); });
  return std::holds_alternative<BnsContents>(result) ? std::move(library) : nullptr;
}

}  // namespace snip
