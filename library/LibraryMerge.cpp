#include "library/LibraryMerge.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>

#include "library/LibraryDifference.h"
#include "library/LineMerge.h"

namespace snip {
namespace {

using Positions = std::vector<std::optional<std::size_t>>;

/// One snippet in each of the three libraries, and its merged form.
struct Entry {
  const Snippet* base = nullptr;
  const Snippet* ours = nullptr;
  const Snippet* theirs = nullptr;
  bool placedByUs = false;  ///< We added or moved it.
  bool placedByThem = false;
  std::vector<Snippet> merged{};  ///< None if it is removed, two if there is a conflict.
  std::string conflict{};         ///< What both sides did, or empty.
};

void MergeFields(Entry& entry) {
  const Snippet nothing;
  const Snippet& base = entry.base == nullptr ? nothing : *entry.base;
  if (*entry.ours == *entry.theirs || *entry.theirs == base) {
    entry.merged.push_back(*entry.ours);
    return;
  }
  Snippet ours;
  Snippet theirs;
  std::string fields;
  const auto merge = [&](std::string Snippet::*field, const char* name, auto how) {
    MergedText merged = how(base.*field, entry.ours->*field, entry.theirs->*field);
    if (merged.conflict()) fields.append(fields.empty() ? "" : ", ").append(name);
    ours.*field = std::move(merged.ours);
    theirs.*field = std::move(merged.theirs);
  };
  merge(&Snippet::Name, "the name", MergeWhole);
  merge(&Snippet::Attachment, "the attachment", MergeWhole);
  merge(&Snippet::Description, "the description", MergeLines);
  merge(&Snippet::Code, "the code", MergeLines);
  entry.merged.push_back(std::move(ours));
  if (fields.empty()) return;
  entry.merged.push_back(std::move(theirs));
  entry.conflict =
      (entry.base == nullptr ? "both sides added it, but differently: " : "both sides changed ") + fields;
}

void Merge(Entry& entry) {
  const Snippet* const only = entry.ours == nullptr ? entry.theirs : entry.ours;
  if (entry.ours != nullptr && entry.theirs != nullptr) {
    MergeFields(entry);
  } else if (entry.base == nullptr) {
    entry.merged.push_back(*only);
  } else if (only != nullptr && *only != *entry.base) {
    entry.merged.push_back(*only);
    entry.conflict = only == entry.ours ? "theirs removed it, ours changed it; it is kept"
                                        : "ours removed it, theirs changed it; it is kept";
  }
}

class Merging {
 public:
  Merging(std::span<const Snippet> base, std::span<const Snippet> ours, std::span<const Snippet> theirs)
      : base_(base), ours_(ours), theirs_(theirs), entryOfOurs_(ours.size()), entryOfTheirs_(theirs.size()) {
    FindEntries();
    for (Entry& entry : entries_) Merge(entry);
    FindOrder();
    GiveNames();
  }

  MergedLibrary Take() {
    MergedLibrary result;
    result.snippets.reserve(order_.size());
    for (const std::size_t i : order_) {
      Entry& entry = entries_[i];
      if (!entry.conflict.empty()) {
        std::string names;
        for (const Snippet& snippet : entry.merged) {
          names += (names.empty() ? "\"" : " and \"") + snippet.Name + "\"";
        }
        result.conflicts.push_back(names + ": " + entry.conflict);
      }
      for (Snippet& snippet : entry.merged) result.snippets.push_back(std::move(snippet));
    }
    return result;
  }

 private:
  void FindEntries() {
    const auto inOurs = MatchSnippets(base_, ours_);
    const auto inTheirs = MatchSnippets(base_, theirs_);
    const auto movedByUs = FindMoved(inOurs);
    const auto movedByThem = FindMoved(inTheirs);
    for (std::size_t i = 0; i < base_.size(); ++i) {
      entries_.push_back({.base = &base_[i], .placedByUs = movedByUs[i], .placedByThem = movedByThem[i]});
      if (inOurs[i]) SetOurs(*inOurs[i], i);
      if (inTheirs[i]) SetTheirs(*inTheirs[i], i);
    }
    // Both sides may have added snippets of the same names.
    const std::vector<std::size_t> ourNew = Missing(entryOfOurs_);
    const std::vector<std::size_t> theirNew = Missing(entryOfTheirs_);
    const auto same = MatchSnippets(Copied(ours_, ourNew), Copied(theirs_, theirNew), Renames::Ignore);
    for (std::size_t i = 0; i < ourNew.size(); ++i) {
      entries_.push_back({.placedByUs = true});
      SetOurs(ourNew[i], entries_.size() - 1);
      if (same[i]) SetTheirs(theirNew[*same[i]], entries_.size() - 1);
    }
    for (const std::size_t position : Missing(entryOfTheirs_)) {
      entries_.push_back({.placedByThem = true});
      SetTheirs(position, entries_.size() - 1);
    }
  }

  void SetOurs(std::size_t position, std::size_t entry) {
    entryOfOurs_[position] = entry;
    entries_[entry].ours = &ours_[position];
  }
  void SetTheirs(std::size_t position, std::size_t entry) {
    entryOfTheirs_[position] = entry;
    entries_[entry].theirs = &theirs_[position];
  }

  static std::vector<std::size_t> Missing(const Positions& entries) {
    std::vector<std::size_t> missing;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (!entries[i]) missing.push_back(i);
    }
    return missing;
  }

  static std::vector<Snippet> Copied(std::span<const Snippet> from,
                                     const std::vector<std::size_t>& positions) {
    std::vector<Snippet> copied;
    for (const std::size_t position : positions) copied.push_back(from[position]);
    return copied;
  }

  /// Starts with our order and inserts what they added or moved.
  void FindOrder() {
    // The list of entries, linked both ways; the last element is before the first entry and after the last.
    const std::size_t ends = entries_.size();
    std::vector<std::size_t> next(ends + 1, ends);
    std::vector<std::size_t> previous(ends + 1, ends);
    const auto insert = [&](std::size_t entry, std::size_t after) {
      previous[entry] = after;
      next[entry] = next[after];
      previous[next[entry]] = entry;
      next[after] = entry;
    };
    for (const auto& entry : entryOfOurs_) insert(*entry, previous[ends]);
    std::size_t after = ends;
    for (const auto& position : entryOfTheirs_) {
      const std::size_t i = *position;
      const Entry& entry = entries_[i];
      if (entry.merged.empty()) continue;
      if (entry.ours == nullptr || (entry.placedByThem && !entry.placedByUs)) {
        if (entry.ours != nullptr) {
          next[previous[i]] = next[i];
          previous[next[i]] = previous[i];
        }
        while (next[after] != ends && entries_[next[after]].placedByUs) after = next[after];
        insert(i, after);
      }
      after = i;
    }
    for (std::size_t i = next[ends]; i != ends; i = next[i]) {
      if (!entries_[i].merged.empty()) order_.push_back(i);
    }
  }

  /// Renames the second snippet of a conflict, and theirs if the merge has given two snippets the same name.
  void GiveNames() {
    struct Counts {
      std::size_t ours = 0, theirs = 0, merged = 0;
    };
    std::unordered_map<std::string, Counts> names(order_.size());
    for (const Snippet& snippet : ours_) ++names[snippet.Name].ours;
    for (const Snippet& snippet : theirs_) ++names[snippet.Name].theirs;
    for (const std::size_t i : order_) ++names[entries_[i].merged.front().Name].merged;
    const auto makeTheirs = [&](std::string& name) {
      std::string free = name + " (theirs)";
      for (int number = 2; names[free].merged > 0; ++number) {
        free = name + " (theirs " + std::to_string(number) + ")";
      }
      ++names[free].merged;
      name = free;
    };
    for (const std::size_t i : order_) {
      Entry& entry = entries_[i];
      std::string& name = entry.merged.front().Name;
      const Counts& counts = names[name];
      const bool isOurs = entry.ours != nullptr && entry.ours->Name == name;
      // A library may have duplicate names, but a merge must not add any.
      if (!isOurs && counts.merged > std::max(counts.ours, counts.theirs)) {
        entry.conflict += (entry.conflict.empty() ? "" : "; ") + ("both sides have another \"" + name + "\"");
        makeTheirs(name);
      }
      if (entry.merged.size() > 1) makeTheirs(entry.merged[1].Name);
    }
  }

  std::span<const Snippet> base_;
  std::span<const Snippet> ours_;
  std::span<const Snippet> theirs_;
  std::vector<Entry> entries_;
  Positions entryOfOurs_;
  Positions entryOfTheirs_;
  std::vector<std::size_t> order_;
};

}  // namespace

MergedLibrary MergeLibraries(std::span<const Snippet> base, std::span<const Snippet> ours,
                             std::span<const Snippet> theirs) {
  return Merging(base, ours, theirs).Take();
}

}  // namespace snip
