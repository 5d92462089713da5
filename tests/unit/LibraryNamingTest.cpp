#include "ui/main/LibraryNaming.h"

#include <gtest/gtest.h>

#include "library/BnsFormat.h"
#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

const std::string kFirst = "C:\\Snip\\First.bns";
const std::string kSecond = "C:\\Snip\\Second.bns";
const std::string kNew = "C:\\Snip\\My New Lib.bns";
const std::string kTaken = "64 [Brennic Snipstore 2.x] This file already exists. Please choose another name.";

class LibraryNamingTest : public FakeMainWindow {
 protected:
  LibraryNamingTest() {
    store.names = {"First", "Second"};
    store.files = {{kFirst, NewLibraryBns()}, {kSecond, NewLibraryBns()}};
    operations.LoadFiles();
    calls.clear();
  }

  /// What typing does to the box: the text changes, and the change is answered.
  void TypeFileName(const std::string& text) {
    chooser.fileNameText = text;
    chooser.fileNameSelected = false;
    naming.txtFileName_Change();
  }
};

TEST_F(LibraryNamingTest, ANewLibraryIsWrittenAppendedAndOpened) {
  naming.RenameLibrary();
  chooser.names = {"My New Lib"};
  naming.GetNewLib();
  EXPECT_FALSE(chooser.fileNameBoxShown) << "it would rename the new library";
  EXPECT_EQ(calls, (Calls{"name", "write " + kNew, "read " + kNew}));
  EXPECT_EQ(store.files[kNew], NewLibraryBns());
  EXPECT_EQ(chooser.files, (Rows{"First", "Second", "(Browse...)", "My New Lib"}));
  EXPECT_EQ(chooser.selected, 3);
  EXPECT_EQ(library.LibraryName, "My New Lib");
  EXPECT_TRUE(library.Saved);
  EXPECT_EQ(view.rows, (Rows{"New Snippet"}));
  EXPECT_EQ(view.code, "'Insert code here.");
}

TEST_F(LibraryNamingTest, InAnEmptyFolderANewLibraryUnlocksTheFields) {
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

TEST_F(LibraryNamingTest, TakenAndImpossibleNamesAreAskedForAgain) {
  chooser.names = {"Second", "(Browse...)", "My New Lib"};
  naming.GetNewLib();
  EXPECT_EQ(Calls(calls.begin(), calls.begin() + 6),
            (Calls{"name", kTaken, "name Second", kTaken, "name (Browse...)", "write " + kNew}));
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

TEST_F(LibraryNamingTest, AWindowThatEndsMeanwhileIsNotAskedOn) {
  chooser.names = {"Second", "My New Lib"};
  whileShown = [&] { chooser.gone = true; };
  naming.GetNewLib();
  EXPECT_EQ(calls, (Calls{"name", kTaken}));
}

TEST_F(LibraryNamingTest, CancellingMakesNothing) {
  const auto files = store.files;
  naming.RenameLibrary();
  naming.GetNewLib();
  EXPECT_FALSE(chooser.fileNameBoxShown);
  EXPECT_EQ(calls, (Calls{"name"}));
  EXPECT_EQ(store.files, files);
  EXPECT_EQ(chooser.files.size(), 3U);
}

TEST_F(LibraryNamingTest, AnEditInProgressBelongsToTheLibraryThatIsLeft) {
  TypeCode("changed");
  chooser.names = {"My New Lib"};
  answers = {MessageResult::Yes};
  naming.GetNewLib();
  EXPECT_NE(store.files[kFirst].find("changed"), std::string::npos);
  EXPECT_EQ(store.files[kNew], NewLibraryBns());
}

TEST_F(LibraryNamingTest, AnEditThatCannotBeReadKeepsTheWindowAndItsLibrary) {
  TypeCode("typed");
  view.silent = true;
  chooser.names = {"My New Lib"};
  const std::vector<std::function<void()>> leaving = {
      [&] { naming.GetNewLib(); }, [&] { ChooseFile(1); }, [&] { operations.OpenOutside(kSecond); },
      [&] { operations.SaveLibrary(); }, [&] { EXPECT_FALSE(operations.OfferToSave()); }};
  for (const auto& leave : leaving) {
    calls.clear();
    leave();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_TRUE(calls[0].starts_with("64 [Brennic Snipstore 2.x] The code cannot be read")) << calls[0];
    EXPECT_EQ(library.LibraryName, "First");
    EXPECT_EQ(chooser.selected, 0);
    EXPECT_EQ(chooser.files.size(), 3U);
  }
  view.silent = false;
  answers = {MessageResult::Yes};
  EXPECT_TRUE(operations.OfferToSave());
  EXPECT_NE(store.files[kFirst].find("typed"), std::string::npos);
}

TEST_F(LibraryNamingTest, RenamingMovesTheFileButNotTheNameThatIsSavedTo) {
  naming.RenameLibrary();
  ASSERT_TRUE(chooser.fileNameBoxShown);
  EXPECT_EQ(chooser.fileNameText, "First");
  TypeFileName("My New Lib");
  naming.AcceptName();
  EXPECT_FALSE(chooser.fileNameBoxShown);
  EXPECT_EQ(calls, (Calls{"rename " + kFirst + " to " + kNew}));
  EXPECT_EQ(chooser.files, (Rows{"My New Lib", "Second", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 0);
  EXPECT_EQ(library.LibraryName, "First");
  EXPECT_EQ(operations.SavedElsewhere(), kFirst);
  operations.SaveLibrary();
  EXPECT_TRUE(store.files.contains(kFirst));
  EXPECT_EQ(chooser.files, (Rows{"My New Lib", "Second", "First", "(Browse...)"}));
  EXPECT_EQ(chooser.selected, 2) << "the file that was written";
  EXPECT_EQ(operations.SavedElsewhere(), "");
}

TEST_F(LibraryNamingTest, ANameThatTheFileSystemRefusesChangesNothingAndSaysNothing) {
  naming.RenameLibrary();
  TypeFileName("Second");
  naming.AcceptName();
  EXPECT_EQ(calls, (Calls{"rename " + kFirst + " to " + kSecond}));
  EXPECT_EQ(chooser.files, (Rows{"First", "Second", "(Browse...)"}));
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

TEST_F(LibraryNamingTest, TheBoxIsNeverEmptyAndLeavingItGivesUp) {
  naming.RenameLibrary();
  for (const char* blank : {"", "   "}) {
    TypeFileName(blank);
    EXPECT_EQ(chooser.fileNameText, "First");
    EXPECT_TRUE(chooser.fileNameSelected);
  }
  TypeFileName(" F");
  EXPECT_EQ(chooser.fileNameText, " F");
  naming.txtFileName_LostFocus();
  EXPECT_EQ(chooser.fileNameText, "First");
  EXPECT_FALSE(chooser.fileNameBoxShown);
  EXPECT_TRUE(calls.empty());
}

TEST_F(LibraryNamingTest, AnotherLibraryEndsTheRenaming) {
  naming.RenameLibrary();
  operations.OpenOutside(kSecond);  // dropped
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

TEST_F(LibraryNamingTest, WithoutASelectedSnippetThereIsNoRenaming) {
  editing.ShowNothing("");
  naming.RenameLibrary();
  EXPECT_FALSE(chooser.fileNameBoxShown);
}

}  // namespace
}  // namespace snip::test
