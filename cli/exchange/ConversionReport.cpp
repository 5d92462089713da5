#include "cli/exchange/ConversionReport.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace snip {
namespace {

struct LossWords {
  std::string_view key;
  std::string_view sentence;  ///< With "#" for the count.
};

// In the order of Loss.
constexpr std::array<LossWords, 14> kWords = {{
    {"same-name", "skipped: the library has another snippet of that name"},
    {"not-held", "skipped"},
    {"template", "skipped: it has placeholders; choose with --templates"},
    {"other-language", "skipped: it is not Visual Basic"},
    {"no-code", "skipped: it has no code"},
    {"repeated-key", "skipped: the file has that name again further down"},
    {"no-room", "skipped: a library can hold 32,767 snippets"},
    {"characters", "characters the target cannot represent: #"},
    {"attachment", "the target has no place for its attachment"},
    {"line-ends", "unusual line endings replaced: #"},
    {"line-end-blanks", "lines whose trailing spaces are not kept: #"},
    {"other-fields", "properties that a library has no place for: #"},
    {"placeholders", "placeholders replaced by their default texts: #"},
    {"renamed", "renamed"},
}};

const LossWords& WordsOf(Loss loss) {
  return kWords.at(static_cast<std::size_t>(loss));
}

}  // namespace

void ConversionReport::Note(Loss loss, const std::string& snippet, std::size_t count, std::string detail) {
  if (count > 0)
    notes_.push_back({.loss = loss, .snippet = snippet, .count = count, .detail = std::move(detail)});
}

std::size_t ConversionReport::CountOf(Loss loss) const {
  std::size_t count = 0;
  for (const LossNote& note : notes_) count += note.loss == loss ? note.count : 0;
  return count;
}

std::size_t ConversionReport::leftOut() const {
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
