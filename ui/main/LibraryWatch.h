#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "history/DraftTimer.h"
#include "history/LibraryKeeper.h"
#include "platform/Handle.h"
#include "platform/MessageFunction.h"
#include "ui/history/Notice.h"
#include "ui/history/NoticeQueue.h"
#include "ui/history/frmHistory.h"
#include "ui/main/LibraryOperations.h"

namespace snip {

/// Watches the open library for the main window: writes drafts of its changes, looks for changes of its file
/// by other programs, and shows the notice and the history window. Without a keeper it does nothing.
class LibraryWatch : private HistorySource {
 public:
  struct Parts {
    LibraryKeeper* keeper;
    const Library& library;
    SnippetEditing& editing;
    LibraryOperations& operations;
    CaptionPainter& caption;
    const ShowMessageFunction& showMessage;
  };

  explicit LibraryWatch(const Parts& parts);

  /// Notices are level with the upper edge of `noticeLevel`, a part of the window.
  void Attach(HWND window, HWND noticeLevel);
  void Unload();

  /// To be called at least once a second.
  void Tick();
  void OnActivate();
  /// The window was moved or changed its size.
  void Follow() { notice_.Follow(); }
  bool PreTranslate(MSG& message) { return notice_.PreTranslate(message) || history_.PreTranslate(message); }

  void ShowHistory();
  void FocusNotice() const { notice_.Focus(); }

 private:
  using UniqueChange = UniqueHandle<HANDLE, &FindCloseChangeNotification, -1>;

  void ShowNotice();
  void Chosen(NoticeChoice choice);
  bool TakeUnsaved(const LibraryEvent& event);
  void Draft();
  void WatchFolder();
  VersionFolder History() const;

  // HistorySource
  std::string Name() const override;
  std::vector<Version> Versions() override;
  HistoryReader::ReadVersion Reading() override;
  void TakeEdits() override { parts_.editing.TakeShownCode(); }
  std::string Folder() const override;
  std::span<const Snippet> Now() const override;
  unsigned Changes() const override { return parts_.library.Changes; }
  bool CanPutBack() const override;
  bool CanPutAllBack() const override;
  void PutBack(const Snippet& snippet, std::optional<std::size_t> inPlaceOf) override;
  void PutAllBack(std::vector<Snippet> snippets) override;
  void Tell(const std::string& text) override;

  Parts parts_;
  HWND window_ = nullptr;
  HWND noticeLevel_ = nullptr;
  Notice notice_;
  frmHistory history_;
  NoticeQueue notices_;

  DraftTimer draftTimer_;
  unsigned seenChanges_ = 0;
  bool lookedForDrafts_ = false;
  DWORD lastTick_ = 0;
  std::uint64_t now_ = 0;  ///< Milliseconds since the start; does not wrap as GetTickCount does.

  bool mayTell_ = false;  ///< There has been an event.
  std::string watched_;   ///< The file whose folder is watched.
  UniqueChange folderChange_;
  std::uint64_t nextLook_ = 0;
  bool looking_ = false;  ///< The file may have changed.
};

}  // namespace snip
