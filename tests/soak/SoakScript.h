#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace snip::test {

/// One thing that a user does in each line: a word, and what it needs. A text is put into quotes when it has
/// blanks; "^" in it is a line end. A line that nothing can be done about as things are does nothing, so that
/// a script can be cut anywhere. Rows count round: behind the last comes the first again.
///
///     row 2                   clicks that row, from 0
///     rename 2                double clicks it
///     click code              clicks the field: code, description
///     edit                    double clicks the code
///     code 3 5 "x"            replaces what is between two places of the code; all of it without places
///     cut 3 5, paste 3 5, erase 3 5    the same, of the code
///     describe 3 5 "x"        of the description
///     name "x", filename "x"  types over the name in the box that is open
///     key Ctrl+S              presses a key
///     button "Save Library"
///     menu "Rename Snippet"   opens the list's menu for the item; leaves it by Escape when there is none
///     right row 2, arrow, attachment    clicks for a menu: right space, right code, the output button's
///     item "Rename Snippet"   clicks the item of the menu that is open
///     type "x"                types wherever the focus is
///     other                   goes to another window, and back
///     library "x"             chooses an entry, by its text or its number
///     new "x"                 makes a library; cancels when there is no name
///     browse "x"              opens a library of another folder; cancels when there is no name
///     split 0 40, size 500 300, minimise, maximise
///     close, kill             and starts the program again
///
///     saved "x", libraries, clipboard    look at a file, the list of libraries, the clipboard
///
/// Behind " -> " is what is to be seen after the line: the rows, the selected one marked; the code, the
/// description, the boxes for names, the library, where the focus is; what goes on, the menu that is open and
/// its grey items; the messages and dialogs that came, which are cancelled. At the end of a line, "/ no" is
/// the answer to the questions that come of it. The lines `file "x" "a" "b"` and `elsewhere "x" "a"` at the
/// start of a script make libraries of snippets with these names, `files` some odd ones.
using Script = std::vector<std::string>;

/// The same script for the same seed. The program is ended and started again only within the first two
/// fifths, so that the rest is the life of one process.
Script RandomScript(std::size_t lines, std::uint32_t seed);

/// The lines of a file that are neither blank nor begin with "#".
Script ReadScript(const std::string& path);

}  // namespace snip::test
