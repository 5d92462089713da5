#include "cli/exchange/Outcome.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace snip {
namespace {

struct LossWords {
  std::string_view key;
  std::string_view sentence;  ///< "#" stands for the count.
};

// In the order of Loss.
constexpr std::array<LossWords, 14> kWords = {{
    {"same-name", "left out: the library has another snippet of that name"},
    {"not-held", "left out"},
    {"template", "left out: it has placeholders; say what becomes of them with --templates"},
    {"other-language", "left out: it is not Visual Basic"},
    {"no-code", "left out: there is no code in it"},
    {"repeated-key", "left out: the file has that name again further down"},
    {"no-room", "left out: a library holds 32,767 snippets"},
    {"characters", "characters that the other side does not have: #"},
    {"attachment", "its attachment has no place"},
    {"line-ends", "line ends of another kind that became ordinary ones: #"},
    {"line-end-blanks", "lines with blanks at the end, which are not kept: #"},
    {"other-fields", "properties without a place in a library: #"},
    {"placeholders", "placeholders that became their default texts: #"},
    {"renamed", "renamed"},
}};

const LossWords& WordsOf(Loss loss) {
  return kWords.at(static_cast<std::size_t>(loss));
}

}  // namespace

void Outcome::Note(Loss loss, const std::string& snippet, std::size_t count, std::string detail) {
  if (count > 0)
    notes_.push_back({.loss = loss, .snippet = snippet, .count = count, .detail = std::move(detail)});
}

std::size_t Outcome::CountOf(Loss loss) const {
  std::size_t count = 0;
  for (const LossNote& note : notes_) count += note.loss == loss ? note.count : 0;
  return count;
}

std::size_t Outcome::leftOut() const {
  return static_cast<std::size_t>(
      std::count_if(notes_.begin(), notes_.end(), [](const LossNote& note) { return IsLeftOut(note.loss); }));
}

bool IsLeftOut(Loss loss) {
  return loss < Loss::Characters;
}

std::string LossKey(Loss loss) {
  return std::string(WordsOf(loss).key);
}

std::string Describe(const LossNote& note) {
  std::string sentence(WordsOf(note.loss).sentence);
  if (const auto number = sentence.find('#'); number != std::string::npos) {
    sentence.replace(number, 1, std::to_string(note.count));
  }
  return "\"" + note.snippet + "\": " + sentence + (note.detail.empty() ? "" : ": " + note.detail);
}

}  // namespace snip
