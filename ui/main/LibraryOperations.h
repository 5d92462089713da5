#pragma once

#include <memory>
#include <string>
#include <vector>

#include "find/LibraryReading.h"
#include "library/BnsFormat.h"
#include "library/LibraryStore.h"
#include "platform/MessageFunction.h"
#include "ui/main/MainWindowViews.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// Listing, opening, switching and saving whole libraries. Decides without a window: the chooser is behind
/// `LibraryView`, the files behind `LibraryStore`.
class LibraryOperations {
 public:
  LibraryOperations(Library& library, SnippetEditing& editing, SnippetView& snippetView, LibraryView& view,
                    LibraryStore& store, ShowMessageFunction showMessage,
                    SnippetEditing::TextEquality sameName);
  ~LibraryOperations();
  LibraryOperations(const LibraryOperations&) = delete;
  LibraryOperations& operator=(const LibraryOperations&) = delete;

  /// Starts to read the library that `LoadFiles` will open in another thread, while the window is made.
  void ReadAhead();
  /// Fills `cboFiles` from the library folder and opens the first library.
  void LoadFiles();
  /// Opens the chosen entry, after asking whether to save the open library. False if that one stays open,
  /// because its changes would be lost, or if the window is gone.
  bool cboFiles_Click();

  /// Opens a library by its full path, which becomes the first entry of the chooser if it is not in it yet;
  /// false as `cboFiles_Click`.
  bool OpenOutside(const std::string& path);

  // For a search of all libraries.
  /// The file of the chosen entry, even if it could not be opened; empty for none.
  std::string OpenPath() const { return openEntry_ < 0 ? std::string() : FileOf(view_.FileText(openEntry_)); }
  /// All other libraries of the chooser and of the folder.
  std::vector<NamedLibrary> OtherLibraries() const;
  /// Opens a library as the chooser does, if it is not open; false as `cboFiles_Click`.
  bool Choose(const std::string& path);

  /// Opens a file, without asking about the open library. A file that cannot be read, or is no library, shows
  /// a message in the code field.
  void OpenBNSFile(const std::string& path);
  /// Writes the library into the library folder under its name; false if the file could not be written. Does
  /// not set `Saved`.
  bool SaveCurFile();
  /// The command "Save Library": copies the shown code into the library, writes it, sets `Saved` even if
  /// writing failed, and selects the written file in the chooser.
  void SaveLibrary();
  /// For closing the window: commits edits, asks whether to save a changed library, and saves it. False if
  /// the window must stay, because an edit is refused or the changes can be written nowhere; the user has
  /// been told.
  bool OfferToSave();
  /// Reads the open library again after another program has changed its file. The store gets what was in
  /// memory, to keep it.
  void LoadAgain(const std::string& path);
  /// Opens the chosen library, whose file is not valid, with these snippets instead; they are not saved yet.
  void OpenInstead(std::vector<Snippet> snippets);
  /// Whether there may be changes that are not in the file: also after a failed save, although it sets
  /// `Saved`.
  bool HasUnsaved() const { return !library_.Saved || saveFailed_; }
  /// Gives unsaved changes to the store, which keeps them, before another library is opened.
  void Leave();
  /// The full path that the library is saved to, if that is not the file of the chosen entry: because the
  /// library is from another folder or was renamed. Empty otherwise, and while nothing can be saved.
  std::string SavedElsewhere() const;

 private:
  struct LibraryAhead;

  std::vector<std::string> Names() const;
  BnsResult Read(const std::string& path);
  void OpenBNSFileV1(BnsContents contents);
  void TakeContents(BnsContents contents);
  void BrowseForLibrary();
  void InsertFile(int entry, const std::string& text);
  /// What has become of unsaved changes, which the user may have been asked about.
  enum class Changes {
    InFile,   ///< They have just been saved.
    MayGo,    ///< There are none, they are not wanted, or they are in the history.
    Nowhere,  ///< They are wanted, and are in memory alone.
  };
  Changes SettleChanges();
  bool KeepUnsaved();
  std::string FileOf(const std::string& entry) const;
  int ListCurrentLibrary();
  void ShowWhereSaved();
  void ReportOmitted(std::size_t omitted);

  Library& library_;
  SnippetEditing& editing_;
  SnippetView& snippetView_;
  LibraryView& view_;
  LibraryStore& store_;
  ShowMessageFunction showMessage_;
  SnippetEditing::TextEquality sameName_;  ///< As the file system compares names, too.
  std::unique_ptr<LibraryAhead> ahead_;
  bool saveFailed_ = false;  ///< The last save, although `Saved` is set.
  int openEntry_ = -1;  ///< The chooser's entry of the open library, -1 for none. When the chooser notifies,
                        ///< another one is selected there.
};

/// The library's name for an entry of `cboFiles`: of a full path (which has ":\" in it or begins with "\\")
/// the file's name without ".bns", of any other entry the entry itself.
std::string LibraryNameFromEntry(const std::string& entry);

}  // namespace snip
