#pragma once

#include <optional>
#include <string>
#include <vector>

#include "find/LibraryReading.h"
#include "find/NameMatch.h"
#include "ui/commandbar/PropertyBag.h"
#include "ui/find/HotKey.h"

namespace snip {

/// A snippet to go to.
struct FindDestination {
  NamedLibrary library;
  std::size_t snippet = 0;  ///< Where it was; it may have moved in the library since.
  std::string name;
};

/// The result of going to a snippet.
enum class Went {
  There,
  Nowhere,  ///< The window still shows what it did, and has told the user why; or it is closed.
  Missing,  ///< The snippet is no longer in the library, or the library cannot be read.
};

/// What `FoundWalk` needs from the window that shows the matches.
class WalkTarget {
 public:
  virtual ~WalkTarget() = default;

  /// The code that is shown; nothing without a snippet.
  virtual std::optional<std::string> ShownCode() = 0;
  /// Shows a snippet, opening its library as the chooser does.
  virtual Went GoTo(const FindDestination& destination) = 0;
  /// Selects a part of the code that is shown; begins and ends are bytes.
  virtual void SelectInCode(TextRange place) = 0;
  /// What is selected there, in bytes.
  virtual TextRange SelectedInCode() = 0;
};

/// What the palette needs from its main window.
class FindTarget : public WalkTarget {
 public:
  struct Open {
    NamedLibrary library;
    const std::vector<Snippet>* snippets = nullptr;
  };
  /// The open library, including unfinished edits; nothing if no library is open.
  virtual std::optional<Open> OpenLibrary() = 0;
  /// Its snippet whose code is shown, if any.
  virtual std::optional<std::uint32_t> ShownSnippet() = 0;
  /// The other libraries, in the order of the chooser.
  virtual std::vector<NamedLibrary> OtherLibraries() = 0;
  virtual FontProperty CodeFont() const = 0;
  virtual bool ColoursCode() const = 0;

  /// Sends a snippet where the output button would.
  virtual void Output(const SearchedLibrary& library, std::size_t snippet) = 0;
  virtual bool Copy(const std::string& text) = 0;
  /// Brings the program over which the palette was shown back to the front, if there was one.
  virtual void RestoreForeground() = 0;

  /// The system-wide key that shows the palette.
  virtual HotKey SystemKey() const = 0;
  /// Changes that key; an empty one removes it. Returns why that failed, as a sentence, or an empty text.
  virtual std::string UseSystemKey(HotKey key) = 0;
};

}  // namespace snip
