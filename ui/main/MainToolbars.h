#pragma once

#include "platform/Geometry.h"
#include "ui/commandbar/BnCommandBar.h"

namespace snip {

/// The buttons of the main toolbar `cmd`, by their index; the numbers left out are separators.
namespace MainButton {
enum : int {
  kNewLibrary = 0,
  kSaveLibrary = 1,
  kRenameLibrary = 2,
  kOutput = 4,
  kNewSnippet = 6,
  kEditSnippet = 7,
  kDeleteSnippet = 8,
  kSettings = 10,
  kKeepOnTop = 11,
  kAbout = 13,
  kWebPage = 14,
};
}  // namespace MainButton

/// The buttons of the editor toolbar `cmdEdit`.
namespace EditButton {
enum : int { kCommit = 0, kSyntaxHighlighting = 2 };
}  // namespace EditButton

/// What the output button can do, in the order of its menu. Its caption is what tells its mode.
struct OutputMode {
  const char* caption;
  int picture;  ///< Resource number.
};
inline constexpr const char* kSaveLibrary = "Save Library";
inline constexpr const char* kPasteToCodeWindow = "Paste to Current Code Window";
inline constexpr const char* kCopyToClipboard = "Copy to Clipboard";
inline constexpr const char* kCreateNewModule = "Create New Module (All Snippets)";
/// The mode of a place in the menu; a place behind the last stands for the last.
const OutputMode& OutputModeAt(int index);

/// Pictures are brought to `pictureSize`, in pixels.
void FillMainToolbar(BnCommandBar& cmd, Size pictureSize);
void FillEditToolbar(BnCommandBar& cmdEdit, Size pictureSize);

/// Greys what works on the library, or makes it available again.
void GrayLibraryButtons(BnCommandBar& cmd, bool grayed);

}  // namespace snip
