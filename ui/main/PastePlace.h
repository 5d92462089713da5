#pragma once

#include <string>

#include "library/CodeFields.h"
#include "library/Library.h"
#include "ui/main/HostEnvironment.h"

namespace snip {

/// The code with its fields filled from `known` and, where that has no text, from `entered`. Fields without a
/// text are left out.
FilledCode FillFrom(const std::string& code, const FieldTexts& known, const FieldTexts& entered);

/// Where code is pasted in a code window, and what the environment knows there.
struct PastePlace {
  HostSelection selection;
  std::string indentation;  ///< Of the line on which the selection starts.
  FieldTexts answers;       ///< Texts of the code's fields that the user is not asked for.

  friend bool operator==(const PastePlace&, const PastePlace&) = default;
};

/// Asks the environment for the place in `pane`, and for the fields of `code` that it can answer.
PastePlace PlaceFor(HostEnvironment& host, HostCodePane& pane, const std::string& code);

/// Inserts code before the line on which the selection starts, with that line's indentation, and moves the
/// caret to the code's caret field. Deletes the selected lines if the code has a field for them.
void PasteAt(HostCodePane& pane, const PastePlace& place, const FilledCode& code);

/// The selected code, or without a selection the procedure at the caret: without the indentation that its
/// lines share and without empty lines at its ends. Empty when there is none.
std::string CodeAtCaret(HostCodePane& pane);

/// A new snippet with that code, named after what the code declares, or after its first line.
Snippet SnippetOfCode(std::string code);

}  // namespace snip
