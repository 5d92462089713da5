#include "library/Library.h"

namespace snip {

Snippet DefaultSnippet() {
  return {.Name = "New Snippet",
          .Attachment = "",
          .Code = "'Insert code here.",  // the apostrophe makes it a comment in the host's language
          .Description = "<description goes here>"};
}

}  // namespace snip
