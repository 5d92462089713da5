#pragma once

#include <functional>
#include <string>
#include <vector>

#include "library/Library.h"
#include "platform/MessageFunction.h"
#include "ui/main/HostEnvironment.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// Hands code on to the development environment. What cannot be done is told to the user.
class CodeOutput {
 public:
  CodeOutput(const Library& library, const SnippetEditing& editing, const SnippetView& view,
             ShowMessageFunction showMessage);

  /// The environment, which stays its owner's; null while none is connected.
  void SetHost(HostEnvironment* host) { host_ = host; }

  /// Inserts the code that is shown into the active code window, before the line on which its selection
  /// starts.
  void PasteCode();
  /// The same with some other code.
  void PasteCode(const std::string& code);
  /// Writes every snippet of the library into a new module, which is named after `libraryText`, the text of
  /// `cboFiles`. A name that the environment refuses leaves the module under its first one; when a snippet
  /// cannot be written, the module is taken away again.
  void PasteToNewModule(const std::string& libraryText);
  /// The same with the snippets of another library.
  void PasteToNewModule(const std::string& libraryText, const std::vector<Snippet>& snippets);

 private:
  void Deliver(const std::function<void(HostEnvironment&)>& delivery);
  void Tell(const std::string& prompt) const;

  const Library& library_;
  const SnippetEditing& editing_;
  const SnippetView& view_;
  ShowMessageFunction showMessage_;
  HostEnvironment* host_ = nullptr;
  bool delivering_ = false;
};

/// The name of the module that a library is written into: "mod" and the library's name without its blanks.
std::string ModuleName(const std::string& libraryText);

}  // namespace snip
