#include "tests/fuzz/FuzzTargets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace snip::test {
namespace {

std::vector<std::string> FirstInputs(const FuzzTarget& target) {
  std::vector<std::string> inputs;
  for (const auto& file :
       std::filesystem::directory_iterator(std::filesystem::path(SNIPSTORE_FUZZ_CORPUS) / target.name)) {
    std::ifstream bytes(file.path(), std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(bytes), std::istreambuf_iterator<char>());
  }
  return inputs;
}

/// Changes inputs as a damaged disk, another program or an attacker would; the same from run to run.
class Mutator {
 public:
  explicit Mutator(const std::vector<std::string>& inputs) : inputs_(inputs) {}

  std::string Next() {
    std::string input = inputs_[Below(inputs_.size())];
    for (std::size_t changes = 1 + Below(4); changes > 0; --changes) Change(input);
    return input;
  }

 private:
  std::size_t Below(std::size_t end) { return random_() % end; }

  void Change(std::string& input) {
    const std::size_t place = Below(input.size() + 1);
    const std::string& other = inputs_[Below(inputs_.size())];
    switch (Below(5)) {
      case 0:
        input.resize(place);
        return;
      case 1:
        input.erase(place, 1 + Below(8));
        return;
      case 2:
        if (place < input.size()) input[place] = static_cast<char>(Below(256));
        return;
      case 3:
        input.insert(place, std::vector<std::string>{"\r", "\n", "\r\n", " ", std::string(1, '\0'), "9",
                                                     "(,)", "(.)", "...", "|"}
                                .at(Below(10)));
        return;
      default:
        input.insert(place, other.substr(Below(other.size() + 1), Below(20)));
    }
  }

  const std::vector<std::string>& inputs_;
  std::mt19937 random_{19970319};
};

class FuzzTargetsTest : public testing::TestWithParam<FuzzTarget> {};

TEST_P(FuzzTargetsTest, HoldsForTheFirstInputsAndWhatIsMadeOfThem) {
  constexpr int mutations = 10000;
  const std::vector<std::string> inputs = FirstInputs(GetParam());
  ASSERT_GE(inputs.size(), 3U);
  Mutator mutator(inputs);
  for (std::size_t i = 0; i < inputs.size() + mutations; ++i) {
    const std::string input = i < inputs.size() ? inputs[i] : mutator.Next();
    ASSERT_NO_THROW(GetParam().run(input)) << testing::PrintToString(input);
  }
}

INSTANTIATE_TEST_SUITE_P(All, FuzzTargetsTest, testing::ValuesIn(FuzzTargets().begin(), FuzzTargets().end()),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace snip::test
