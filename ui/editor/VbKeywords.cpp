#include "ui/editor/VbKeywords.h"

#include <algorithm>
#include <array>

namespace snip {
namespace {

/// In alphabetical order.
constexpr std::array<std::string_view, 145> kAlways = {
    "abs",        "addressof", "and",     "any",      "array",  "as",       "attribute",  "boolean",
    "byref",      "byte",      "byval",   "call",     "case",   "cbool",    "cbyte",      "ccur",
    "cdate",      "cdbl",      "cdec",    "cdecl",    "cint",   "circle",   "clng",       "close",
    "const",      "csng",      "cstr",    "currency", "cvar",   "cverr",    "date",       "debug",
    "decimal",    "declare",   "defbool", "defbyte",  "defcur", "defdate",  "defdbl",     "defint",
    "deflng",     "defobj",    "defsng",  "defstr",   "defvar", "dim",      "do",         "doevents",
    "double",     "each",      "else",    "elseif",   "empty",  "end",      "endif",      "enum",
    "eqv",        "erase",     "error",   "event",    "exit",   "false",    "fix",        "for",
    "friend",     "function",  "get",     "global",   "gosub",  "goto",     "if",         "imp",
    "implements", "in",        "input",   "inputb",   "int",    "integer",  "is",         "lbound",
    "len",        "lenb",      "let",     "like",     "line",   "lock",     "long",       "loop",
    "lset",       "me",        "mid",     "mod",      "new",    "next",     "not",        "nothing",
    "null",       "object",    "on",      "open",     "option", "optional", "or",         "paramarray",
    "preserve",   "print",     "private", "property", "pset",   "public",   "put",        "raiseevent",
    "redim",      "resume",    "return",  "rset",     "scale",  "seek",     "select",     "set",
    "sgn",        "shared",    "single",  "spc",      "static", "step",     "stop",       "string",
    "sub",        "tab",       "then",    "to",       "true",   "type",     "typeof",     "ubound",
    "unlock",     "until",     "variant", "wend",     "while",  "with",     "withevents", "write",
    "xor"};

/// Keywords in statements that begin with a certain word only; elsewhere people use them as names.
struct Contextual {
  std::string_view word;
  std::string_view statement;
};
constexpr std::array<Contextual, 12> kContextual = {{{"access", "open"},
                                                     {"append", "open"},
                                                     {"base", "option"},
                                                     {"binary", "open"},
                                                     {"binary", "option"},
                                                     {"compare", "option"},
                                                     {"explicit", "option"},
                                                     {"module", "option"},
                                                     {"output", "open"},
                                                     {"random", "open"},
                                                     {"read", "open"},
                                                     {"text", "option"}}};

/// A word in lower case, as words are compared. What is longer than every keyword is cut off: it is none.
class LowerWord {
 public:
  explicit LowerWord(std::string_view word) : size_(std::min(word.size(), letters_.size())) {
    std::transform(word.begin(), word.begin() + static_cast<std::ptrdiff_t>(size_), letters_.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  }
  std::string_view text() const { return {letters_.data(), size_}; }

 private:
  std::array<char, 12> letters_{};
  std::size_t size_;
};

}  // namespace

bool IsAlwaysKeyword(std::string_view word) {
  return std::binary_search(kAlways.begin(), kAlways.end(), LowerWord(word).text());
}

bool IsKeyword(std::string_view word, const KeywordPlace& place) {
  if (IsAlwaysKeyword(word)) return true;
  const LowerWord lower(word);
  // The text may follow on the next line; no name begins with "_".
  if (lower.text() == "alias" || lower.text() == "lib") return place.next == '"' || place.next == '_';
  // "Name a As b" renames a file; elsewhere, as in "Name = b" and "x.Name", it is a name.
  if (lower.text() == "name") {
    return place.beginsStatement && place.next != '\0' &&
           std::string_view("=.(:,!$'").find(place.next) == std::string_view::npos;
  }
  const LowerWord statement(place.statement);
  return std::any_of(kContextual.begin(), kContextual.end(), [&](const Contextual& candidate) {
    return candidate.word == lower.text() && candidate.statement == statement.text();
  });
}

bool IsDirective(std::string_view word) {
  const LowerWord lower(word);
  return lower.text() == "if" || lower.text() == "elseif" || lower.text() == "else" ||
         lower.text() == "end" || lower.text() == "const";
}

bool IsRem(std::string_view word) {
  return LowerWord(word).text() == "rem";
}

bool IsClause(std::string_view word) {
  const LowerWord lower(word);
  return lower.text() == "then" || lower.text() == "else";
}

}  // namespace snip
