#include "ui/find/FoundWalk.h"

#include <algorithm>
#include <string>

namespace snip {
namespace {

/// How many snippets a walk can go on to.
constexpr std::size_t kMostHits = 1000;

}  // namespace

void FoundWalk::BeginAt(const Found& chosen) {
  Forget();
  const auto& found = finder_.found();
  const auto at = std::ranges::find(found, chosen);
  const auto before = std::min(at - found.begin(), static_cast<std::ptrdiff_t>(kMostHits / 2));
  for (auto one = at - before; one != found.end() && hits_.size() < kMostHits; ++one) {
    if (!finder_.Has(*one)) continue;
    const SearchedLibrary& library = *finder_.libraries()[one->library];
    if (one == at) hit_ = hits_.size();
    hits_.push_back(
        {{library.name(), library.path()}, one->snippet, std::string(finder_.SnippetOf(*one).Name)});
  }
}

void FoundWalk::Forget() {
  inCode_ = false;
  hits_.clear();
  hit_ = 0;
}

Went FoundWalk::GoTo(std::size_t hit, bool forward) {
  const FindDestination destination = hits_[hit];
  const Went went = target_.GoTo(destination);
  if (went != Went::Nowhere) hit_ = hit;
  if (went == Went::There) SelectPlace(forward, true);
  return went;
}

/// Selects the next place in the code that is shown; false if there is none.
bool FoundWalk::SelectPlace(bool forward, bool fromStart) {
  const std::string code = target_.ShownCode().value_or("");
  const std::vector<TextRange> places = finder_.PlacesInCode(code);
  const TextRange now = fromStart ? (forward ? TextRange{0, 0} : TextRange{code.size(), code.size()})
                                  : target_.SelectedInCode();
  const auto behind = std::ranges::find_if(places, [&](const TextRange& p) { return p.begin >= now.end; });
  const auto before =
      std::find_if(places.rbegin(), places.rend(), [&](const TextRange& p) { return p.end <= now.begin; });
  if (forward ? behind == places.end() : before == places.rend()) return false;
  target_.SelectInCode(forward ? *behind : *before);
  return true;
}

std::optional<Went> FoundWalk::GoOn(bool forward) {
  if (finder_.query().empty()) return std::nullopt;
  if (SelectPlace(forward, false)) return Went::There;
  if (inCode_) return SelectPlace(forward, true) ? Went::There : Went::Nowhere;
  if (hits_.empty()) {
    if (finder_.found().empty()) return std::nullopt;
    BeginAt(finder_.found().front());
    if (hits_.empty()) return std::nullopt;
    return Go();
  }
  if (forward ? hit_ + 1 >= hits_.size() : hit_ == 0) return Went::Nowhere;
  return GoTo(forward ? hit_ + 1 : hit_ - 1, forward);
}

}  // namespace snip
