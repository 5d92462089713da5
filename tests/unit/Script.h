#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <random>
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

/// Plays a file of scripts/. A line "[a case's name] what it is about" makes a subject of the second part;
/// every other line is commands for it with ";" between them, and what follows a "->" is what the last of
/// them has to answer, going on in the next line after a ",". A line that begins with "#" is a comment.
template <class Subject>
void PlayScripts(const std::string& file) {
  std::ifstream in(std::string(SNIPSTORE_SCRIPTS "/") + file);
  std::optional<Subject> subject;
  std::string name;
  std::string line;
  for (std::string part; std::getline(in, part);) {
    if (part.ends_with('\r')) part.pop_back();
    if (part.empty() || part.starts_with('#')) continue;
    if (part.starts_with('[')) {
      const std::size_t end = part.find(']');
      name = part.substr(1, end - 1);
      subject.emplace(Trimmed(part.substr(end + 1)));
      continue;
    }
    line += line.empty() ? part : ' ' + Trimmed(part);
    if (line.ends_with(',')) continue;
    const std::size_t arrow = line.find("->");
    std::string answer;
    for (const std::string& command : Split(line.substr(0, arrow), ';')) answer = subject.value()(command);
    if (arrow != std::string::npos) {
      EXPECT_EQ(Trimmed(answer), Trimmed(line.substr(arrow + 2))) << name << ": " << line;
    }
    line.clear();
  }
  EXPECT_TRUE(subject.has_value() && line.empty()) << file << " is missing or ends in mid-line";
}

inline std::string Joined(const std::vector<std::string>& parts) {
  std::string all;
  for (const std::string& part : parts) all += (all.empty() ? "" : ", ") + part;
  return all;
}

/// What random walks decide by.
class Chance {
 protected:
  explicit Chance(unsigned seed) : random_(seed) {}
  /// From 0 up to, not including, `end`.
  int Any(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  bool Once(int in) { return Any(in) == 0; }
  std::string OneOf(const std::vector<std::string>& choices) {
    return choices[static_cast<std::size_t>(Any(static_cast<int>(choices.size())))];
  }

 private:
  std::mt19937 random_;
};

}  // namespace snip::test
