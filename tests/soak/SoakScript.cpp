#include "tests/soak/SoakScript.h"

#include <array>
#include <fstream>
#include <iomanip>
#include <random>
#include <sstream>
#include <stdexcept>

namespace snip::test {
namespace {

struct Template {
  unsigned weight;
  /// "#" is a number below 12, "@" one below 50, "&" one below 400; "T", "N" and "L" a text, a name and a
  /// library's name.
  const char* line;
};

constexpr std::array kTemplates{
    Template{120, "row #"},
    Template{10, "rename #"},
    Template{10, "click code"},
    Template{10, "click description"},
    Template{20, "edit"},
    Template{55, "code @ @ T"},
    Template{55, "code @ 0 T"},
    Template{20, "erase @ @"},
    Template{10, "erase @ 0"},
    Template{15, "cut @ @"},
    Template{15, "paste @ @"},
    Template{70, "describe @ 0 T"},
    Template{10, "describe \"\""},
    Template{60, "name N"},
    Template{20, "filename L"},
    Template{20, "key Up"},
    Template{20, "key Down"},
    Template{60, "key Enter"},
    Template{25, "key Escape"},
    Template{25, "key F2"},
    Template{10, "key Delete"},
    Template{30, "key Ctrl+E"},
    Template{30, "button \"Edit Snippet\""},
    Template{15, "key Ctrl+K"},
    Template{15, "button Commit"},
    Template{25, "key Ctrl+N"},
    Template{20, "button \"New Snippet\""},
    Template{15, "button \"Delete Snippet\""},
    Template{10, "key Ctrl+D"},
    Template{20, "key Ctrl+S"},
    Template{20, "button \"Save Library\""},
    Template{15, "key Ctrl+Shift+C"},
    Template{8, "key Shift+F2"},
    Template{8, "button \"Rename Library\""},
    Template{8, "button \"Keep on Top\""},
    Template{8, "button \"Syntax Highlighting\""},
    Template{35, "library #"},
    Template{8, "new L"},
    Template{15, "split 0 &"},
    Template{15, "split 1 &"},
    Template{10, "size & &"},
    Template{5, "minimise"},
    Template{5, "maximise"},
    Template{2, "menu \"\""},
    Template{2, "menu \"Copy to Clipboard\""},
    Template{2, "menu \"Edit Snippet\""},
    Template{2, "menu \"Rename Snippet\""},
    Template{7, "close"},
    Template{3, "kill"},
};

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

std::string Filled(const char* line, std::mt19937& random) {
  // The distributions of the library differ between compilers; remainders do not.
  const auto number = [&](unsigned below) { return std::to_string(random() % below); };
  const auto quoted = [&](const auto& pool) {
    std::ostringstream text;
    text << std::quoted(std::string(pool[random() % pool.size()]));
    return text.str();
  };
  std::string filled;
  for (bool inside = false; *line != '\0'; ++line) {
    const bool isWord =
        !filled.empty() && filled.back() == ' ' && !inside && (line[1] == ' ' || line[1] == '\0');
    if (*line == '"') inside = !inside;
    if (isWord && *line == '#') {
      filled += number(12);
    } else if (isWord && *line == '@') {
      filled += number(50);
    } else if (isWord && *line == '&') {
      filled += number(400);
    } else if (isWord && *line == 'T') {
      filled += quoted(kTexts);
    } else if (isWord && *line == 'N') {
      filled += quoted(kNames);
    } else if (isWord && *line == 'L') {
      filled += quoted(kLibraries);
    } else {
      filled += *line;
    }
  }
  return filled + (random() % 3 == 0 ? " / no" : "");
}

}  // namespace

Script RandomScript(std::size_t lines, std::uint32_t seed) {
  std::mt19937 random(seed);
  unsigned total = 0;
  for (const Template& entry : kTemplates) total += entry.weight;
  Script script{"files"};
  while (script.size() <= lines) {
    auto place = static_cast<unsigned>(random() % total);
    const Template* chosen = kTemplates.data();
    for (; place >= chosen->weight; ++chosen) place -= chosen->weight;
    const std::string line = Filled(chosen->line, random);
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
