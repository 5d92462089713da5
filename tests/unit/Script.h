#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace snip::test {

inline std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

inline std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(Trimmed(part));
  return parts;
}

/// Commands with what they lead to, for tables of cases. On each line stand commands with ";" between them;
/// what follows a "->" is what the last of them has to answer, going on in the next line after a ",".
struct ScriptCase {
  const char* name;
  const char* subject;  ///< What the commands are for, in the test's own notation.
  const char* script;
};

inline void PlayScript(const ScriptCase& script, const std::function<std::string(const std::string&)>& run) {
  std::string line;
  for (const std::string& part : Split(script.script, '\n')) {
    line += line.empty() ? part : ' ' + part;
    if (line.ends_with(',')) continue;
    const std::size_t arrow = line.find("->");
    std::string answer;
    for (const std::string& command : Split(line.substr(0, arrow), ';')) answer = run(command);
    if (arrow != std::string::npos) {
      EXPECT_EQ(answer, Trimmed(line.substr(arrow + 2))) << script.name << ": " << line;
    }
    line.clear();
  }
}

inline std::string Joined(const std::vector<std::string>& parts) {
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : ", ") + part;
  return all;
}

}  // namespace snip::test
