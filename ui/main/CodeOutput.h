#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/Library.h"
#include "platform/MessageFunction.h"
#include "ui/main/PastePlace.h"
#include "ui/main/HostEnvironment.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// What filling fields needs from the window.
struct FieldServices {
  /// Asks the user for the texts of the fields; nothing if the user cancelled. `preview` returns the code
  /// filled with such texts.
  std::function<std::optional<FieldTexts>(const std::vector<CodeField>& fields,
                                          const std::function<std::string(const FieldTexts&)>& preview)>
      ask;
  std::function<std::string()> today;                 ///< The date in the system's short format.
  std::function<void(const std::string& text)> copy;  ///< To the clipboard.
};

/// Passes code to the development environment, and takes code from it. Failures are shown in a message box.
class CodeOutput {
 public:
  CodeOutput(const Library& library, const SnippetEditing& editing, const SnippetView& view,
             ShowMessageFunction showMessage);

  /// The caller owns `host`; null while no environment is connected.
  void SetHost(HostEnvironment* host) { host_ = host; }

  /// Inserts the code that is shown into the active code window, before the line on which its selection
  /// starts.
  void PasteCode();
  /// The same with some other code.
  void PasteCode(std::string code);
  /// Inserts the code that is shown with its fields filled, and with the indentation of the caret's line;
  /// lines that are selected are replaced if the code has a field for them. Without an environment the filled
  /// code goes to the clipboard.
  void PasteWithFields(const FieldServices& services);
  /// The code that is selected in the environment, or the procedure at the caret, without the indentation
  /// that its lines share; nothing when the user has been told why there is none.
  std::optional<std::string> TakeCode();
  /// Writes every snippet of the library into a new module, which is named after `libraryText`, the text of
  /// `cboFiles`. If the environment refuses the name, the module keeps its first one; if a snippet cannot be
  /// written, the module is removed again.
  void PasteToNewModule(const std::string& libraryText);
  /// The same with the snippets of another library.
  void PasteToNewModule(const std::string& libraryText, const std::vector<Snippet>& snippets);

  bool connected() const { return host_ != nullptr; }

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
