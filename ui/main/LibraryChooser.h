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

  /// Puts the chooser at `left` of a bar that is that wide and high, with the box over its field. Pixels;
  /// the three distances are between the chooser and the bar's right end, and the chooser and the box.
  struct Places {
    int left = 0;
    Size bar{};
    int rightMargin = 0;
    int boxInset = 0;
    int boxNarrower = 0;
  };
  void Place(const Places& places) const;

  /// Whether a notification of the control says that an entry was chosen. In the opened list the keys pass
  /// over entries until one is taken.
  bool Chooses(int notification);

  bool ListIsOpen() const;
  /// Back to the entry that it was opened at.
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
  void ShowFileNameBox() override;
  void HideFileNameBox() override;
  std::optional<std::string> ChooseLibraryFile() override;
  std::string AskForLibraryName(const std::string& name) override;

 private:
  /// Posted behind the control's own notifications when its list closes at another entry.
  static constexpr int kTaken = 0x100;

  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(cboFiles_, message, wParam, lParam);
  }

  CaptionPainter& caption_;  ///< Of the dialog that asks for a name.
  HWND cboFiles_ = nullptr;
  HWND txtFileName_ = nullptr;  ///< Covers `cboFiles` while the library is renamed; hidden else.
  ExactTextField fileName_;
  HWND focusBefore_ = nullptr;  ///< Had the focus before the box.
  int openedAt_ = -1;           ///< The entry that was selected when the list was opened.
  bool passing_ = false;        ///< The keys have gone to another one since.
};

}  // namespace snip
