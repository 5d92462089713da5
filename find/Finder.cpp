#include "find/Finder.h"

#include <algorithm>
#include <utility>

#include "find/Tags.h"

namespace snip {
namespace {

using Where = QueryTerm::Where;

constexpr std::size_t kMostUsed = 50;

/// Sorts ranges and joins those that touch.
std::vector<TextRange> Joined(std::vector<TextRange> ranges) {
  std::ranges::sort(ranges, {}, &TextRange::begin);
  std::vector<TextRange> joined;
  for (const TextRange& range : ranges) {
    if (!joined.empty() && range.begin <= joined.back().end) {
      joined.back().end = std::max(joined.back().end, range.end);
    } else {
      joined.push_back(range);
    }
  }
  return joined;
}

}  // namespace

struct Finder::Rank {
  HitPlace worst = HitPlace::None;
  std::uint64_t all = 0;  ///< The sum of the places of all words.

  void Add(HitPlace place) {
    worst = std::max(worst, place);
    all = std::min<std::uint64_t>(all + static_cast<std::uint64_t>(place), 0xFF);
  }
};

void Finder::SetLibraries(std::vector<SearchedLibraryPtr> libraries) {
  found_.clear();
  narrows_ = false;
  libraries_ = std::move(libraries);
  FindUsed();
}

void Finder::Use(const Found& found) {
  Used now{libraries_[found.library]->path(), std::string(SnippetOf(found).Name)};
  std::erase_if(used_,
                [&](const Used& used) { return used.library == now.library && used.name == now.name; });
  used_.insert(used_.begin(), std::move(now));
  if (used_.size() > kMostUsed) used_.pop_back();
  FindUsed();
}

void Finder::FindUsed() {
  usedNow_.clear();
  for (const Used& used : used_) {
    for (std::uint32_t at = 0; at < libraries_.size(); ++at) {
      const SearchedLibrary& library = *libraries_[at];
      if (library.path() != used.library) continue;
      std::uint32_t snippet = 0;
      while (snippet < library.size() && library[snippet].Name != used.name) ++snippet;
      if (snippet < library.size()) usedNow_.push_back({at, snippet});
    }
  }
}

std::uint64_t Finder::RecencyRank(const Found& found) const {
  const auto used = std::ranges::find_if(usedNow_, [&](const Found& one) {
    return one.library == found.library && one.snippet == found.snippet;
  });
  return std::min<std::uint64_t>(static_cast<std::uint64_t>(used - usedNow_.begin()), 0xFF);
}

bool Finder::IsWanted(const SearchedLibrary& library) const {
  bool named = false;
  bool any = true;
  for (const QueryTerm& term : query_.terms) {
    if (term.where != Where::Library) continue;
    const bool has = term.needle.IsIn(library.name());
    if (term.excluded && has) return false;
    if (term.excluded) continue;
    any = named ? any || has : has;
    named = true;
  }
  return any;
}

std::optional<HitPlace> Finder::BestPlace(const QueryTerm& term, const SearchedLibrary& library,
                                          std::size_t snippet) const {
  const SearchedSnippet texts = library[snippet];
  if (term.where == Where::Anywhere || term.where == Where::Name) {
    const std::uint32_t needed = SearchedLibrary::LetterBits(term.needle.folded(), folding_);
    if ((needed & ~library.lettersInName(snippet)) == 0) {
      // An excluded word has to match as a whole; matching its single letters would exclude too much.
      if (const auto place = MatchName(term.needle, term.phrase || term.excluded, texts.Name, folding_))
        return place;
    }
  }
  if (term.where == Where::Anywhere && term.needle.IsIn(texts.Description)) return HitPlace::Description;
  if (term.where == Where::Tag && HasTag(texts.Description, term.needle, term.phrase, folding_))
    return HitPlace::Description;
  if ((term.where == Where::Anywhere || term.where == Where::Code) && term.needle.IsIn(texts.Code))
    return HitPlace::Code;
  return std::nullopt;
}

bool Finder::Matches(const SearchedLibrary& library, std::size_t snippet, Rank& rank) const {
  for (const QueryTerm& term : query_.terms) {
    if (term.where == Where::Library) continue;
    const auto place = BestPlace(term, library, snippet);
    if (place.has_value() == term.excluded) return false;
    if (place) rank.Add(*place);
  }
  // A name that begins with the whole query is better than one that has its words anywhere.
  if (!joined_.empty() && rank.worst <= HitPlace::InName) {
    const auto place = MatchName(joined_.front(), true, library[snippet].Name, folding_);
    if (place && *place <= HitPlace::NameBegin) rank = {*place, static_cast<std::uint64_t>(*place)};
  }
  return true;
}

const std::vector<Found>& Finder::Search(std::string_view text) {
  Query query = ParseQuery(text, folding_);
  const bool narrows = std::exchange(narrows_, false) && IsNarrower(query, query_);
  query_ = std::move(query);
  joined_.clear();
  std::string words;
  std::size_t count = 0;
  for (const QueryTerm& term : query_.terms) {
    if (term.excluded || term.phrase || term.where != Where::Anywhere) continue;
    words += (count++ > 0 ? " " : "") + term.needle.folded();
  }
  if (count > 1) joined_.emplace_back(words, folding_);

  // Packed into one number, the most important part first, so that sorting is fast.
  std::vector<std::uint64_t> ranked;
  const auto consider = [&](std::uint32_t library, std::uint32_t snippet) {
    Rank rank;
    if (!Matches(*libraries_[library], snippet, rank)) return;
    const auto worst = static_cast<std::uint64_t>(rank.worst);
    const std::uint64_t recency = RecencyRank({library, snippet});
    ranked.push_back(((worst << 8U | rank.all) << 8U | recency) << 32U | library << 16U | snippet);
  };
  if (narrows) {
    for (const Found& found : found_) {
      if (Has(found) && IsWanted(*libraries_[found.library])) consider(found.library, found.snippet);
    }
  } else {
    for (std::uint32_t library = 0; library < libraries_.size(); ++library) {
      if (!IsWanted(*libraries_[library])) continue;
      const auto snippets = static_cast<std::uint32_t>(libraries_[library]->size());
      for (std::uint32_t snippet = 0; snippet < snippets; ++snippet) consider(library, snippet);
    }
  }
  std::sort(ranked.begin(), ranked.end());
  found_.clear();
  for (const std::uint64_t one : ranked) {
    found_.push_back({static_cast<std::uint32_t>(one >> 16U & 0xFFFFU),
                      static_cast<std::uint32_t>(one & 0xFFFFU), static_cast<HitPlace>(one >> 48U)});
  }
  narrows_ = true;
  return found_;
}

std::vector<TextRange> Finder::Places(std::string_view text, Where where) const {
  std::vector<TextRange> places;
  for (const QueryTerm& term : query_.terms) {
    if (term.excluded || (term.where != Where::Anywhere && term.where != where)) continue;
    const std::size_t length = term.needle.folded().size();
    for (auto at = term.needle.Find(text); at; at = term.needle.Find(text, *at + length)) {
      places.push_back({*at, *at + length});
    }
  }
  return places;
}

std::vector<TextRange> Finder::PlacesInName(std::string_view name) const {
  std::vector<TextRange> places;
  std::vector<TextRange> parts;
  for (const QueryTerm& term : query_.terms) {
    if (term.excluded || (term.where != Where::Anywhere && term.where != Where::Name)) continue;
    if (MatchName(term.needle, term.phrase, name, folding_, &parts))
      places.insert(places.end(), parts.begin(), parts.end());
  }
  return Joined(std::move(places));
}

std::vector<TextRange> Finder::PlacesInDescription(std::string_view description) const {
  std::vector<TextRange> places = Places(description, Where::Anywhere);
  for (const QueryTerm& term : query_.terms) {
    if (term.excluded || term.where != Where::Tag) continue;
    ForEachTag(description, folding_, [&](std::string_view tag, TextRange place) {
      if (IsTag(tag, term.needle, term.phrase)) places.push_back(place);
      return true;
    });
  }
  return Joined(std::move(places));
}

std::vector<TextRange> Finder::PlacesInCode(std::string_view code) const {
  return Joined(Places(code, Where::Code));
}

}  // namespace snip
