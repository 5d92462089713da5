#include "library/Library.h"

#include "platform/Text.h"

namespace snip {

bool HasLibraryExtension(std::string_view file) {
  return file.size() >= kLibraryExtension.size() &&
         EqualsIgnoringAsciiCase(file.substr(file.size() - kLibraryExtension.size()), kLibraryExtension);
}

Snippet DefaultSnippet() {
  return {.Name = "New Snippet",
          .Attachment = "",
          .Code = "'Insert code here.",  // the apostrophe makes it a comment in the host's language
          .Description = "<description goes here>"};
}

}  // namespace snip
