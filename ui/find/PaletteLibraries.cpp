#include "ui/find/PaletteLibraries.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace snip {

void PaletteLibraries::Refresh(const std::optional<FindTarget::Open>& open,
                               const std::vector<NamedLibrary>& others) {
  const std::vector<Entry> before = std::exchange(entries_, {});
  if (open) {
    auto library =
        std::make_shared<SearchedLibrary>(open->library.name, open->library.path, open->snippets, folding_);
    entries_.push_back({{open->library, std::move(library)}, false, true});
  }
  for (const NamedLibrary& file : others) {
    const auto known = std::ranges::find(before, file.path, &Entry::path);
    // The entry of the library that was open refers to the window's snippets, so its file is read instead.
    const bool kept = known != before.end() && !known->open;
    entries_.push_back({kept ? known->read : LibraryAsRead{file, nullptr}});
  }
  unread_ = others.size();
}

void PaletteLibraries::Read(std::function<void()> arrived) {
  std::vector<LibraryAsRead> wanted;
  for (const Entry& entry : entries_) {
    if (!entry.open) wanted.push_back(entry.read);
  }
  if (!reading_) reading_.emplace(store_, folding_, std::move(arrived));
  unread_ = wanted.size();
  if (!reading_->Read(wanted)) {
    unread_ = 0;
    for (Entry& entry : entries_) entry.unreadable = entry.read.library == nullptr;
  }
}

bool PaletteLibraries::TakeResults() {
  bool changed = false;
  if (!reading_) return changed;
  for (LibraryAsRead& result : reading_->Take()) {
    if (unread_ > 0) --unread_;
    const auto entry = std::ranges::find(entries_, result.file.path, &Entry::path);
    if (entry == entries_.end()) continue;
    changed = changed || entry->read.library != result.library;
    entry->unreadable = result.library == nullptr;
    entry->read = std::move(result);
  }
  return changed;
}

void PaletteLibraries::Forget() {
  reading_.reset();
  entries_.clear();
  unread_ = 0;
}

std::vector<SearchedLibraryPtr> PaletteLibraries::Searchable() const {
  std::vector<SearchedLibraryPtr> libraries;
  for (const Entry& entry : entries_) {
    if (entry.read.library != nullptr) libraries.push_back(entry.read.library);
  }
  return libraries;
}

std::string PaletteLibraries::Unreadable() const {
  std::string names;
  for (const Entry& entry : entries_) {
    if (entry.unreadable) names += (names.empty() ? "" : ", ") + entry.read.file.name;
  }
  return names;
}

}  // namespace snip
