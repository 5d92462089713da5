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

  /// Begins to read the library that `LoadFiles` will open, in a thread of its own, so that the window can be
  /// made meanwhile.
  void ReadAhead();
  /// Fills `cboFiles` from the library folder and opens the first library.
  void LoadFiles();
  /// Opens the chosen entry, after asking whether the library that is left shall be saved. False when that
  /// one stays open, because what it holds would be lost, or when the window is gone.
  bool cboFiles_Click();

  /// Opens a library by its full path and keeps it among the entries, at the top when it is new there; false
  /// as `cboFiles_Click`.
  bool OpenOutside(const std::string& path);

  // For a search of all libraries.
  /// The file that is open, or was to be opened.
  std::string OpenPath() const { return openEntry_ < 0 ? std::string() : FileOf(view_.FileText(openEntry_)); }
  /// All other libraries of the chooser and of the folder.
  std::vector<NamedLibrary> OtherLibraries() const;
  /// Opens a library as the chooser does, if it is not open; false as `cboFiles_Click`.
  bool Choose(const std::string& path);

  void OpenBNSFile(const std::string& path);
  /// Writes the library into the library folder under its name; false when not all of it is in the file. Does
  /// not touch `Saved`.
  bool SaveCurFile();
  /// What "Save Library" does: takes the shown code into the library, writes it, counts it as saved, and has
  /// the chooser show the file that was written.
  void SaveLibrary();
  /// Takes in what is being edited, and asks whether to save a changed library, and does; for the end of the
  /// window. False when the window has to stay, since something typed cannot be taken, or what the user
  /// wants to keep can be written nowhere: the user has been told.
  bool OfferToSave();
  /// Reads the open library once more from its file, which another program has changed. What is in memory is
  /// handed to the store.
  void LoadAgain(const std::string& path);
  /// Opens the chosen library, whose file holds none, with these snippets instead, which are not saved yet.
  void OpenInstead(std::vector<Snippet> snippets);
  /// Whether memory may hold what the file does not, also after a failed save, which counts as one.
  bool HasUnsaved() const { return !library_.Saved || saveFailed_; }
  /// Hands changes that are in no file to the store before the library is left.
  void Leave();
  /// The full path of the file that the library is saved to, when that is not the file of the chosen entry:
  /// of a library from elsewhere, or one that was renamed. Empty else, and while nothing can be saved.
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
  bool saveFailed_ = false;  ///< The last one, though the library counts as saved since.
  int openEntry_ = -1;       ///< Of the chooser; the user has another one selected there when he tells of it.
};

/// The name of the library behind an entry of `cboFiles`: an entry with ":\" in it, or on a server, is a full
/// path and stands for its file's bare name, any other is the name itself.
std::string LibraryNameFromEntry(const std::string& entry);

}  // namespace snip
