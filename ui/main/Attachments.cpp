#include "ui/main/Attachments.h"

#include "platform/Text.h"

namespace snip {
namespace {

/// The system reads a path up to a zero byte, and would open another file than the library names.
bool IsPath(const std::string& text) {
  return text.find('\0') == std::string::npos;
}

}  // namespace

Attachments::Attachments(Library& library, const SnippetEditing& editing, const SnippetView& snippets,
                         AttachmentView& view)
    : library_(library), editing_(editing), snippets_(snippets), view_(view) {}

Snippet* Attachments::Selected() const {
  const int row = snippets_.SelectedRow();
  return library_.HasIndex(row) ? &library_.Snippets[static_cast<std::size_t>(row)] : nullptr;
}

bool Attachments::CanView() const {
  const Snippet* snippet = Selected();
  return snippet != nullptr && !Trim(snippet->Attachment).empty() && IsPath(snippet->Attachment);
}

void Attachments::ViewAttachment() {
  if (!CanView()) return;                           // a torn-off menu offers it for any snippet
  const std::string path = Selected()->Attachment;  // minimising lets other messages in
  if (view_.MinimizeOnView()) view_.Minimize();
  view_.ShellOpen(path);
}

void Attachments::SetAttachment() {
  if (Selected() == nullptr || editing_.editingDisabled()) return;
  if (const auto path = view_.ChooseAttachment()) SetAttachment(*path);
}

void Attachments::SetAttachment(const std::string& path) {
  Snippet* snippet = Selected();
  if (snippet == nullptr || editing_.editingDisabled()) return;
  // A path is one line of the library file. Windows has no such names, but a foreign file system may.
  if (path.find("\r\n") != std::string::npos) return;
  snippet->Attachment = path;
  library_.Saved = false;
}

}  // namespace snip
