#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace snip {

/// Makes names unique: appends a number to a name that is taken.
class UniqueNames {
 public:
  /// Reserves a name, so that no other name becomes it by a number.
  void Reserve(const std::string& key) { taken_.emplace(key, 0); }

  /// `keyOf` returns the part of a name that has to be unique.
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
  std::map<std::string, std::size_t> taken_;  ///< With the last number used; 0 for a reserved name.
};

}  // namespace snip
