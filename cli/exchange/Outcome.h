#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace snip {

/// What could not be carried over as it was.
enum class Loss {
  // The snippet was left out:
  SameName,       ///< The library has another of that name.
  NotHeld,        ///< A library cannot hold it.
  Template,       ///< It has placeholders, and nobody said what to do with them.
  OtherLanguage,  ///< It is not Visual Basic.
  NoCode,         ///< It is no snippet: there is no code in it.
  RepeatedKey,    ///< The file has the name again further down, which counts.
  NoRoom,         ///< The library is full.
  // The snippet was carried over, but:
  Characters,     ///< Characters that the other side does not have became "?".
  Attachment,     ///< The path of its attachment has no place.
  LineEnds,       ///< A line end of another kind became an ordinary one.
  LineEndBlanks,  ///< Blanks at line ends are not kept.
  OtherFields,    ///< It has properties that a library has no place for.
  Placeholders,   ///< Placeholders became their default texts.
  Renamed,        ///< The name had to be made another.
};

struct LossNote {
  Loss loss = Loss::NotHeld;
  std::string snippet;    ///< Its name, UTF-8.
  std::size_t count = 1;  ///< Of what was lost: characters, lines...
  std::string detail;     ///< UTF-8; may be empty.
};

/// What came of carrying snippets from one place to another.
class Outcome {
 public:
  std::size_t carried = 0;       ///< Snippets that were carried over, with or without a loss.
  std::size_t alreadyThere = 0;  ///< Snippets that the library had, the same in all texts.

  /// Notes a loss; none for a count of 0.
  void Note(Loss loss, const std::string& snippet, std::size_t count = 1, std::string detail = {});

  const std::vector<LossNote>& notes() const { return notes_; }
  std::size_t CountOf(Loss loss) const;
  std::size_t leftOut() const;
  bool LosesText() const { return CountOf(Loss::Characters) > 0; }

 private:
  std::vector<LossNote> notes_;
};

/// Whether a snippet with that loss was left out.
bool IsLeftOut(Loss loss);
/// A word for scripts, such as "same-name".
std::string LossKey(Loss loss);
/// One note as a sentence for people, without a full stop.
std::string Describe(const LossNote& note);

}  // namespace snip
