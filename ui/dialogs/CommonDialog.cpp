#include "ui/dialogs/CommonDialog.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/Handle.h"
#include "ui/dialogs/CommonDialogText.h"

namespace snip {
namespace {

// The structure size that every version of Windows accepts; later ones added members after this one. The
// platform's own OPENFILENAME_SIZE_VERSION_400A is not a constant expression.
constexpr DWORD kOpenFileNameSize = offsetof(OPENFILENAMEA, lpTemplateName) + sizeof(LPCSTR);

// If a structure were packed differently from the system's, the dialogs would fail, some without an error.
#ifdef _WIN64
static_assert(kOpenFileNameSize == 136 && sizeof(CHOOSECOLORA) == 72 && sizeof(CHOOSEFONTA) == 104);
#else
static_assert(kOpenFileNameSize == 76 && sizeof(CHOOSECOLORA) == 36 && sizeof(CHOOSEFONTA) == 60);
#endif
static_assert(sizeof(FaceNameField) == LF_FACESIZE);

/// To the system a null pointer means "none", but an empty text does not.
const char* OrNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

/// Restores the current directory. A file dialog sets it to the folder that it shows, which then could not be
/// removed or ejected.
class CurrentDirectoryScope {
 public:
  CurrentDirectoryScope() { GetCurrentDirectoryA(static_cast<DWORD>(path_.size()), path_.data()); }
  ~CurrentDirectoryScope() { SetCurrentDirectoryA(path_.data()); }
  CurrentDirectoryScope(const CurrentDirectoryScope&) = delete;
  CurrentDirectoryScope& operator=(const CurrentDirectoryScope&) = delete;

 private:
  std::array<char, MAX_PATH> path_{};
};

/// A LOGFONT followed by a zero byte, because some readers ignore the size of lfFaceName.
struct TerminatedFont {
  LOGFONTA font{};
  char end = '\0';
};

}  // namespace

std::string CommonDialog::ShortFileName() const {
  std::string path(GetShortPathNameA(FileName.c_str(), nullptr, 0), '\0');
  if (path.empty()) return {};
  path.resize(GetShortPathNameA(FileName.c_str(), path.data(), static_cast<DWORD>(path.size())));
  return path;
}

std::string CommonDialog::ShortFileTitle() const {
  return NamePart(ShortFileName());
}

void CommonDialog::TakeNameFromFolder() {
  if (FileName.empty() || HasWildcards(FileName)) return;
  WIN32_FIND_DATAA found{};
  const UniqueFind search(FindFirstFileA((InitDir + "\\" + FileName).c_str(), &found));
  if (search && (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    FileName = static_cast<const char*>(found.cFileName);
  }
}

void CommonDialog::ShowFileDialog(FileMode mode) {
  constexpr DWORD capacity = 255;
  if (hWnd == nullptr) hWnd = GetActiveWindow();
  TakeNameFromFolder();
  // The Open dialog's buffers are one byte shorter than it is told; the zero byte that may end its text goes
  // into the byte after them, which a std::string has.
  const bool isSave = mode == FileMode::Save;
  std::string file = isSave ? SaveNameBuffer(FileName) : std::string(capacity - 1, '\0');
  std::string title(isSave ? capacity : capacity - 1, '\0');
  const std::string filter = FilterText(Filter);

  OPENFILENAMEA dialog{};
  dialog.lStructSize = kOpenFileNameSize;
  dialog.hwndOwner = hWnd;
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = FilterIndex;
  dialog.lpstrFile = file.data();
  dialog.nMaxFile = capacity;
  dialog.lpstrFileTitle = title.data();
  dialog.nMaxFileTitle = capacity;
  dialog.lpstrInitialDir = OrNull(InitDir);
  dialog.lpstrTitle = OrNull(DialogTitle);
  dialog.Flags = Flags;
  dialog.lpstrDefExt = OrNull(DefaultExt);
  const CurrentDirectoryScope directory;
  if ((isSave ? GetSaveFileNameA(&dialog) : GetOpenFileNameA(&dialog)) == 0) return;
  fileTitle_ = TextBeforeNul(title).value_or(fileTitle_);
  FileName = TextBeforeNul(file).value_or(FileName);
}

void CommonDialog::ShowOpen() {
  ShowFileDialog(FileMode::Open);
}

void CommonDialog::ShowSave() {
  ShowFileDialog(FileMode::Save);
}

void CommonDialog::ShowColor() {
  CHOOSECOLORA dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = GetActiveWindow();
  dialog.hInstance = reinterpret_cast<HWND>(GetModuleHandleA(nullptr));
  dialog.rgbResult = Color;  // the initial colour, if the flags have CC_RGBINIT
  dialog.lpCustColors = customColors_.data();
  dialog.Flags = Flags;
  if (ChooseColorA(&dialog) != 0) Color = dialog.rgbResult;
}

std::int32_t CommonDialog::ShowFont() {
  TerminatedFont description;
  LOGFONTA& font = description.font;
  font.lfWeight = FontBold ? FW_BOLD : 0;
  font.lfItalic = FontItalic ? 1 : 0;
  font.lfUnderline = FontUnderline ? 1 : 0;
  font.lfStrikeOut = FontStrikethru ? 1 : 0;
  const FaceNameField face = FaceNameFieldOf(FontName);
  std::copy(face.begin(), face.end(), font.lfFaceName);

  CHOOSEFONTA dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = GetActiveWindow();
  dialog.lpLogFont = &font;
  dialog.iPointSize = FontSize * 10;
  dialog.Flags = Flags;
  lastResult_ = ChooseFontA(&dialog);
  switch (lastResult_) {
    case FALSE:
      return CancelError ? kCancelError : 0;
    case TRUE:
      FontBold = font.lfWeight >= FW_BOLD;
      FontItalic = font.lfItalic == 1;
      FontUnderline = font.lfUnderline == 1;
      FontStrikethru = font.lfStrikeOut == 1;
      FontName.assign(std::begin(font.lfFaceName), std::end(font.lfFaceName));
      FontSize = dialog.iPointSize / 10;
      return 0;
    default:
      lastError_ = CommDlgExtendedError();
      return 0;
  }
}

}  // namespace snip
