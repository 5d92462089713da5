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
/// For writing: keeps the order of members, but is slow to look in.
using OrderedJson = nlohmann::ordered_json;

/// The member names of a file's outermost object.
struct OutermostKeys {
  std::vector<std::string> inOrder;  ///< In the file's order, none twice.
  std::set<std::string> repeated;    ///< Those that are there several times; the last of each counts.
};

/// Reads JSON with comments and with commas behind last elements, as editors' settings have them. Throws
/// Malformed.
Json ReadJsonWithComments(std::string_view bytes);
Json ReadJsonWithComments(std::string_view bytes, OutermostKeys& keys);

/// A snippet for scripts; `position` counts from 1, lines end with LF.
OrderedJson SnippetAsJson(const Snippet& snippet, std::size_t position, const CodePage& page);

/// The line, from 1, on which a member of that name is first written; 1 where it is not found.
std::size_t LineOfKey(std::string_view bytes, const std::string& key);

}  // namespace snip
