#pragma once

#include <optional>
#include <string>
#include <vector>

#include "find/Finder.h"
#include "find/Tags.h"

namespace snip {

/// A row of the palette's list as it is shown: texts on one line, of which parts are marked.
struct PaletteRow {
  bool heading = false;
  std::string text{};  ///< A snippet's name, a line of code or a tag.
  std::vector<TextRange> marks{};
  std::string behind{};   ///< What follows the text unmarked: " - library".
  std::string place{};    ///< Where it was found, in words: "the code, line 3".
  std::string context{};  ///< The line that it was found in.
  std::vector<TextRange> contextMarks{};

  /// The row as it is read out.
  std::string Spoken() const { return text + behind + (place.empty() ? "" : ", in " + place); }
};

/// What a row stands for, by which it is found again after another search.
struct RowIdentity {
  std::string library{};  ///< The path of a snippet's library.
  std::string text{};     ///< A snippet's name, or a tag.
  std::size_t at = 0;     ///< The snippet in its library, or where a place begins.
  friend bool operator==(const RowIdentity&, const RowIdentity&) = default;
};

/// The rows of the palette's list: what was found, after the places in the code that the user comes from.
/// Made when they are asked for, since there may be many. Counted from 0.
class PaletteRows {
 public:
  explicit PaletteRows(const Folding& folding) : finder_(folding) {}

  Finder& finder() { return finder_; }
  const Finder& finder() const { return finder_; }

  /// Searches the libraries, and the code first, if there is one.
  void Search(const std::string& text, const std::optional<std::string>& code);
  /// Lists the tags of all libraries instead.
  void ListTags();
  bool listsTags() const { return listsTags_; }

  int count() const;
  PaletteRow Row(int row) const;
  /// The row next to `row` in the direction of `step`, or that one itself at the end; headings are passed
  /// over.
  int Step(int row, int step) const;
  /// The first row that is no heading; -1 if there is none.
  int First() const { return count() == 0 ? -1 : Step(-1, 1); }

  // What a row stands for; nothing for a row of another kind.
  std::optional<Found> FoundAt(int row) const;
  std::optional<TextRange> PlaceAt(int row) const;  ///< In the code that was searched first.
  std::string TagAt(int row) const;                 ///< Without its "#".
  RowIdentity IdentityOf(int row) const;
  /// The row of that identity, or of a snippet of that name if it has moved in its library; -1 if there is
  /// none.
  int RowOf(const RowIdentity& wanted) const;
  /// The code that was searched first.
  const std::string& code() const { return code_; }

 private:
  int PlaceRows() const;  ///< Of the first group with its heading, and the heading of the second.
  bool IsHeading(int row) const;
  PaletteRow FoundRow(const Found& found) const;

  Finder finder_;
  std::string code_;
  std::vector<TextRange> places_;  ///< In the code, the first of each line.
  std::vector<TagCount> tags_;
  bool listsTags_ = false;
};

}  // namespace snip
