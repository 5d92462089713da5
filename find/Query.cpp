#include "find/Query.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"

namespace snip {
namespace {

using Where = QueryTerm::Where;

constexpr std::pair<std::string_view, Where> kPrefixes[] = {
    {"name:", Where::Name}, {"code:", Where::Code}, {"in:", Where::Library}, {"#", Where::Tag}};

/// Removes the first term from a text and returns it.
QueryTerm TakeTerm(std::string_view& text, const Folding& folding) {
  const bool excluded = text.front() == '-';
  if (excluded) text.remove_prefix(1);
  Where where = Where::Anywhere;
  for (const auto& [prefix, meaning] : kPrefixes) {
    if (!EqualsIgnoringAsciiCase(text.substr(0, prefix.size()), prefix)) continue;
    where = meaning;
    text.remove_prefix(prefix.size());
    break;
  }
  const bool phrase = text.starts_with('"');
  if (phrase) text.remove_prefix(1);
  const std::size_t end = std::min(text.find_first_of(phrase ? "\"" : " \t\r\n"), text.size());
  const bool whole = where == Where::Tag ? end < text.size() : phrase;
  QueryTerm term{where, whole, excluded, Needle(text.substr(0, end), folding)};
  text.remove_prefix(std::min(end + 1, text.size()));
  return term;
}

bool IsLibrary(const QueryTerm& term) {
  return term.where == Where::Library && !term.excluded;
}

bool IsNarrowerTerm(const QueryTerm& narrower, const QueryTerm& wider) {
  if (narrower.where != wider.where || narrower.excluded != wider.excluded || narrower.phrase != wider.phrase)
    return false;
  const std::string& longer = narrower.needle.folded();
  const bool isWholeTag = narrower.where == Where::Tag && narrower.phrase;
  return narrower.excluded || isWholeTag ? longer == wider.needle.folded()
                                         : wider.needle.MatchesAt(longer, 0);
}

}  // namespace

Query ParseQuery(std::string_view text, const Folding& folding) {
  Query query;
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.empty()) return query;
    QueryTerm term = TakeTerm(text, folding);
    if (!term.needle.folded().empty()) query.terms.push_back(std::move(term));
  }
}

bool IsNarrower(const Query& narrower, const Query& wider) {
  // Each further library finds more.
  if (std::ranges::count_if(narrower.terms, IsLibrary) > std::ranges::count_if(wider.terms, IsLibrary) &&
      std::ranges::any_of(wider.terms, IsLibrary))
    return false;
  return narrower.terms.size() >= wider.terms.size() &&
         std::equal(wider.terms.begin(), wider.terms.end(), narrower.terms.begin(),
                    [](const QueryTerm& a, const QueryTerm& b) { return IsNarrowerTerm(b, a); });
}

}  // namespace snip
