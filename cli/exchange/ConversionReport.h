#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace snip {

/// Why a snippet could not be carried over unchanged.
enum class Loss {
  // The snippet was skipped:
  SameName,       ///< The library has another snippet of that name.
  NotHeld,        ///< A library cannot hold it.
  Template,       ///< It has placeholders, and --templates was not given.
  OtherLanguage,  ///< It is not Visual Basic.
  NoCode,         ///< It has no code.
  RepeatedKey,    ///< The file has the same name again later.
  NoRoom,         ///< The library is full.
  // The snippet was carried over, but:
  Characters,      ///< Characters that the target cannot represent became "?".
  Attachment,      ///< The target has no place for its attachment's path.
  LineEndings,     ///< Unusual line endings became usual ones.
  TrailingSpaces,  ///< Trailing spaces of lines are not kept.
  OtherFields,     ///< A library has no place for its other properties.
  Placeholders,    ///< Placeholders became their default texts.
  Renamed,         ///< The name was changed.
};

struct LossNote {
  Loss loss = Loss::NotHeld;
  std::string snippet;    ///< Its name, UTF-8.
  std::size_t count = 1;  ///< Of what was lost: characters, lines...
  std::string detail;     ///< UTF-8; may be empty.
};

/// The result of converting snippets between a library and another format.
class ConversionReport {
 public:
  std::size_t carried = 0;       ///< Snippets that were carried over, with or without a loss.
  std::size_t alreadyThere = 0;  ///< Snippets that the library had already, the same in all texts.

  /// Notes a loss, unless the count is 0.
  void Note(Loss loss, const std::string& snippet, std::size_t count = 1, std::string detail = {});

  const std::vector<LossNote>& notes() const { return notes_; }
  std::size_t CountOf(Loss loss) const;
  std::size_t leftOut() const;

 private:
  std::vector<LossNote> notes_;
};

/// Whether a snippet with that loss was skipped.
bool IsLeftOut(Loss loss);
/// A word for scripts, such as "same-name".
std::string LossKey(Loss loss);
/// One note as a sentence for people, without a full stop.
std::string Describe(const LossNote& note);

}  // namespace snip
