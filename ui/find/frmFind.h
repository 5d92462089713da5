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

  /// The timer that frees the libraries some time after the palette is hidden.
  static constexpr UINT_PTR kForgetTimer = 2;

  /// Items of the menu. 1 and 2 are taken: dialog keys send them for OK and Cancel.
  enum Item : int { kGo = 100, kOutput, kCopy, kTags, kSystemKey, kClose };

  struct Services {
    FindTarget& target;
    const LibraryStore& store;
    const SettingsStore& settings;
    CaptionPainter& caption;
  };

  explicit frmFind(const Services& services);
  ~frmFind() override;

  /// Shows the palette in front of `owner` and searches for `text`, or for the last text if it is empty.
  /// `codeFirst` also searches the shown code and lists its matches first.
  void ShowMe(HWND owner, const std::string& text, bool codeFirst);
  /// Shows the next match: the next place in the shown code, or else the next snippet. Reports a snippet that
  /// is missing. False if nothing has been searched for yet.
  bool GoOn(bool forward);

  /// Looks at a message before it is dispatched; true if it has been handled.
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
  std::string told_;      ///< A message shown instead of the count until the next search.
  bool chosen_ = false;   ///< The user has selected a row since the last search.
  bool current_ = false;  ///< The libraries were refreshed since the window was activated.
  bool codeFirst_ = false;
};

}  // namespace snip
