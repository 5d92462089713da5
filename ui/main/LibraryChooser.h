#pragma once

#include <windows.h>

#include <string>

#include "platform/ExactTextField.h"
#include "platform/Geometry.h"
#include "ui/caption/CaptionPainter.h"
#include "ui/main/MainWindowViews.h"

namespace snip {

/// `cboFiles`, the drop-down list of libraries, and `txtFileName`, the box for a new name of the library.
class LibraryChooser : public LibraryView {
 public:
  explicit LibraryChooser(CaptionPainter& caption) : caption_(caption) {}

  void Create(HWND parent, int id, int nameId, HFONT font);
  HWND cboFiles() const { return cboFiles_; }
  HWND txtFileName() const { return txtFileName_; }

  /// Where the chooser goes in its toolbar, and the name box over it. Pixels.
  struct Places {
    int left = 0;         ///< Left edge of the chooser.
    Size bar{};           ///< The toolbar.
    int rightMargin = 0;  ///< From the chooser to the right end of the bar.
    int boxInset = 0;     ///< From the left edge of the chooser to that of the box.
    int boxNarrower = 0;  ///< How much narrower the box is than the chooser.
  };
  void Place(const Places& places);

  /// Handles a notification of `cboFiles`; true if the user has chosen an entry. An arrow key in the open
  /// list chooses nothing until the list closes.
  bool Chooses(int notification);

  bool ListIsOpen() const;
  /// Closes the list without choosing: the entry from before it was opened is selected again.
  void CloseList() const;

  bool Gone() const override { return IsWindow(cboFiles_) == 0; }
  void InsertFile(int entry, const std::string& text) override;
  int FileCount() const override;
  std::string FileText(int entry) const override;
  int SelectedFile() const override;
  void SelectFile(int entry) override;
  void ReplaceFile(int entry, const std::string& text) override;
  std::optional<std::string> FileNameText() const override;
  void SetFileNameText(const std::string& text) override;
  void SelectFileNameText() override;
  void ShowFileNameBox(const std::string& text) override;
  void HideFileNameBox() override;
  std::optional<std::string> ChooseLibraryFile() override;
  std::string AskForLibraryName(const std::string& name) override;

 private:
  /// A notification of our own, posted after the control's when its list closes at another entry.
  static constexpr int kTaken = 0x100;

  void MakeFileNameBox();

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(cboFiles_, message, wParam, lParam);
  }

  CaptionPainter& caption_;  ///< Of the dialog that asks for a name.
  HWND cboFiles_ = nullptr;
  HWND txtFileName_ =
      nullptr;  ///< Covers `cboFiles` while the library is renamed; hidden else, null before the first time.
  int nameId_ = 0;
  Rect boxPlace_{};
  ExactTextField fileName_;
  HWND focusBefore_ = nullptr;  ///< Had the focus before the box.
  int openedAt_ = -1;           ///< The entry that was selected when the list was opened.
  bool passing_ = false;        ///< Keys have selected another entry since.
};

}  // namespace snip
