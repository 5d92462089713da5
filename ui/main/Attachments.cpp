#include "ui/main/Attachments.h"

#include "platform/Text.h"

namespace snip {
namespace {

/// The system reads a path up to a zero byte, and would open another file than the library names.
bool IsPath(const std::string& text) {
  return text.find('\0') == std::string::npos;
}

}  // namespace

Attachments::Attachments(SnippetEditing& editing, AttachmentView& view) : editing_(editing), view_(view) {}

bool Attachments::CanView() const {
  const Snippet* snippet = editing_.Shown();
  return snippet != nullptr && !Trim(snippet->Attachment).empty() && IsPath(snippet->Attachment);
}

void Attachments::ViewAttachment() {
  if (!CanView()) return;                                 // a torn-off menu offers it for any snippet
  const std::string path = editing_.Shown()->Attachment;  // minimising lets other messages in
  if (view_.MinimizeOnView()) view_.Minimize();
  view_.ShellOpen(path);
}

void Attachments::SetAttachment() {
  if (editing_.Shown() == nullptr || editing_.editingDisabled()) return;
  if (const auto path = view_.ChooseAttachment()) SetAttachment(*path);
}

void Attachments::SetAttachment(const std::string& path) {
  // A path is one line of the library file. Windows has no such names, but a foreign file system may.
  if (path.find("\r\n") != std::string::npos) return;
  editing_.SetAttachment(path);
}

}  // namespace snip
