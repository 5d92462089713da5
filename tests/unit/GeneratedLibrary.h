#pragma once

#include <random>
#include <string>
#include <vector>

#include "library/BnsRules.h"
#include "library/Library.h"

namespace snip::test {

/// A library of random texts made of what formats stumble over; every snippet can be kept in a library file.
inline std::vector<Snippet> GeneratedLibrary(unsigned seed) {
  static const std::vector<std::string> pieces = {"x",
                                                  "Dim s$",
                                                  "\r\n",
                                                  "\r\n\r\n",
                                                  "$",
                                                  "${1:a}",
                                                  "$end$",
                                                  "}",
                                                  "\\",
                                                  "\"",
                                                  "'",
                                                  "' a comment",
                                                  "]]>",
                                                  "<b>",
                                                  "&amp;",
                                                  "\t",
                                                  " ",
                                                  "  ",
                                                  "\xE9",
                                                  "\x80",
                                                  "\x81",
                                                  "\x9F",
                                                  "/* c */",
                                                  "// c",
                                                  ",]",
                                                  "(,)",
                                                  "(.)x",
                                                  "....",
                                                  "%",
                                                  "Attribute VB_Name = \"M\"",
                                                  "\xEF\xBB\xBF",
                                                  "http://a",
                                                  "CON",
                                                  "~@^`|#&!;?"};
  std::mt19937 random(seed);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const auto text = [&](std::size_t longest, bool lines) {
    std::string made;
    for (std::size_t count = below(longest + 1); count > 0; --count) {
      const std::string& piece = pieces[below(pieces.size())];
      if (lines || piece.find('\r') == std::string::npos) made += piece;
    }
    return made;
  };
  std::vector<Snippet> library;
  for (std::size_t count = below(12); count > 0; --count) {
    Snippet snippet{
        .Name = text(3, false), .Attachment = {}, .Code = text(25, true), .Description = text(8, true)};
    if (below(3) == 0) snippet.Attachment = "C:\\a " + text(2, false);
    DropTrailingSpaces(snippet);
    if (!WhyNotHeld(snippet)) library.push_back(snippet);
  }
  return library;
}

}  // namespace snip::test
