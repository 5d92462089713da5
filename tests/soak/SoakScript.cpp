#include "tests/soak/SoakScript.h"

#include <array>
#include <fstream>
#include <functional>
#include <iomanip>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace snip::test {
namespace {

constexpr std::array kTexts{"x",      "Dim a", "\xE9",  " ",     "^",         "two words ",
                            "  'c^ ", "(,)",   "\"s\"", "^(.)^", "Stop^^End", "^...^"};
constexpr std::array kNames{
    "Alpha", "alpha",     "Beta",      "New Snippet",       "...", " lead", "trail ", "", "(,)",
    "z",     "\xC9t\xE9", "\xE9T\xC9", "A rather long name"};
constexpr std::array kLibraries{"Alpha",
                                "Beta two",
                                "Gamma",
                                "a|b",
                                "Delta.v2",
                                "Zeta",
                                "",
                                "\xDC"
                                "ber"};

/// A line of actions.txt with its letters and signs replaced.
std::string Filled(const std::string& line, std::mt19937& random) {
  // The distributions of the library differ between compilers; remainders do not.
  const auto number = [&](unsigned below) { return std::to_string(random() % below); };
  const auto quoted = [&](const auto& pool) {
    std::ostringstream text;
    text << std::quoted(std::string(pool[random() % pool.size()]));
    return text.str();
  };
  const std::map<std::string, std::function<std::string()>> signs{
      {"#", [&] { return number(12); }},     {"@", [&] { return number(50); }},
      {"&", [&] { return number(400); }},    {"T", [&] { return quoted(kTexts); }},
      {"N", [&] { return quoted(kNames); }}, {"L", [&] { return quoted(kLibraries); }}};
  std::istringstream words(line);
  std::string filled;
  for (std::string word; words >> word;) {
    const auto sign = signs.find(word);
    filled += (filled.empty() ? "" : " ") + (sign == signs.end() ? word : sign->second());
  }
  return filled + (random() % 3 == 0 ? " / no" : "");
}

}  // namespace

Script RandomScript(std::size_t lines, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<std::string> actions;  // each as often as it comes
  for (const std::string& action : ReadScript(SNIPSTORE_ACTIONS)) {
    const std::size_t end = action.find(' ');
    actions.insert(actions.end(), std::stoul(action), action.substr(end + 1));
  }
  Script script{"files"};
  while (script.size() <= lines) {
    const std::string line = Filled(actions[random() % actions.size()], random);
    const bool ends = line.starts_with("close") || line.starts_with("kill");
    if (!ends || script.size() * 5 < lines * 2) script.push_back(line);
  }
  return script;
}

Script ReadScript(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("no script " + path);
  Script script;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line.front() != '#') script.push_back(line);
  }
  return script;
}

}  // namespace snip::test
