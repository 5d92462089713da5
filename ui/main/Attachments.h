#pragma once

#include <optional>
#include <string>

#include "library/Library.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// What attachments need of the window.
class AttachmentView {
 public:
  virtual ~AttachmentView() = default;

  /// Lets the user choose a file; its full path, or nothing when the user cancelled.
  virtual std::optional<std::string> ChooseAttachment() = 0;
  virtual bool MinimizeOnView() const = 0;
  virtual void Minimize() = 0;
  /// Opens a file with its associated program; no message if there is none.
  virtual void ShellOpen(const std::string& path) = 0;
};

/// The file that goes with the shown snippet.
class Attachments {
 public:
  Attachments(SnippetEditing& editing, AttachmentView& view);

  /// Whether the shown snippet is in a read-only library. Without a shown snippet `SetAttachment` is offered,
  /// but does nothing.
  bool Locked() const { return editing_.Shown() != nullptr && editing_.editingDisabled(); }
  /// Whether the shown snippet has an attachment; a path of blanks is none.
  bool CanView() const;
  void ViewAttachment();
  /// Asks for the file. Choosing the same one again counts as a change as well.
  void SetAttachment();
  void SetAttachment(const std::string& path);

 private:
  SnippetEditing& editing_;
  AttachmentView& view_;
};

}  // namespace snip
