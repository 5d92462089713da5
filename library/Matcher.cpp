#include "library/Matcher.h"

// The standard library's expressions recurse for each character until the stack overflows. Boost's do not,
// and they give up on expressions that would take exponential time.
#define BOOST_REGEX_STANDALONE
#include <boost/regex.hpp>

#include <algorithm>
#include <locale>
#include <stdexcept>
#include <utility>

namespace snip {
namespace {

using Regex = boost::basic_regex<char, boost::cpp_regex_traits<char>>;

/// A base class, because the other base needs it in its constructor.
struct CharacterMasks {
  std::array<std::ctype_base::mask, std::ctype<char>::table_size> masks{};
};

/// Tells regular expressions what the letters of the code page are.
class CodePageCharacters : private CharacterMasks, public std::ctype<char> {
 public:
  explicit CodePageCharacters(const LetterTable& letters)
      : std::ctype<char>(masks.data()), letters_(letters) {
    std::copy_n(classic_table(), masks.size(), masks.begin());
    for (std::size_t i = 0x80; i < masks.size(); ++i) {
      const char byte = static_cast<char>(i);
      if (!letters.IsWord(byte)) continue;
      masks[i] = static_cast<mask>(alpha | print | (letters.Lower(byte) != byte ? upper : lower));
    }
  }

 protected:
  char do_tolower(char byte) const override { return letters_.Lower(byte); }
  const char* do_tolower(char* begin, const char* end) const override {
    for (; begin != end; ++begin) *begin = letters_.Lower(*begin);
    return end;
  }

 private:
  const LetterTable& letters_;
};

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

/// Whether a match could depend on where the text around a line begins or ends.
bool LooksAround(std::string_view expression) {
  if (expression.find("(?") != std::string_view::npos) return true;
  for (std::size_t i = 0; i + 1 < expression.size(); ++i) {
    if (expression[i] != '\\') continue;
    if (std::string_view("AzZG`'").find(expression[i + 1]) != std::string_view::npos) return true;
    ++i;
  }
  return false;
}

/// The index of the character that stops a search for it least often, because few texts have it.
std::size_t RarestAt(std::string_view pattern) {
  constexpr std::string_view mostCommonFirst = " etaoinsrldcumhpfgybwvkxjqz";
  const auto rarest = std::max_element(pattern.begin(), pattern.end(), [&](char a, char b) {
    return mostCommonFirst.find(a) < mostCommonFirst.find(b);
  });
  return static_cast<std::size_t>(rarest - pattern.begin());
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

Matcher::Matcher(Pattern pattern, const LetterTable& letters)
    : pattern_(std::move(pattern)), letters_(letters) {
  if (!pattern_.regularExpression) {
    if (pattern_.ignoreCase) pattern_.text = letters.Lower(pattern_.text);
    if (pattern_.text.empty()) return;
    rareAt_ = RarestAt(pattern_.text);
    for (int byte = 0; byte < 256; ++byte) {
      const char variant = static_cast<char>(byte);
      if (letters.Lower(variant) == pattern_.text[rareAt_]) rareVariants_ += variant;
    }
    return;
  }
  expression_ = std::make_unique<Expression>();
  expression_->lineByLine = LooksAround(pattern_.text);
  expression_->regex.imbue(
      std::locale(std::locale::classic(), new CodePageCharacters(letters_)));  // the locale owns it
  const Regex::flag_type flags = pattern_.ignoreCase ? Regex::perl | Regex::icase : Regex::perl;
  try {
    expression_->regex.assign(pattern_.text, flags);
    if (pattern_.wholeWord) expression_->regex.assign("(?<!\\w)(?:" + pattern_.text + ")(?!\\w)", flags);
  } catch (const boost::regex_error& error) {
    throw std::invalid_argument("not a regular expression: " + std::string(error.what()));
  }
}

bool Matcher::IsWholeWord(std::string_view text, const Match& match) const {
  const std::size_t end = match.at + match.length;
  return (match.at == 0 || !letters_.IsWord(text[match.at - 1])) &&
         (end == text.size() || !letters_.IsWord(text[end]));
}

std::string_view Matcher::Fold(std::string_view text, std::string& room) const {
  if (!pattern_.ignoreCase || expression_ || pattern_.text.empty()) return text;
  // Making small letters takes longer than finding that a text lacks one character.
  const auto isThere = [&](char byte) { return text.find(byte) != std::string_view::npos; };
  if (std::none_of(rareVariants_.begin(), rareVariants_.end(), isThere)) return {};
  room.resize(text.size());
  std::transform(text.begin(), text.end(), room.begin(), [this](char byte) { return letters_.Lower(byte); });
  return room;
}

std::optional<Match> Matcher::FindPlain(std::string_view text, std::size_t from) const {
  const std::string_view fromRare = std::string_view(pattern_.text).substr(rareAt_);
  for (Match match{.at = from, .length = pattern_.text.size()};; ++match.at) {
    const std::size_t found = text.find(fromRare, match.at + rareAt_);
    if (found == std::string_view::npos) return std::nullopt;
    match.at = found - rareAt_;
    if (!text.substr(match.at).starts_with(pattern_.text)) continue;
    if (!pattern_.wholeWord || IsWholeWord(text, match)) return match;
  }
}

std::optional<Match> Matcher::FindExpression(std::string_view text, std::size_t from) const {
  std::size_t at = from;
  while (at < text.size()) {
    if (!expression_->lineByLine) {
      // Search the whole text first, because most lines have no match.
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
    if (text.substr(at).starts_with("\r\n")) ++at;
    ++at;
  }
  return std::nullopt;
}

std::optional<Match> Matcher::Find(std::string_view text, std::size_t from) const {
  if (from >= text.size()) return std::nullopt;
  try {
    return expression_ ? FindExpression(text, from) : FindPlain(text, from);
  } catch (const std::runtime_error&) {
    throw ExpressionTooSlow();
  }
}

}  // namespace snip
