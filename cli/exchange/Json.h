#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/system/CodePage.h"
#include "library/Library.h"

namespace snip {

using Json = nlohmann::json;
/// For writing: keeps the order of members, but is slow to search.
using OrderedJson = nlohmann::ordered_json;

/// The member names of a file's outermost object.
struct OutermostKeys {
  std::vector<std::string> inOrder;  ///< In the file's order, without repetitions.
  std::set<std::string> repeated;    ///< Those that occur several times; the last one counts.
};

/// Reads JSON with comments and with commas behind last elements, as editors' settings have them. Throws
/// Malformed.
Json ReadJsonWithComments(std::string_view bytes);
Json ReadJsonWithComments(std::string_view bytes, OutermostKeys& keys);

/// A snippet for scripts; `position` counts from 1, lines end with LF.
OrderedJson SnippetAsJson(const Snippet& snippet, std::size_t position, const CodePage& page);

/// The line, from 1, of the first member of that name; 1 if it is not found.
std::size_t LineOfKey(std::string_view bytes, const std::string& key);

}  // namespace snip
