#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace snip {

/// Gives out names none of which is there twice: a name that is taken gets a number behind it.
class UniqueNames {
 public:
  /// Keeps a name from being made out of another and a number.
  void Reserve(const std::string& key) { taken_.emplace(key, 0); }

  /// `keyOf` makes of a name what must be different.
  template <class KeyOf>
  std::string Take(const std::string& name, KeyOf keyOf) {
    std::size_t& number = taken_[keyOf(name)];
    std::string given = name;
    if (number++ > 0) {
      do {
        given = name + " (" + std::to_string(number) + ")";
      } while (taken_.contains(keyOf(given)) && ++number > 0);
    }
    taken_.emplace(keyOf(given), 1);
    return given;
  }

 private:
  std::map<std::string, std::size_t> taken_;  ///< And the number given last; 0 for a name not given out yet.
};

}  // namespace snip
