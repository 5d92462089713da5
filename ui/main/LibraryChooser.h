#pragma once

#include <windows.h>

#include <string>

#include "ui/main/MainViews.h"

namespace snip {

/// `cboFiles`, the drop-down list of libraries, and `txtFileName`, the box for a new name of the library.
class LibraryChooser : public LibraryView {
 public:
  void Create(HWND parent, int id, int nameId, HFONT font);
  HWND cboFiles() const { return cboFiles_; }

  void InsertFile(int entry, const std::string& text) override;
  int FileCount() const override;
  std::string FileText(int entry) const override;
  int SelectedFile() const override;
  void SelectFile(int entry) override;
  void SetFileNameText(const std::string& text) override;
  std::optional<std::string> ChooseLibraryFile() override;

 private:
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(cboFiles_, message, wParam, lParam);
  }

  HWND cboFiles_ = nullptr;
  HWND txtFileName_ = nullptr;  ///< Lies over `cboFiles` while the library is renamed; hidden else.
};

}  // namespace snip
