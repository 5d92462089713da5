#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "find/SearchedLibrary.h"
#include "platform/Window.h"
#include "ui/caption/CaptionPainter.h"
#include "ui/main/CodeOutput.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/SnippetControls.h"

namespace snip {

/// Hands code on, to the environment or the clipboard, as the output button, keys and the palette ask; and
/// takes code from there.
class CodeDelivery {
 public:
  struct Parts {
    const Window& window;
    const Library& library;
    SnippetEditing& editing;
    SnippetControls& controls;
    LibraryChooser& chooser;
    MainToolbars& bars;
    CaptionPainter& caption;
    ShowMessageFunction showMessage;
  };

  explicit CodeDelivery(const Parts& parts);

  /// The environment, which stays its owner's; null while none is connected.
  void SetHost(HostEnvironment* host);

  /// Does with what is shown what the output button shows.
  void Output();
  /// The same with a snippet of any library.
  void Output(const SearchedLibrary& library, std::size_t snippet);
  /// To the environment if it has that window, else to the clipboard.
  void OutputToWindow(HWND window, const std::string& code);
  void CopyCode();
  /// False when another program keeps the clipboard; the user has been told.
  bool Copy(const std::string& text);
  void PasteFitted();
  /// A snippet of what is selected in the environment, or else of what the clipboard holds.
  void TakeCode();

  /// What was pressed during the last delivery has been handled.
  void ForgetLastDelivery() { delivered_.reset(); }

 private:
  bool IsLeftOver() const;

  Parts parts_;
  CodeOutput output_;
  HostEnvironment* host_ = nullptr;
  /// When the last delivery to the environment ended, until what the user did before has been handled.
  std::optional<DWORD> delivered_;
};

}  // namespace snip
