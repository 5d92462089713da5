#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace snip::test {

enum class ActionKind {
  SelectRow,
  ClickRow,
  ArrowKey,
  EditCode,
  DoubleClickCode,
  Commit,
  TypeCode,
  EraseCode,
  CutCode,
  PasteCode,
  FocusCode,
  FocusDescription,
  TypeDescription,
  EmptyDescription,
  StartRename,
  TypeName,
  AcceptName,
  CancelName,
  NewSnippet,
  DeleteSnippet,
  Save,
  SwitchLibrary,
  NewLibrary,
  RenameLibrary,
  TypeFileName,
  AcceptFileName,
  CancelFileName,
  CopyCode,
  KeepOnTop,
  Colouring,
  DragSplitter,
  ResizeWindow,
  Minimise,
  Maximise,
  OutputMenu,
  AttachmentMenu,
  SnippetsMenu,
  Restart,
  Kill,
};

/// One thing that a user does. The two numbers choose the row, the text and the answers; what they come to
/// depends on the state, so that any action makes sense in any state and a script can be cut anywhere.
struct Action {
  ActionKind kind{};
  bool real = false;  ///< By real input, where the kind knows it, not by messages.
  std::uint32_t a = 0;
  std::uint32_t b = 0;
};

/// The same script for the same seed. The program is ended and started again only within the first two
/// fifths, so that the rest is the life of one process.
std::vector<Action> RandomActions(std::size_t count, std::uint32_t seed);

std::string Describe(const Action& action);

}  // namespace snip::test
