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

/// What became of the wish to go to a snippet.
enum class Went {
  There,
  Nowhere,  ///< The window stays at what it shows, which is told there, or is gone.
  Missing,  ///< The snippet is not in the library any more, or the library is none.
};

/// What a walk from one place that was found to the next asks of the window that shows them.
class WalkTarget {
 public:
  virtual ~WalkTarget() = default;

  /// The code that is shown; none without a snippet.
  virtual std::optional<std::string> ShownCode() = 0;
  /// Shows a snippet, opening its library as the chooser does.
  virtual Went GoTo(const FindDestination& destination) = 0;
  /// Selects a part of the code that is shown; begins and ends are bytes.
  virtual void SelectInCode(TextRange place) = 0;
  /// The end of what is selected there, in bytes.
  virtual TextRange SelectedInCode() = 0;
};

/// What the palette asks of the window that it belongs to.
class FindTarget : public WalkTarget {
 public:
  struct Open {
    NamedLibrary library;
    const std::vector<Snippet>* snippets = nullptr;
  };
  /// The library that is open, with what is being edited taken in; none if none is shown.
  virtual std::optional<Open> OpenLibrary() = 0;
  /// The snippet of it whose code is shown, if there is one.
  virtual std::optional<std::uint32_t> ShownSnippet() = 0;
  /// All that can be chosen besides, in their order.
  virtual std::vector<NamedLibrary> OtherLibraries() = 0;
  virtual FontProperty CodeFont() const = 0;
  virtual bool ColoursCode() const = 0;

  /// Does with a snippet what the output button shows.
  virtual void Output(const SearchedLibrary& library, std::size_t snippet) = 0;
  virtual bool Copy(const std::string& text) = 0;
  /// Brings the program to the front again that the palette was shown over, if it was.
  virtual void GiveFrontBack() = 0;

  /// The key that shows the palette over any program.
  virtual HotKey SystemKey() const = 0;
  /// Makes another key that one, or none for an empty one. Says why not, in a sentence; nothing if it works.
  virtual std::string UseSystemKey(HotKey key) = 0;
};

}  // namespace snip
