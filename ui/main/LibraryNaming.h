#pragma once

#include "library/LibraryStore.h"
#include "platform/MessageFunction.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/MainWindowViews.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// Makes new libraries, and renames the current one in the box `txtFileName` over the chooser. Decides
/// without a window. Handlers keep the names of the events they answer.
class LibraryNaming {
 public:
  LibraryNaming(SnippetEditing& editing, LibraryOperations& operations, LibraryView& view,
                LibraryStore& store, ShowMessageFunction showMessage);

  /// Asks for a name until one is free or the user gives up, then makes a library of that name and opens it.
  void GetNewLib();

  /// Opens the box, when a snippet is shown.
  void RenameLibrary();
  /// If the box is empty, puts the current name back.
  void txtFileName_Change();
  /// Enter: renames the file. If the file system refuses, nothing changes, and there is no message.
  void AcceptName();
  /// Escape, or leaving the box: the library keeps its name.
  void txtFileName_LostFocus();

 private:
  std::string CurrentEntry() const;
  bool Create(const std::string& name);

  SnippetEditing& editing_;
  LibraryOperations& operations_;
  LibraryView& view_;
  LibraryStore& store_;
  ShowMessageFunction showMessage_;
};

}  // namespace snip
