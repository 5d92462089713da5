#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "history/Version.h"
#include "platform/Handle.h"
#include "platform/Window.h"
#include "ui/caption/CaptionHook.h"
#include "ui/editor/CodeColours.h"
#include "ui/history/HistoryReader.h"
#include "ui/history/HistoryRows.h"

namespace snip {

/// The library whose history is shown, and what can be done with it.
class HistorySource {
 public:
  virtual ~HistorySource() = default;

  virtual std::string Name() const = 0;
  /// The newest first.
  virtual std::vector<Version> Versions() = 0;
  /// A function that reads versions of the open library, in any thread.
  virtual HistoryReader::ReadVersion Reading() = 0;
  /// Takes unfinished edits into the library.
  virtual void TakeEdits() = 0;
  /// Where the versions' files are.
  virtual std::string Folder() const = 0;
  /// The library as it is in memory.
  virtual std::span<const Snippet> Now() const = 0;
  /// Changes whenever `Now` changes.
  virtual unsigned Changes() const = 0;
  virtual bool CanPutBack() const = 0;
  virtual bool CanPutAllBack() const = 0;
  /// Puts a snippet back in place of the one at `inPlaceOf`, or of one with its name, or else at the end.
  virtual void PutBack(const Snippet& snippet, std::optional<std::size_t> inPlaceOf) = 0;
  virtual void PutAllBack(std::vector<Snippet> snippets) = 0;
  virtual void Tell(const std::string& text) = 0;
};

/// The modeless history window: lists the versions of the open library, shows how they differ from the
/// library as it is now, and puts snippets or a whole version back.
class frmHistory : public Window {
 public:
  static constexpr int kVersionsId = 101;
  static constexpr int kSnippetsId = 102;
  static constexpr int kLinesId = 103;
  static constexpr int kPutSnippetBackId = 104;
  static constexpr int kPutLibraryBackId = 105;
  static constexpr int kSaveCopyId = 106;
  static constexpr int kOpenFolderId = 107;

  frmHistory(HistorySource& source, CaptionPainter& caption) : source_(source), caption_(caption) {}
  ~frmHistory() override;

  /// Shows the window for the open library, or refreshes it if it is open already.
  void Show(HWND owner);
  /// Looks at a message before it is dispatched; true if it has been handled.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  /// One version, and what is known of it so far.
  struct Entry {
    Version version{};
    std::string changes{};  ///< What the version changed; empty until that is known.
  };

  void MakeControls();
  void Layout();
  void Reload();
  void TakeFound();
  void SetRow(std::size_t row, const std::string& text);
  void Repaint(int list);
  std::string TextOfRow(const Entry& entry) const;
  std::string TextOfDeletedRow() const;
  std::string SelectedText(int list) const;
  std::optional<std::size_t> SelectedEntry() const;
  bool ShowsDeleted() const;
  void VersionChosen();
  void ShowRows();
  void SnippetChosen();
  std::optional<std::size_t> ChosenRow() const;
  const Snippet* ChosenSnippet() const;
  std::optional<std::size_t> ChosenPlaceNow() const;
  void EnableButtons();
  void OnCommand(int id, int notification);
  void PutSnippetBack();
  void PutLibraryBack();
  void SaveCopy();
  void DrawLine(const DRAWITEMSTRUCT& item) const;
  void DrawCode(HDC dc, const DifferenceLine& line, int left, int top, bool selected) const;

  HWND List(int id) const { return lists_.at(static_cast<std::size_t>(id - kVersionsId)); }
  LRESULT Send(int list, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(List(list), message, wParam, lParam);
  }

  HistorySource& source_;
  CaptionPainter& caption_;
  CaptionHook captionHook_;
  UniqueFont font_;
  UniqueFont codeFont_;
  Size character_{};
  std::array<HWND, 3> lists_{};  ///< By identifier: looking a window up takes longer than adding a row.
  CodeColours colours_;
  std::string name_;            ///< The library's.
  unsigned changes_ = 0;        ///< `Changes` of the library that the versions were compared with.
  std::vector<Entry> entries_;  ///< The newest first.
  HistoryReader::ReadVersion read_;
  std::vector<DeletedSnippets::Row> deleted_;
  bool looking_ = false;                             ///< Versions are still being compared.
  std::optional<HistoryReader::Compared> compared_;  ///< The selected version, once it has been read.
  std::string wanted_;  ///< The row of "Snippets" to select again after a reload.
  std::vector<DifferenceLine> lines_;
  HistoryReader reader_;
};

}  // namespace snip
