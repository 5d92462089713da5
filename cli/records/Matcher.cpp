#include "cli/records/Matcher.h"

// Boost's expressions do not recurse once a character, as the standard library's do, and give up on those
// that would take for ever.
#define BOOST_REGEX_STANDALONE
#include <boost/regex.hpp>

#include <algorithm>
#include <cstring>
#include <limits>
#include <locale>
#include <utility>

#include "cli/Failure.h"

namespace snip {
namespace {

using Regex = boost::basic_regex<char, boost::cpp_regex_traits<char>>;

/// The kinds of characters; a base, since it has to be there before the other base is given it.
struct PageMasks {
  std::array<std::ctype_base::mask, std::ctype<char>::table_size> masks{};
};

/// Lets regular expressions know the letters of the code page.
class PageCharacters : private PageMasks, public std::ctype<char> {
 public:
  explicit PageCharacters(const CodePage& page) : std::ctype<char>(masks.data()), page_(page) {
    std::copy_n(classic_table(), masks.size(), masks.begin());
    for (std::size_t i = 0x80; i < masks.size(); ++i) {
      const char byte = static_cast<char>(i);
      if (!page.IsWord(byte)) continue;
      masks[i] = static_cast<mask>(alpha | print | (page.Lower(byte) != byte ? upper : lower));
    }
  }

 protected:
  char do_tolower(char byte) const override { return page_.Lower(byte); }
  const char* do_tolower(char* begin, const char* end) const override {
    for (; begin != end; ++begin) *begin = page_.Lower(*begin);
    return end;
  }

 private:
  const CodePage& page_;
};

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

/// Whether a match could depend on where the text around a line begins or ends, or on what follows.
bool LooksAround(std::string_view expression) {
  if (expression.find("(?") != std::string_view::npos) return true;
  for (std::size_t i = 0; i + 1 < expression.size(); ++i) {
    if (expression[i] != '\\') continue;
    if (std::string_view("AzZG`'").find(expression[i + 1]) != std::string_view::npos) return true;
    ++i;
  }
  return false;
}

std::optional<Match> Search(std::string_view text, std::size_t from, const Regex& regex) {
  boost::cmatch found;
  const auto flags = boost::match_not_dot_newline | boost::match_prev_avail;
  const char* const begin = text.data();
  const bool any = boost::regex_search(begin + from, begin + text.size(), found, regex,
                                       from == 0 ? boost::match_not_dot_newline : flags);
  if (!any) return std::nullopt;
  return Match{.at = static_cast<std::size_t>(found[0].first - begin),
               .length = static_cast<std::size_t>(found[0].length())};
}

}  // namespace

struct Matcher::Expression {
  Regex regex;
  bool lineByLine = false;
};

Matcher::~Matcher() = default;

Matcher::Matcher(Pattern pattern, std::string_view sample, const CodePage& page)
    : pattern_(std::move(pattern)), page_(page) {
  if (!pattern_.regularExpression) {
    if (pattern_.ignoreCase) pattern_.text = page_.Lower(pattern_.text);
    ChooseRareByte(sample);
    return;
  }
  expression_ = std::make_unique<Expression>();
  expression_->lineByLine = LooksAround(pattern_.text);
  expression_->regex.imbue(
      std::locale(std::locale::classic(), new PageCharacters(page_)));  // the locale owns it
  const Regex::flag_type flags = pattern_.ignoreCase ? Regex::perl | Regex::icase : Regex::perl;
  try {
    expression_->regex.assign(pattern_.text, flags);
    if (pattern_.wholeWord) expression_->regex.assign("(?<!\\w)(?:" + pattern_.text + ")(?!\\w)", flags);
  } catch (const boost::regex_error& error) {
    throw Failure(ExitCode::Usage, "not a regular expression: " + std::string(error.what()));
  }
}

void Matcher::ChooseRareByte(std::string_view sample) {
  std::array<std::size_t, 256> counts{};
  const auto index = [&](char byte) {
    return static_cast<unsigned char>(pattern_.ignoreCase ? page_.Lower(byte) : byte);
  };
  constexpr std::size_t enough = 65536;
  for (const char byte : sample.substr(0, enough)) ++counts[index(byte)];
  for (std::size_t i = 1; i < pattern_.text.size(); ++i) {
    if (counts[index(pattern_.text[i])] < counts[index(pattern_.text[rareAt_])]) rareAt_ = i;
  }
  if (pattern_.text.empty()) return;
  for (int byte = 0; byte < 256; ++byte) {
    if (index(static_cast<char>(byte)) == index(pattern_.text[rareAt_]))
      rare_.push_back(static_cast<char>(byte));
  }
}

bool Matcher::IsMatchAt(std::string_view text, std::size_t at) const {
  const std::string_view found = text.substr(at, pattern_.text.size());
  if (found.size() < pattern_.text.size()) return false;
  const auto same = [this](char there, char wanted) {
    return (pattern_.ignoreCase ? page_.Lower(there) : there) == wanted;
  };
  if (!std::equal(found.begin(), found.end(), pattern_.text.begin(), same)) return false;
  if (!pattern_.wholeWord) return true;
  const std::size_t end = at + found.size();
  return (at == 0 || !page_.IsWord(text[at - 1])) && (end == text.size() || !page_.IsWord(text[end]));
}

std::optional<Match> Matcher::FindPlain(std::string_view text, std::size_t from) const {
  if (pattern_.text.empty()) return Match{.at = from, .length = 0};
  constexpr std::size_t unknown = std::numeric_limits<std::size_t>::max();
  // The next place of each byte that matches at the rare place; a place that was passed is looked for again.
  std::array<std::size_t, 8> next{};
  const std::size_t variants = std::min(rare_.size(), next.size());
  next.fill(unknown);
  for (std::size_t rare = from + rareAt_;;) {
    std::size_t nearest = text.size();
    for (std::size_t i = 0; i < variants; ++i) {
      if (next[i] == unknown || next[i] < rare) {
        const void* place =
            rare < text.size() ? std::memchr(text.data() + rare, rare_[i], text.size() - rare) : nullptr;
        next[i] = place == nullptr ? text.size()
                                   : static_cast<std::size_t>(static_cast<const char*>(place) - text.data());
      }
      nearest = std::min(nearest, next[i]);
    }
    if (nearest == text.size()) return std::nullopt;
    if (IsMatchAt(text, nearest - rareAt_))
      return Match{.at = nearest - rareAt_, .length = pattern_.text.size()};
    rare = nearest + 1;
  }
}

std::optional<Match> Matcher::FindExpression(std::string_view text, std::size_t from) const {
  std::size_t at = from;
  while (at < text.size()) {
    if (!expression_->lineByLine) {
      // The whole text at once: most lines need no search of their own.
      const auto somewhere = Search(text, at, expression_->regex);
      if (!somewhere) return std::nullopt;
      at = std::max(at, std::min(somewhere->at, text.size() - 1));
    }
    std::size_t begin = at;
    while (begin > from && !IsLineEnd(text[begin - 1])) --begin;
    std::size_t end = begin;
    while (end < text.size() && !IsLineEnd(text[end])) ++end;
    // A match within a line is the same as one of the line alone.
    if (auto match = Search(text.substr(begin, end - begin), 0, expression_->regex)) {
      match->at += begin;
      return match;
    }
    at = end;
    while (at < text.size() && IsLineEnd(text[at])) ++at;
  }
  return std::nullopt;
}

std::optional<Match> Matcher::Find(std::string_view text, std::size_t from) const {
  if (from >= text.size()) return std::nullopt;
  try {
    return expression_ ? FindExpression(text, from) : FindPlain(text, from);
  } catch (const std::runtime_error&) {
    throw Failure(ExitCode::Refused, "the regular expression takes too long on this text");
  }
}

}  // namespace snip
