#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "library/BnsScanner.h"
#include "library/Matcher.h"

namespace snip {

/// Which texts of a snippet are searched.
struct SearchedTexts {
  bool name = true;
  bool description = true;
  bool code = true;
};

/// A line with a match; valid during the call that reports it.
struct Hit {
  std::size_t snippet = 0;                ///< From 0.
  std::string_view name;                  ///< The snippet's.
  BnsSection section = BnsSection::Name;  ///< Name, Description or Code.
  std::size_t line = 1;                   ///< Of that text, from 1.
  std::string_view text;                  ///< The line without its line ending.
  Match match;                            ///< The first in the line.
};

/// Whether a line of the file, in any section, has a match; also true if a line is too long to search. Faster
/// than SearchLibrary. The file is read piece by piece.
bool CanHaveHits(ByteSource& bytes, const Matcher& matcher);

/// Calls `take` for each line with a match, in the file's order. The file is read piece by piece.
void SearchLibrary(BnsScanner& scanner, const Matcher& matcher, const SearchedTexts& texts,
                   const std::function<void(const Hit&)>& take);

}  // namespace snip
