#include "ui/find/PaletteLibraries.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace snip {

void PaletteLibraries::Refresh(FindTarget& target, std::function<void()> arrived) {
  const std::vector<Entry> before = std::exchange(entries_, {});
  if (const auto open = target.OpenLibrary()) {
    entries_.push_back(
        {open->library,
         std::make_shared<SearchedLibrary>(open->library.name, open->library.path, open->snippets, folding_),
         false, true});
  }
  const std::vector<NamedLibrary> others = target.OtherLibraries();
  for (const NamedLibrary& file : others) {
    const auto known =
        std::ranges::find(before, file.path, [](const Entry& entry) { return entry.file.path; });
    // The snippets of one that was open before are the window's no more.
    const bool kept = known != before.end() && !known->open;
    entries_.push_back({file, kept ? known->library : nullptr});
  }
  if (!reading_) reading_.emplace(store_, folding_, std::move(arrived));
  unread_ = others.size();
  if (!reading_->Read(others)) {
    unread_ = 0;
    for (Entry& entry : entries_) entry.unreadable = entry.library == nullptr;
  }
}

void PaletteLibraries::TakeResults() {
  if (!reading_) return;
  for (LibraryReading::Result& result : reading_->Take()) {
    if (unread_ > 0) --unread_;
    const auto entry = std::ranges::find(entries_, result.file.path,
                                         [](const Entry& candidate) { return candidate.file.path; });
    if (entry == entries_.end()) continue;
    entry->unreadable = result.library == nullptr;
    entry->library = std::move(result.library);
  }
}

void PaletteLibraries::Forget() {
  reading_.reset();
  entries_.clear();
  unread_ = 0;
}

std::vector<SearchedLibraryPtr> PaletteLibraries::Searchable() const {
  std::vector<SearchedLibraryPtr> libraries;
  for (const Entry& entry : entries_) {
    if (entry.library != nullptr) libraries.push_back(entry.library);
  }
  return libraries;
}

std::string PaletteLibraries::Unreadable() const {
  std::string names;
  for (const Entry& entry : entries_) {
    if (entry.unreadable) names += (names.empty() ? "" : ", ") + entry.file.name;
  }
  return names;
}

}  // namespace snip
