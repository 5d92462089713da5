#include <gtest/gtest.h>

#include <map>
#include <mutex>
#include <new>

#include "library/BnsFormat.h"
#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

constexpr auto kYes = MessageResult::Yes;
constexpr auto kNo = MessageResult::No;

const std::string kStrings = "C:\\Snip\\Strings.bns";
const std::string kDates = "C:\\Snip\\Dates.bns";
const std::string kOther = "C:\\Snip\\Other.bns";  ///< A third library, where a test has one.
const std::string kNew = "C:\\Snip\\My New Lib.bns";
const std::string kTaken = "64 [Brennic Snipstore 2.x] This file already exists. Please choose another name.";
const std::string kOutside = "D:\\Else\\Outside.bns";

const std::string kStringsFile =
    "BNS2.0\r\nLeft\r\n\r\nleft part\r\n(,)\r\nLeft$(s, 1)\r\n(.)\r\n"
    "Right\r\n\r\nright part\r\n(,)\r\nRight$(s, 1)\r\n...\r\n";
const std::string kChangedStringsFile =
    "BNS2.0\r\nLeft\r\n\r\nleft part\r\n(,)\r\nLeft$(s, 1)\r\n(.)\r\n"
    "Right\r\n\r\nright end\r\n(,)\r\nRight$(s, 2)\r\n'two\r\n...\r\n";
const std::string kDatesFile = "BNS2.0\r\nToday\r\n\r\nthe day\r\n(,)\r\nDate$\r\n...\r\n";
const std::string kOutsideFile = "BNS2.0\r\nOut\r\n\r\nof here\r\n(,)\r\nExit Sub\r\n...\r\n";
const std::string kDefaultFile =
    "BNS2.0\r\nNew Snippet\r\n\r\n<description goes here>\r\n(,)\r\n'Insert code here.\r\n...\r\n";

const std::string kAskStrings = "36 [Brennic Snipstore 2.x] Save changes to 'Strings'?";

/// A library file of `count` snippets.
std::string BigFile(bool version1, int count) {
  std::string bytes = version1 ? "BNS1.0\r\n" : "BNS2.0\r\n";
  for (int i = 1; i <= count; ++i) {
    if (i > 1) bytes += version1 ? ".\r\n" : "(.)\r\n";
    bytes += "n" + std::to_string(i) + (version1 ? "\r\nd\r\nc\r\n" : "\r\n\r\nd\r\n(,)\r\nc\r\n");
  }
  return bytes + (version1 ? "..\r\n" : "...\r\n");
}

/// Counts how often each library is read, in any thread.
class CountedStore : public FakeStore {
 public:
  using FakeStore::FakeStore;
  std::unique_ptr<ByteSource> Open(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    ++reads[path];
    const auto file = files.find(path);
    return file == files.end() ? nullptr : std::make_unique<BytesInMemory>(file->second);
  }
  mutable std::map<std::string, int> reads;

 private:
  mutable std::mutex mutex_;
};

class LibrariesTest : public FakeMainWindow {
 protected:
  LibrariesTest() {
    store.names = {"Strings", "Dates"};
    store.files = {{kStrings, kStringsFile}, {kDates, kDatesFile}, {kOutside, kOutsideFile}};
  }

  /// Opens the first library, "Strings", and forgets what that took.
  void Load() {
    chooser.files.clear();
    operations.LoadFiles();
    calls.clear();
  }
  /// The same, with a third library in the folder.
  void LoadWithOther(const std::string& bytes) {
    store.names = {"Strings", "Dates", "Other"};
    store.files[kOther] = bytes;
    Load();
  }
  /// Makes "Strings" what kChangedStringsFile holds, the code still being edited.
  void ChangeStrings() {
    ClickRow(1);
    TypeDescription("right end");
    TypeCode("Right$(s, 2)\r\n'two");
  }

  void LoadChanged() {
    Load();
    TypeDescription("changed");
    changed = library;
    changedBytes = WriteBns(library.Snippets);
  }
  /// What typing does to the box: the text changes, and the change is answered.
  void TypeFileName(const std::string& text) {
    chooser.fileNameText = text;
    chooser.fileNameSelected = false;
    naming.txtFileName_Change();
  }

  Library changed;
  std::string changedBytes;

  void ExpectOpened(const std::string& libraryName, const Rows& rows) const {
    EXPECT_EQ(library.LibraryName, libraryName);
    EXPECT_EQ(view.rows, rows);
    EXPECT_EQ(view.selected, rows.empty() ? -1 : 0);
    EXPECT_FALSE(editing.editingDisabled());
  }
};

TEST_F(LibrariesTest, ALibraryReadAheadIsReadOnceAndNeverTakenForAnother) {
  for (const bool anotherComesFirst : {false, true}) {
    CountedStore counted(calls);
    counted.names = store.names;
    counted.files = store.files;
    LibraryOperations ahead(library, editing, view, chooser, counted, showMessage, &EqualsIgnoringAsciiCase);
    ahead.ReadAhead();
    if (anotherComesFirst) std::swap(counted.names[0], counted.names[1]);
    chooser.files.clear();
    ahead.LoadFiles();
    EXPECT_EQ(library.LibraryName, anotherComesFirst ? "Dates" : "Strings");
    EXPECT_EQ(view.rows, anotherComesFirst ? Rows({"Today"}) : Rows({"Left", "Right"}));
    EXPECT_EQ(counted.reads[kStrings], 1);

    // What was read counts for one opening.
    chooser.selected = anotherComesFirst ? 1 : 0;
    ahead.cboFiles_Click();
    EXPECT_EQ(library.LibraryName, "Strings");
    EXPECT_EQ(counted.reads[kStrings], 2);
  }
  store.names.clear();
  operations.ReadAhead();
}

TEST_F(LibrariesTest, TheFoldersLibrariesAreListedAndTheFirstIsOpened) {
  operations.LoadFiles();
  EXPECT_EQ(chooser.files, (Rows{"Strings", "Dates", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 0);
  EXPECT_EQ(chooser.fileNameText, "Strings");
  EXPECT_EQ(calls, Calls{"read " + kStrings});
  ExpectOpened("Strings", {"Left", "Right"});
  EXPECT_EQ(view.code, "Left$(s, 1)");
  EXPECT_TRUE(library.Saved);
}

TEST_F(LibrariesTest, AnEmptyFolderIsSaidAndLeavesNothingToDo) {
  store.names.clear();
  operations.LoadFiles();
  EXPECT_EQ(calls, Calls{"64 [Brennic Snipstore 2.x] There are no BNS files in the BnSnipstore directory."});
  EXPECT_EQ(chooser.files, Rows{});
  EXPECT_TRUE(view.editingDisabled);

  editing.NewSnippet();
  operations.SaveLibrary();
  operations.cboFiles_Click();
  EXPECT_EQ(calls.size(), 1U);
}

TEST_F(LibrariesTest, ChangesAreCommittedThenAskedAboutThenWrittenBeforeTheNextLibraryIsOpened) {
  Load();
  ChangeStrings();
  answers = {kYes};
  std::string codeWhenAsked;
  bool waitingWhileBusy = false;
  whileShown = [&] { codeWhenAsked = library.Snippets[1].Code; };
  store.whileBusy = [&] { waitingWhileBusy = view.waiting; };

  ChooseFile(1);
  EXPECT_EQ(calls, (Calls{kAskStrings, "write " + kStrings, "read " + kDates}));
  EXPECT_EQ(codeWhenAsked, "Right$(s, 2)\r\n'two");
  EXPECT_EQ(store.files[kStrings], kChangedStringsFile);
  EXPECT_EQ(store.files[kDates], kDatesFile);
  EXPECT_TRUE(waitingWhileBusy);
  waitingWhileBusy = false;
  operations.cboFiles_Click();
  EXPECT_TRUE(waitingWhileBusy);
  EXPECT_FALSE(view.waiting);
  ExpectOpened("Dates", {"Today"});
  EXPECT_TRUE(library.Saved);
}

TEST_F(LibrariesTest, ALibraryIsLeftByTheAnswerToTheQuestion) {
  struct Way {
    bool changed;
    int entry;
    MessageResult answer;
    Calls after;
    std::string opened;
  };
  const std::string writes = "write " + kStrings;
  for (const Way& way : {Way{false, 1, kNo, {"read " + kDates}, "Dates"},
                         {true, 0, kYes, {kAskStrings, writes, "read " + kStrings}, "Strings"},
                         {true, 1, kNo, {kAskStrings, "read " + kDates}, "Dates"},
                         {true, 1, MessageResult::Ok, {kAskStrings, "read " + kDates}, "Dates"},
                         {true, 2, kNo, {kAskStrings, "read " + kOther}, "Strings"},  // no library
                         {true, 3, kYes, {kAskStrings, writes, "browse", "read " + kStrings}, "Strings"}}) {
    SCOPED_TRACE(way.entry);
    store.files[kStrings] = kStringsFile;
    LoadWithOther("no library");
    if (way.changed) ChangeStrings();
    answers = {way.answer};
    ChooseFile(way.entry);
    EXPECT_EQ(calls, way.after);
    EXPECT_EQ(library.LibraryName, way.opened);
    EXPECT_EQ(store.files[kStrings], way.changed && way.answer == kYes ? kChangedStringsFile : kStringsFile);
    EXPECT_EQ(store.files[kOther], "no library");
    // What was not saved in place of a file that is none is offered again, and goes into its own file.
    answers = {kYes};
    calls.clear();
    ChooseFile(1);
    EXPECT_EQ(store.files[kDates], kDatesFile);
    if (way.entry == 2) {
      EXPECT_EQ(calls, (Calls{kAskStrings, writes, "read " + kDates}));
    }
  }
}

TEST_F(LibrariesTest, ANamelessLibraryIsNotAskedAbout) {
  library.Saved = false;
  operations.LoadFiles();
  EXPECT_EQ(calls, Calls{"read " + kStrings});
}

TEST_F(LibrariesTest, AnInvalidFileLeavesTheOldLibraryInMemoryUnderItsName) {
  LoadWithOther("");
  for (const auto& bytes :
       {std::optional("[Settings]\r\n"s), std::optional(""s), std::optional<std::string>()}) {
    SCOPED_TRACE(testing::PrintToString(bytes));
    store.files.erase(kOther);
    if (bytes) store.files[kOther] = *bytes;
    ChooseFile(2);
    EXPECT_EQ(view.code, "Not a valid BnSnipstore file.");
    EXPECT_EQ(view.description, "");
    EXPECT_EQ(view.rows, Rows{});
    EXPECT_TRUE(view.locked);
    EXPECT_TRUE(editing.editingDisabled());
    EXPECT_EQ(library.LibraryName, "Strings");
    ASSERT_EQ(library.Snippets.size(), 2U);
    EXPECT_EQ(library.Snippets[1].Code, "Right$(s, 1)");

    calls.clear();
    operations.SaveLibrary();
    EXPECT_EQ(calls, Calls{});
    ChooseFile(0);
    ExpectOpened("Strings", {"Left", "Right"});
  }
}

TEST_F(LibrariesTest, WhatWasSavedOnAYesIsNotAskedAboutAgain) {
  LoadWithOther("no library");
  for (const int entry : {2 /* invalid */, 3 /* browsing, cancelled */}) {
    ChooseFile(0);
    ChangeStrings();
    TypeDescription("entry " + std::to_string(entry));
    answers = {kYes};
    ChooseFile(entry);
    ChooseFile(1);
  }
  ChooseFile(0);
  ChangeStrings();
  store.failing = true;
  answers = {kYes, kNo};
  ChooseFile(2);
  ChooseFile(1);
  EXPECT_TRUE(answers.empty()) << "what could not be written is offered again";
}

TEST_F(LibrariesTest, AVersion1LibraryIsAnnouncedAndConvertedWhenItIsSaved) {
  LoadWithOther("BNS1.0\r\na\r\nfirst\r\ncode\r\n.\r\nb\r\nsecond\r\nmore\r\ncode\r\n..\r\n");
  const std::string announcement =
      "0 [] This file was saved in a previous version of Brennic Snipstore. When it is saved it will be "
      "converted "
      "to Snipstore 2.0 format.";
  Rows rowsWhenAnnounced;
  whileShown = [&] {
    rowsWhenAnnounced = view.rows;
    EXPECT_TRUE(store.open.expired()) << "nobody else can save it as long as the message stays";
  };
  ChooseFile(2);
  EXPECT_EQ(calls, (Calls{"read " + kOther, announcement}));
  EXPECT_EQ(rowsWhenAnnounced, (Rows{"Left", "Right"})) << "the announcement comes first";
  ExpectOpened("Other", {"a", "b"});
  EXPECT_EQ(view.description, "first");
  EXPECT_FALSE(library.Saved);

  answers = {kYes};
  ChooseFile(0);
  EXPECT_EQ(
      store.files[kOther],
      "BNS2.0\r\na\r\n\r\nfirst\r\n(,)\r\ncode\r\n(.)\r\nb\r\n\r\nsecond\r\n(,)\r\nmore\r\ncode\r\n...\r\n");
  calls.clear();
  ChooseFile(2);
  EXPECT_EQ(calls, Calls{"read " + kOther});
  EXPECT_TRUE(library.Saved);
}

TEST_F(LibrariesTest, AVersion1LibraryThatConversionWouldCutShortIsLockedAndNeverWritten) {
  for (const char* bytes : {"BNS1.0\r\n...\r\nd\r\nc\r\n.\r\nb\r\nd\r\nc\r\n..\r\n",
                            "BNS1.0\r\na\r\n(,)\r\nc\r\n.\r\nb\r\nd\r\nc\r\n..\r\n",
                            "BNS1.0\r\na\r\nd\r\nc\r\n ... \r\n.\r\nb\r\nd\r\nc\r\n..\r\n",
                            "BNS1.0\r\na\r\nd\r\n(.)\r\n.\r\nb\r\nd\r\nc\r\n..\r\n"}) {
    SCOPED_TRACE(bytes);
    LoadWithOther(bytes);
    ChooseFile(2);
    ASSERT_EQ(calls.size(), 2U) << "one message";
    EXPECT_TRUE(calls.back().ends_with("so that nothing of the file is lost.")) << calls.back();
    EXPECT_EQ(view.rows.size(), 2U);
    EXPECT_TRUE(editing.editingDisabled());
    operations.SaveLibrary();
    ChooseFile(0);
    EXPECT_EQ(store.files[kOther], bytes);
    ExpectOpened("Strings", {"Left", "Right"});
  }
  LoadWithOther("BNS1.0\r\na\r\nblanks  \r\n(,)  \r\n..\r\n");
  ChooseFile(2);
  EXPECT_FALSE(library.Saved) << "blanks at the end of lines are not kept anyway";
}

TEST_F(LibrariesTest, AnEmptyLibraryHasItsOwnNameAndCanBeFilled) {
  LoadWithOther("BNS2.0\r\n");
  ChooseFile(2);
  ExpectOpened("Other", {});
  EXPECT_EQ(view.code, "");
  EXPECT_EQ(view.description, "");
  EXPECT_TRUE(library.Saved);

  editing.NewSnippet();
  operations.SaveLibrary();
  EXPECT_EQ(store.files[kOther], kDefaultFile);
  EXPECT_EQ(store.files[kStrings], kStringsFile);
}

TEST_F(LibrariesTest, AnOverfullFileIsLockedAndNeverWritten) {
  for (const bool version1 : {false, true}) {
    SCOPED_TRACE(version1 ? "version 1" : "version 2");
    const std::string bytes = BigFile(version1, 32769);
    LoadWithOther(bytes);
    TypeName("typed");
    chooser.selected = 2;
    operations.OpenBNSFile(kOther);  // with the rename going on
    ASSERT_EQ(calls.size(), 2U) << "one message";
    EXPECT_EQ(
        calls.back(),
        "64 [Brennic Snipstore 2.x] A library holds at most 32767 snippets. This file has 2 more, which "
        "could "
        "not be read. The library can be looked at but not changed, so that nothing of the file is lost.");
    EXPECT_TRUE(editing.editingDisabled());
    EXPECT_EQ(view.rows.size(), 32767U);
    EXPECT_EQ(library.LibraryName, "Other");

    calls.clear();
    editing.SettleName();
    editing.NewSnippet();
    editing.EditSnippet();
    editing.DeleteSelectedSnippet();
    TypeDescription("typed");
    ClickRow(32766);
    operations.SaveLibrary();
    ChooseFile(0);
    EXPECT_EQ(calls, Calls{"read " + kStrings});
    EXPECT_EQ(store.files[kOther], bytes);
    ExpectOpened("Strings", {"Left", "Right"});
  }
  store.files[kOther] = BigFile(false, 32767);
  ChooseFile(2);
  EXPECT_EQ(library.Snippets.size(), 32767U);
  EXPECT_FALSE(editing.editingDisabled()) << "a full library is one like any other";
}

TEST_F(LibrariesTest, AChosenFileIsListedAtTheTopOpenedByItsPathAndSavedIntoTheFolder) {
  Load();
  chooser.chosenPath = kOutside;
  ChooseFile(2);
  EXPECT_EQ(calls, (Calls{"browse", "read " + kOutside}));
  EXPECT_EQ(chooser.files, (Rows{kOutside, "Strings", "Dates", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 0);
  EXPECT_EQ(chooser.fileNameText, kOutside);
  ExpectOpened("Outside", {"Out"});

  const std::string inFolder = "C:\\Snip\\Outside.bns";
  EXPECT_EQ(operations.SavedElsewhere(), inFolder);
  store.failing = true;
  operations.SaveLibrary();
  EXPECT_EQ(chooser.selected, 0) << "there is no other file to show";
  store.failing = false;
  for (const char* text : {"of there", "of everywhere"}) {
    TypeDescription(text);
    calls.clear();
    operations.SaveLibrary();
    EXPECT_EQ(calls, Calls{"write " + inFolder});
    EXPECT_EQ(chooser.files, (Rows{kOutside, "Strings", "Dates", "Outside", "(Browse...)"}));
    EXPECT_EQ(chooser.selected, 3);
    EXPECT_EQ(operations.SavedElsewhere(), "");
    ChooseFile(3);
    EXPECT_EQ(view.description, text) << "choosing what the chooser shows loses nothing";
  }
  EXPECT_EQ(store.files[kOutside], kOutsideFile);
}

TEST_F(LibrariesTest, ALibraryFromElsewhereThatIsSavedOnLeavingIsListedAndTheChosenOneOpened) {
  for (const bool ending : {false, true}) {
    Load();
    operations.OpenOutside(kOutside);
    TypeDescription("of there");
    answers = {kYes};
    ending ? void(operations.OfferToSave()) : ChooseFile(2);
    EXPECT_EQ(chooser.files, (Rows{kOutside, "Strings", "Dates", "Outside", "(Browse...)"}));
    EXPECT_EQ(chooser.files[static_cast<std::size_t>(chooser.selected)], ending ? "Outside" : "Dates");
    EXPECT_EQ(library.LibraryName, ending ? "Outside" : "Dates");
  }
}

TEST_F(LibrariesTest, AFileThatIsChosenAgainIsListedOnce) {
  Load();
  chooser.chosenPath = kOutside;
  ChooseFile(2);
  chooser.chosenPath = "E:\\Third.bns";
  ChooseFile(3);
  chooser.chosenPath = kOutside;
  ChooseFile(4);
  EXPECT_EQ(chooser.files, (Rows{"E:\\Third.bns", kOutside, "Strings", "Dates", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 1);
  ExpectOpened("Outside", {"Out"});

  chooser.chosenPath = "D:\\ELSE\\Outside.bns";  // letter case counts
  ChooseFile(4);
  EXPECT_EQ(chooser.files.front(), "D:\\ELSE\\Outside.bns");
  EXPECT_EQ(chooser.selected, 0);
}

TEST_F(LibrariesTest, SavingTakesTheShownCodeWithoutEndingTheEdit) {
  Load();
  ChangeStrings();
  operations.SaveLibrary();
  EXPECT_EQ(calls, Calls{"write " + kStrings});
  EXPECT_EQ(store.files[kStrings], kChangedStringsFile);
  EXPECT_TRUE(library.Saved);
  EXPECT_FALSE(view.locked);

  view.code = "typed after saving";
  answers = {kNo};
  ChooseFile(1);
  EXPECT_EQ(calls[1], kAskStrings);
}

TEST_F(LibrariesTest, SavingWithoutASelectionStoresNoCode) {
  Load();
  ClickRow(1);
  editing.DeleteSelectedSnippet();
  ASSERT_EQ(view.code, "Right$(s, 1)");
  operations.SaveLibrary();
  EXPECT_EQ(store.files[kStrings], "BNS2.0\r\nLeft\r\n\r\nleft part\r\n(,)\r\nLeft$(s, 1)\r\n...\r\n");
}

TEST_F(LibrariesTest, SavingAndSwitchingTakeATypedNameFirst) {
  Load();
  TypeName("Links");
  operations.SaveLibrary();
  EXPECT_EQ(store.files[kStrings].substr(0, 15), "BNS2.0\r\nLinks\r\n");
  TypeName("Rechts");
  answers = {kNo};
  ChooseFile(1);
  EXPECT_EQ(calls, (Calls{"write " + kStrings, kAskStrings, "read " + kDates}));
}

TEST_F(LibrariesTest, AFailedWriteLeavesTheLibraryWholeToBeSavedAgain) {
  Load();
  ChangeStrings();
  store.failing = true;
  operations.SaveLibrary();
  EXPECT_FALSE(store.files.contains(kStrings));
  EXPECT_FALSE(view.waiting);

  store.failing = false;
  operations.SaveLibrary();
  EXPECT_EQ(store.files[kStrings], kChangedStringsFile);
}

TEST_F(LibrariesTest, ANewLibraryIsWrittenAppendedAndOpened) {
  Load();
  naming.RenameLibrary();
  naming.GetNewLib();  // cancelled
  EXPECT_EQ(calls, Calls{"name"});
  calls.clear();
  chooser.names = {"My New Lib"};
  naming.GetNewLib();
  EXPECT_FALSE(chooser.fileNameBoxShown) << "it would rename the new library";
  EXPECT_EQ(calls, (Calls{"name", "write " + kNew, "read " + kNew}));
  EXPECT_EQ(store.files[kNew], NewLibraryBns());
  EXPECT_EQ(chooser.files, (Rows{"Strings", "Dates", "(Browse...)", "My New Lib"}));
  EXPECT_EQ(chooser.selected, 3);
  EXPECT_EQ(library.LibraryName, "My New Lib");
  EXPECT_TRUE(library.Saved);
  EXPECT_EQ(view.rows, (Rows{"New Snippet"}));
  EXPECT_EQ(view.code, "'Insert code here.");
}

TEST_F(LibrariesTest, InAnEmptyFolderANewLibraryUnlocksTheFields) {
  Load();
  store.names.clear();
  store.files.clear();
  chooser.files.clear();
  chooser.selected = -1;
  library = {};
  operations.LoadFiles();
  ASSERT_TRUE(editing.editingDisabled());
  chooser.names = {"My New Lib"};
  naming.GetNewLib();
  EXPECT_EQ(chooser.files, (Rows{"My New Lib"}));
  EXPECT_FALSE(editing.editingDisabled());
}

TEST_F(LibrariesTest, TakenAndImpossibleNamesAreAskedForAgain) {
  Load();
  chooser.names = {"Dates", "(Browse...)", "My New Lib"};
  naming.GetNewLib();
  EXPECT_EQ(Calls(calls.begin(), calls.begin() + 6),
            (Calls{"name", kTaken, "name Dates", kTaken, "name (Browse...)", "write " + kNew}));
  EXPECT_EQ(library.LibraryName, "My New Lib");

  store.failing = true;
  calls.clear();
  chooser.names = {"Fails"};
  naming.GetNewLib();
  EXPECT_EQ(calls, (Calls{"name", "write C:\\Snip\\Fails.bns",
                          "64 [Brennic Snipstore 2.x] A file of this name cannot be made. Please choose "
                          "another name.",
                          "name Fails"}));
  EXPECT_EQ(library.LibraryName, "My New Lib") << "nothing is left before there is something new";
  EXPECT_EQ(view.rows, (Rows{"New Snippet"}));
}

TEST_F(LibrariesTest, AWindowThatEndsMeanwhileIsNotAskedOn) {
  Load();
  chooser.names = {"Dates", "My New Lib"};
  whileShown = [&] { chooser.gone = true; };
  naming.GetNewLib();
  EXPECT_EQ(calls, (Calls{"name", kTaken}));
}

TEST_F(LibrariesTest, AnEditInProgressBelongsToTheLibraryThatIsLeft) {
  Load();
  TypeCode("changed");
  chooser.names = {"My New Lib"};
  answers = {MessageResult::Yes};
  naming.GetNewLib();
  EXPECT_NE(store.files[kStrings].find("changed"), std::string::npos);
  EXPECT_EQ(store.files[kNew], NewLibraryBns());
}

TEST_F(LibrariesTest, AnEditThatCannotBeReadKeepsTheWindowAndItsLibrary) {
  Load();
  TypeCode("typed");
  view.silent = true;
  chooser.names = {"My New Lib"};
  const std::vector<std::function<void()>> leaving = {
      [&] { naming.GetNewLib(); }, [&] { ChooseFile(1); }, [&] { operations.OpenOutside(kDates); },
      [&] { operations.SaveLibrary(); }, [&] { EXPECT_FALSE(operations.OfferToSave()); }};
  for (const auto& leave : leaving) {
    calls.clear();
    leave();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_TRUE(calls[0].starts_with("64 [Brennic Snipstore 2.x] The code cannot be read")) << calls[0];
    EXPECT_EQ(library.LibraryName, "Strings");
    EXPECT_EQ(chooser.selected, 0);
    EXPECT_EQ(chooser.files.size(), 3U);
  }
  view.silent = false;
  answers = {MessageResult::Yes};
  EXPECT_TRUE(operations.OfferToSave());
  EXPECT_NE(store.files[kStrings].find("typed"), std::string::npos);
}

TEST_F(LibrariesTest, RenamingMovesTheFileButNotTheNameThatIsSavedTo) {
  Load();
  naming.RenameLibrary();
  ASSERT_TRUE(chooser.fileNameBoxShown);
  EXPECT_EQ(chooser.fileNameText, "Strings");
  TypeFileName("My New Lib");
  naming.AcceptName();
  EXPECT_FALSE(chooser.fileNameBoxShown);
  EXPECT_EQ(calls, (Calls{"rename " + kStrings + " to " + kNew}));
  EXPECT_EQ(chooser.files, (Rows{"My New Lib", "Dates", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 0);
  EXPECT_EQ(library.LibraryName, "Strings");
  EXPECT_EQ(operations.SavedElsewhere(), kStrings);
  operations.SaveLibrary();
  EXPECT_TRUE(store.files.contains(kStrings));
  EXPECT_EQ(chooser.files, (Rows{"My New Lib", "Dates", "Strings", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 2) << "the file that was written";
  EXPECT_EQ(operations.SavedElsewhere(), "");
}

TEST_F(LibrariesTest, ANameThatTheFileSystemRefusesChangesNothingAndSaysNothing) {
  Load();
  naming.RenameLibrary();
  TypeFileName("Dates");
  naming.AcceptName();
  EXPECT_EQ(calls, (Calls{"rename " + kStrings + " to " + kDates}));
  EXPECT_EQ(chooser.files, (Rows{"Strings", "Dates", "(Browse...)"}));
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

TEST_F(LibrariesTest, TheBoxIsNeverEmptyAndLeavingItGivesUp) {
  Load();
  naming.RenameLibrary();
  for (const char* blank : {"", "   "}) {
    TypeFileName(blank);
    EXPECT_EQ(chooser.fileNameText, "Strings");
    EXPECT_TRUE(chooser.fileNameSelected);
  }
  TypeFileName(" F");
  EXPECT_EQ(chooser.fileNameText, " F");
  naming.txtFileName_LostFocus();
  EXPECT_EQ(chooser.fileNameText, "Strings");
  EXPECT_FALSE(chooser.fileNameBoxShown);
  EXPECT_EQ(calls, Calls{});
}

TEST_F(LibrariesTest, AnotherLibraryEndsTheRenaming) {
  Load();
  naming.RenameLibrary();
  operations.OpenOutside(kDates);  // dropped
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

TEST_F(LibrariesTest, WithoutASelectedSnippetThereIsNoRenaming) {
  Load();
  editing.ShowNothing("");
  naming.RenameLibrary();
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

TEST_F(LibrariesTest, ADiskThatIsFullAtAnyByteLeavesTheLibraryInMemoryWhole) {
  LoadChanged();
  for (std::size_t room = 0; room < changedBytes.size(); ++room) {
    store.room = room;
    library.Saved = false;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kStrings], changedBytes.substr(0, room));
    ASSERT_EQ(library.Snippets, changed.Snippets);
    ASSERT_EQ(library.LibraryName, "Strings");
    // A failed save counts as one; the next makes the file whole.
    ASSERT_TRUE(library.Saved);
    store.room = std::string::npos;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kStrings], changedBytes);
  }
}

TEST_F(LibrariesTest, AQuestionAnsweredYesThatCannotBeFulfilledLeadsOnAndClaimsNothing) {
  LoadChanged();
  store.failing = true;
  answers = {MessageResult::Yes};
  operations.OfferToSave();
  EXPECT_FALSE(library.Saved);
  EXPECT_EQ(library.Snippets, changed.Snippets);

  answers = {MessageResult::Yes};
  ChooseFile(1);
  EXPECT_EQ(library.LibraryName, "Dates");
  EXPECT_TRUE(library.Saved);
}

TEST_F(LibrariesTest, WhatIsThrownWhileSavingLeavesTheLibraryUnsaved) {
  LoadChanged();
  store.whileBusy = [] { throw std::bad_alloc(); };
  EXPECT_THROW(operations.SaveLibrary(), std::bad_alloc);
  EXPECT_FALSE(library.Saved);
  EXPECT_FALSE(view.waiting);
  EXPECT_EQ(library.Snippets, changed.Snippets);
}

TEST_F(LibrariesTest, MemoryThatRunsOutWhileALibraryIsOpenedNeverGivesOneLibraryTheNameOfAnother) {
  for (const std::string& name : store.names) {
    store.files[store.PathOf(name)] = WriteBns(std::vector{Snippet{name, "", "x", "about"}});
  }
  Load();
  bool opened = false;
  for (int texts = 0; !opened; ++texts) {
    SCOPED_TRACE(texts);
    ASSERT_LT(texts, 20);
    library.Saved = true;
    chooser.textsBeforeMemoryRunsOut = -1;
    ChooseFile(0);
    chooser.textsBeforeMemoryRunsOut = texts;
    try {
      ChooseFile(1);
      opened = true;
    } catch (const std::bad_alloc&) {
    }
    ASSERT_FALSE(library.Snippets.empty());
    EXPECT_EQ(library.Snippets[0].Name, library.LibraryName);
  }
}

TEST(LibraryNameTest, AFullPathStandsForItsBareFileName) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Strings", "Strings"},
      {"Strings.bns", "Strings.bns"},
      {"a\\b", "a\\b"},
      {"", ""},
      {"C:\\Strings.bns", "Strings"},
      {"C:\\My Snippets\\Strings.BNS", "Strings"},
      {"C:\\dir.bns\\a.b.bns", "a.b"},
      {"C:\\dir\\twice.bns.bns", "twice.bns"},
      {"C:\\dir\\other.txt", "other.txt"},
      {"C:\\dir\\abns", "abns"},
      {"C:\\dir\\.bns", ".bns"},
      {"C:\\dir/sub/Strings.bns", "Strings"},
      {"\\\\server\\share\\Strings.bns", "Strings"},
  };
  for (const auto& [entry, name] : cases) EXPECT_EQ(LibraryNameFromEntry(entry), name) << entry;
}

}  // namespace
}  // namespace snip::test
