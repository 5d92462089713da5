#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

using Json = nlohmann::json;
/// For writing: keeps the order of members, but is slow to look in.
using OrderedJson = nlohmann::ordered_json;

struct ReadJson {
  Json value;
  std::vector<std::string> keys;       ///< Of the outermost object, in the file's order, none twice.
  std::set<std::string> repeatedKeys;  ///< Those that stand there several times; the last of each counts.
};

/// Reads JSON with comments and with commas behind last elements, as editors' settings have them. Throws
/// Malformed.
ReadJson ReadJsonWithComments(std::string_view bytes);

/// The line, from 1, on which a member of that name is first written; 1 where it is not found.
std::size_t LineOfKey(std::string_view bytes, const std::string& key);

}  // namespace snip
