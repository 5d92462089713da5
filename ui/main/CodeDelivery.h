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

/// Sends code to the environment or the clipboard for the output button, keys and the palette, and takes code
/// from there.
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

  /// The caller owns `host`; null while no environment is connected.
  void SetHost(HostEnvironment* host);

  /// Does with the shown snippet what the output button says.
  void Output();
  /// The same with a snippet of any library.
  void Output(const SearchedLibrary& library, std::size_t snippet);
  /// Pastes into the environment if `window` belongs to it, else copies to the clipboard.
  void OutputToWindow(HWND window, const std::string& code);
  void CopyCode();
  /// False when another program keeps the clipboard; the user has been told.
  bool Copy(const std::string& text);
  void PasteWithFields();
  /// Adds a snippet of the code selected in the environment or, if none is connected, of the clipboard's
  /// text.
  void TakeCode();

  /// To be called when all input from the time of the last delivery has been handled.
  void ForgetLastDelivery() { delivered_.reset(); }

 private:
  bool IsLeftOver() const;

  Parts parts_;
  CodeOutput output_;
  HostEnvironment* host_ = nullptr;
  /// The tick count at which the last delivery to the environment ended, until all input from before has been
  /// handled.
  std::optional<DWORD> delivered_;
};

}  // namespace snip
