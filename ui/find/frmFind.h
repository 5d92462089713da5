#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Handle.h"
#include "platform/Window.h"
#include "settings/SettingsStore.h"
#include "ui/caption/CaptionHook.h"
#include "ui/find/FindTarget.h"
#include "ui/find/FoundList.h"
#include "ui/find/FoundPreview.h"
#include "ui/find/FoundWalk.h"
#include "ui/find/PaletteLibraries.h"
#include "ui/find/PaletteRows.h"

namespace snip {

/// The palette "Find Snippets": searches all libraries while the user types.
class frmFind : public Window {
 public:
  // Control ids; automation finds the controls by them.
  static constexpr int kFieldId = 1101;
  static constexpr int kListId = 1102;
  static constexpr int kPreviewId = 1103;
  static constexpr int kKeysId = 1104;
  static constexpr int kStatusId = 1105;

  /// Of the timer that lets go of libraries once the palette is hidden.
  static constexpr UINT_PTR kForgetTimer = 2;

  /// Of the menu's items. Keys of dialogs send the numbers of OK and Cancel, 1 and 2.
  enum Item : int { kGo = 100, kOutput, kCopy, kTags, kSystemKey, kClose };

  struct Services {
    FindTarget& target;
    const LibraryStore& store;
    const SettingsStore& settings;
    CaptionPainter& caption;
  };

  explicit frmFind(const Services& services);
  ~frmFind() override;

  /// Shows the palette in front of `owner`. Begins with `text`, unless it is empty; `codeFirst` searches the
  /// code that is shown before the libraries.
  void ShowMe(HWND owner, const std::string& text, bool codeFirst);
  /// Goes on from what was gone to last: to the next place in its code, or else to the next snippet. Tells of
  /// one that is missing. False if nothing has been looked for yet.
  bool GoOn(bool forward);

  /// Looks at a message before it is dispatched; true when it is used up.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void MakeControls();
  void Layout();
  void SavePlace() const;
  void Refresh();
  void ReadLibraries();
  void TakeResults();
  void ForgetLibraries();
  void SearchRows();
  void Search();
  void SearchAgain(const std::function<void()>& change);
  void ShowRows(const std::optional<RowIdentity>& selected = {});
  void Forget();
  void CloseMe();
  void Leave();
  bool OnKey(WPARAM key, bool control, bool shift);
  void OnShown(bool shown);
  void OnCommand(int id, int notification);
  void Escape();
  void Activate();
  void Output();
  void Copy();
  void ShowTags();
  void ChooseSystemKey();
  void ShowPreview();
  void ShowStatus();
  void Tell(const std::string& text);
  void TellMissing();
  void SetText(const std::string& text);
  std::optional<Found> Selected() const;

  Services services_;
  Folding folding_;
  PaletteRows rows_;
  PaletteLibraries libraries_;
  FoundWalk walk_;

  CaptionHook captionHook_;
  UniqueFont font_;
  HWND field_ = nullptr;
  HWND keys_ = nullptr;
  HWND status_ = nullptr;
  FoundList list_;
  FoundPreview preview_;
  std::string told_;      ///< Shown in place of a count until something else is looked for.
  bool chosen_ = false;   ///< The user has selected a row, since something was looked for.
  bool current_ = false;  ///< The libraries have been asked for since the window was activated.
  bool codeFirst_ = false;
};

}  // namespace snip
