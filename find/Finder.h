#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "find/NameMatch.h"
#include "find/Query.h"
#include "find/SearchedLibrary.h"

namespace snip {

/// A snippet that was found.
struct Found {
  std::uint32_t library = 0;        ///< Index in `libraries`.
  std::uint32_t snippet = 0;        ///< From 0.
  HitPlace place = HitPlace::None;  ///< The worst of the places of all words.

  friend bool operator==(const Found&, const Found&) = default;
};

/// Finds snippets in libraries, the best first. Snippets are ordered by the worst place of their words, then
/// by the sum of all places, then by how recently they were used.
class Finder {
 public:
  /// `folding` must outlive this.
  explicit Finder(const Folding& folding) : folding_(folding) {}

  const Folding& folding() const { return folding_; }
  const std::vector<SearchedLibraryPtr>& libraries() const { return libraries_; }
  void SetLibraries(std::vector<SearchedLibraryPtr> libraries);

  /// The snippets that match the text, in order. Valid until the next search or `SetLibraries`.
  const std::vector<Found>& Search(std::string_view text);
  const std::vector<Found>& found() const { return found_; }
  const Query& query() const { return query_; }
  /// Whether the snippet still exists: the open library may have changed since the search.
  bool Has(const Found& found) const {
    return found.library < libraries_.size() && found.snippet < libraries_[found.library]->size();
  }
  SearchedSnippet SnippetOf(const Found& found) const { return (*libraries_[found.library])[found.snippet]; }

  /// The user has used the snippet: from the next search on it comes first among equals.
  void Use(const Found& found);

  // The places where a text matches the query, in order and without overlap.
  std::vector<TextRange> PlacesInName(std::string_view name) const;
  std::vector<TextRange> PlacesInDescription(std::string_view description) const;
  std::vector<TextRange> PlacesInCode(std::string_view code) const;

 private:
  struct Used {
    std::string library;  ///< Its path.
    std::string name;
  };
  struct Rank;

  std::optional<HitPlace> BestPlace(const QueryTerm& term, const SearchedLibrary& library,
                                    std::size_t snippet) const;
  bool Matches(const SearchedLibrary& library, std::size_t snippet, Rank& rank) const;
  bool IsWanted(const SearchedLibrary& library) const;
  /// 0 for the snippet that was used last, 255 at most.
  std::uint64_t RecencyRank(const Found& found) const;
  void FindUsed();
  std::vector<TextRange> Places(std::string_view text, QueryTerm::Where where) const;

  const Folding& folding_;
  std::vector<SearchedLibraryPtr> libraries_;
  Query query_;
  std::vector<Needle> joined_;  ///< All words as one phrase, if there are several.
  std::vector<Found> found_;
  bool narrows_ = false;  ///< `found_` is the full result of `query_`, which a narrower query can start from.
  std::vector<Used> used_;      ///< The most recent first.
  std::vector<Found> usedNow_;  ///< Those that exist now, in the same order.
};

}  // namespace snip
