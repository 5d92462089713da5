#include "ui/history/HistoryReader.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include "history/ChangeCounts.h"
#include "library/BnsFormat.h"

namespace snip {

HistoryReader::~HistoryReader() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

bool HistoryReader::Begin(std::vector<Version> versions, ReadVersion read, std::vector<Snippet> now) {
  auto library = std::make_shared<Library>(std::move(versions), std::move(read), std::move(now));
  {
    const std::lock_guard lock(mutex_);
    library_ = std::move(library);
    wanted_.reset();
    looked_ = 0;
    found_ = {};
  }
  changed_.notify_one();
  try {
    if (!thread_.joinable()) thread_ = std::thread([this] { Work(); });
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

void HistoryReader::Compare(std::size_t version, std::chrono::milliseconds wait) {
  std::unique_lock lock(mutex_);
  wanted_ = version;
  found_.compared.reset();
  changed_.notify_one();
  if (thread_.joinable()) {
    compared_.wait_for(lock, wait, [this] { return found_.compared.has_value(); });
  } else {
    wanted_.reset();
    found_.compared = Compared{.version = version, .readable = false};
  }
}

HistoryReader::Found HistoryReader::Take() {
  const std::lock_guard lock(mutex_);
  Found found = std::exchange(found_, {});
  found.all =
      !thread_.joinable() || (!wanted_ && !working_ && (!library_ || looked_ == library_->versions.size()));
  return found;
}

/// Waits for the next piece of work; returns nothing at the end.
std::optional<HistoryReader::Task> HistoryReader::Next() {
  std::unique_lock lock(mutex_);
  working_ = false;
  changed_.wait(lock, [this] { return ends_ || wanted_ || looked_ < library_->versions.size(); });
  if (ends_) return std::nullopt;
  working_ = true;
  if (wanted_) return Task{library_, *std::exchange(wanted_, std::nullopt), true};
  return Task{library_, looked_++, false};
}

/// Adds to the results, unless the task has been replaced.
template <class Add>
void HistoryReader::Tell(const Task& task, Add add) {
  const std::lock_guard lock(mutex_);
  if (library_ == task.library && !(task.compares && wanted_)) add();
}

/// Returns nothing for a version that cannot be read.
std::optional<std::vector<Snippet>> HistoryReader::SnippetsOf(const Library& library, std::size_t version) {
  const auto bytes = library.read(library.versions.at(version));
  return bytes ? std::optional(SnippetsIn(*bytes)) : std::nullopt;
}

HistoryReader::Compared HistoryReader::CompareWithNow(const Library& library, std::size_t version) {
  Compared compared{.version = version, .readable = false};
  try {
    auto snippets = SnippetsOf(library, version);
    if (!snippets) return compared;
    compared.rows = DifferingSnippets(library.now, *snippets);
    compared.snippets = std::move(*snippets);
    compared.readable = true;
  } catch (const std::exception&) {
    return {.version = version, .readable = false};  // memory is short: as one that cannot be read
  }
  return compared;
}

void HistoryReader::Work() {
  std::shared_ptr<const Library> library;
  std::optional<std::vector<Snippet>> newer;  // the next newer version, if it could be read
  DeletedSnippets deleted;
  while (const auto task = Next()) {
    if (std::exchange(library, task->library) != task->library) {
      newer.reset();
      deleted = {};
    }
    if (task->compares) {
      Compared compared = CompareWithNow(*library, task->version);
      Tell(*task, [&] { found_.compared = std::move(compared); });
      compared_.notify_one();
      continue;
    }
    std::optional<std::vector<Snippet>> snippets;
    try {
      snippets = SnippetsOf(*library, task->version);
      std::vector<DeletedSnippets::Row> rows;
      std::string changes;
      if (snippets) rows = deleted.Add(task->version, *snippets, library->now);
      if (snippets && newer) changes = TextOf(CountChanges(*snippets, *newer));
      Tell(*task, [&] {
        std::ranges::move(rows, std::back_inserter(found_.deleted));
        if (!changes.empty()) found_.changes.emplace_back(task->version - 1, std::move(changes));
      });
    } catch (const std::exception&) {
      snippets.reset();  // memory is short: as one that cannot be read
    }
    newer = std::move(snippets);
  }
}

}  // namespace snip
