#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Window.h"
#include "settings/SettingsStore.h"
#include "ui/find/frmFind.h"
#include "ui/main/CodeDelivery.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/SnippetControls.h"

namespace snip {

/// The search palette of the main window, the system-wide hot key that shows it, and the palette's access to
/// the window.
class SnippetFinding : private FindTarget {
 public:
  struct Parts {
    const Window& window;
    std::function<void()> showWindow;  ///< In front of all others.
    const Library& library;
    SnippetEditing& editing;
    LibraryOperations& operations;
    SnippetControls& controls;
    CodeDelivery& delivery;
    const LibraryStore& store;
    const SettingsStore& settings;
    CaptionPainter& caption;
  };

  explicit SnippetFinding(const Parts& parts);

  /// Registers the stored hot key for the new window; the system unregisters it with the window.
  void LoadSystemKey();
  bool PreTranslate(MSG& message) { return find_.PreTranslate(message); }

  /// Shows the palette with the selected text as the query.
  void Find();
  /// Goes to the next or previous match of the last search; shows the palette if there was none.
  void FindNext(bool forward);
  /// The palette takes no input while the main window takes none: a question there comes first.
  void Enable(bool enabled) const { EnableWindow(find_.hWnd(), enabled ? TRUE : FALSE); }
  /// Shows the palette over whatever program is in front.
  void FindOverOthers();

 private:
  // FindTarget
  std::optional<Open> OpenLibrary() override;
  std::optional<std::uint32_t> ShownSnippet() override;
  std::vector<NamedLibrary> OtherLibraries() override { return parts_.operations.OtherLibraries(); }
  std::optional<std::string> ShownCode() override;
  FontProperty CodeFont() const override { return parts_.controls.Font(); }
  bool ColoursCode() const override { return parts_.controls.txtCode().SyntaxColors(); }
  Went GoTo(const FindDestination& destination) override;
  void SelectInCode(TextRange place) override;
  TextRange SelectedInCode() override;
  void Output(const SearchedLibrary& library, std::size_t snippet) override;
  void RestoreForeground() override;
  bool Copy(const std::string& text) override { return parts_.delivery.Copy(text); }
  HotKey SystemKey() const override { return systemKey_; }
  std::string UseSystemKey(HotKey key) override;

  Parts parts_;
  frmFind find_;
  HotKey systemKey_;
  HWND overWindow_ = nullptr;  ///< The other program's window that the palette was brought over, or none.
};

}  // namespace snip
