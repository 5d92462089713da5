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

/// Identifies a row, so that it can be selected again after another search.
struct RowIdentity {
  std::string library{};  ///< The path of a snippet's library.
  std::string text{};     ///< A snippet's name, or a tag.
  std::size_t at = 0;     ///< The snippet in its library, or where a place begins.
  friend bool operator==(const RowIdentity&, const RowIdentity&) = default;
};

/// The rows of the palette's list: first the places in the shown code, then the snippets that were found. A
/// row is made when it is asked for, because there may be many. Rows count from 0.
class PaletteRows {
 public:
  explicit PaletteRows(const Folding& folding) : finder_(folding) {}

  Finder& finder() { return finder_; }
  const Finder& finder() const { return finder_; }

  /// Searches the libraries, and also the code, if there is one.
  void Search(const std::string& text, const std::optional<std::string>& code);
  /// Lists the tags of all libraries instead of search results.
  void ListTags();
  bool listsTags() const { return listsTags_; }

  int count() const;
  PaletteRow Row(int row) const;
  /// The next row after `row` in the direction of `step`, or `row` itself at the end. Skips headings.
  int Step(int row, int step) const;
  /// The first row that is not a heading, or -1.
  int First() const { return count() == 0 ? -1 : Step(-1, 1); }

  // The content of a row; nothing for a row of another kind.
  std::optional<Found> FoundAt(int row) const;
  std::optional<TextRange> PlaceAt(int row) const;  ///< In the code that was searched first.
  std::string TagAt(int row) const;                 ///< Without its "#".
  RowIdentity IdentityOf(int row) const;
  /// The row of that identity, or of a snippet of that name if it has moved in its library, or -1.
  int RowOf(const RowIdentity& wanted) const;
  /// The code that was searched first.
  const std::string& code() const { return code_; }

 private:
  int PlaceRows() const;  ///< The rows of the first group and both headings.
  bool IsHeading(int row) const;
  PaletteRow FoundRow(const Found& found) const;

  Finder finder_;
  std::string code_;
  std::vector<TextRange> places_;  ///< In the code, the first match of each line.
  std::vector<TagCount> tags_;
  bool listsTags_ = false;
};

}  // namespace snip
