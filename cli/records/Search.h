#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "cli/records/Matcher.h"
#include "cli/records/RecordScanner.h"

namespace snip {

/// Which texts of a snippet are searched.
struct SearchedParts {
  bool name = true;
  bool description = true;
  bool code = true;
};

/// A line in which the pattern stands; points into the library's bytes.
struct Hit {
  std::size_t snippet = 0;  ///< From 0.
  std::string_view name;
  Part part = Part::Name;  ///< Name, Description or Code.
  std::size_t line = 1;    ///< Of that text, from 1.
  std::string_view text;   ///< The line without its end.
  Match match;             ///< The first in the line.
};

/// Calls `take` for each line of the library in which the pattern stands, in the library's order. The bytes
/// are searched where they are, for libraries of any size.
ScannedFile SearchLibrary(std::string_view bytes, const Matcher& matcher, const SearchedParts& parts,
                          const std::function<void(const Hit&)>& take);

}  // namespace snip
