#include "ui/main/SnippetEditing.h"

#include <gtest/gtest.h>

#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

using namespace std::string_literals;
using Snippets = std::vector<Snippet>;

Snippet Named(const std::string& name) {
  return {.Name = name, .Attachment = "C:\\" + name, .Code = "'" + name, .Description = "about " + name};
}

Snippet Placeholder(const std::string& attachment) {
  return {.Name = "New Snippet",
          .Attachment = attachment,
          .Code = "'Insert code here.",
          .Description = "<description goes here>"};
}

const Snippets kThree = {Named("one"), Named("two"), Named("three")};
const std::string kNoSelection = "64 [Brennic Snipstore 2.x] No snippet selected.";

class SnippetEditingTest : public FakeMainWindow {
 protected:
  SnippetEditingTest() { Open(kThree); }

  void Open(const Snippets& snippets) {
    library.Snippets = snippets;
    library.LibraryName = "Numbers";
    library.Saved = true;
    editing.ShowLibrary();
  }

  /// The list and the library hold these names, in this order.
  void ExpectNames(const Rows& names) const {
    EXPECT_EQ(view.rows, names);
    Rows inLibrary;
    for (const Snippet& snippet : library.Snippets) inLibrary.push_back(snippet.Name);
    EXPECT_EQ(inLibrary, names);
  }
  void ExpectShown(int row, const std::string& code, const std::string& description) const {
    EXPECT_EQ(view.selected, row);
    EXPECT_EQ(view.code, code);
    EXPECT_EQ(view.description, description);
    EXPECT_TRUE(view.locked);
  }
  void ExpectUntouched(const Snippets& snippets) const {
    EXPECT_EQ(library.Snippets, snippets);
    EXPECT_TRUE(library.Saved);
  }
};

TEST_F(SnippetEditingTest, ALibraryIsShownWithItsFirstSnippet) {
  ExpectNames({"one", "two", "three"});
  ExpectShown(0, "'one", "about one");
  EXPECT_TRUE(view.codeSetWhileWaiting);
  EXPECT_FALSE(view.waiting);

  ClickRow(2);
  ExpectShown(2, "'three", "about three");
  ExpectUntouched(kThree);

  Open({});
  ExpectNames({});
  ExpectShown(-1, "", "");
}

TEST_F(SnippetEditingTest, WhatAFieldDoesNotTellIsNotStored) {
  TypeCode("typed");
  view.silent = true;
  TypeDescription("typed");
  editing.StoreShownCode();
  ClickRow(2);
  editing.NewSnippet();
  editing.DeleteSnippet(0);
  EXPECT_FALSE(editing.txtCode_LostFocus());
  EXPECT_EQ(view.selected, 0);
  ExpectUntouched(kThree);
  EXPECT_EQ(calls.size(), 6U) << "the user is told each time";
  view.silent = false;
  EXPECT_TRUE(editing.txtCode_LostFocus());
  EXPECT_EQ(library.Snippets[0].Code, "typed");
}

TEST_F(SnippetEditingTest, WhatIsShownInPlaceOfALibraryTakesNoEdits) {
  TypeCode("typed");
  TypeName("typed");
  editing.ShowNothing("Nothing here.");
  EXPECT_EQ(view.rows, Rows{});
  ExpectShown(-1, "Nothing here.", "");
  EXPECT_FALSE(view.nameBoxRow.has_value());

  ClickRow(0);
  EXPECT_EQ(view.code, "Nothing here.");
  editing.txtCode_LostFocus();
  editing.SettleName();
  ExpectUntouched(kThree);
}

TEST_F(SnippetEditingTest, ALibraryThatIsShownTakesNoEditsFromTheOneBefore) {
  const Snippets others = {Named("four"), Named("five")};
  ClickRow(1);
  TypeCode("typed");
  TypeName("typed");
  Open(others);
  ExpectShown(0, "'four", "about four");
  EXPECT_FALSE(view.nameBoxRow.has_value());
  editing.txtCode_LostFocus();
  editing.SettleName();
  ExpectNames({"four", "five"});
  ExpectUntouched(others);
}

TEST_F(SnippetEditingTest, WithoutASelectionNothingCanBeDone) {
  ClickRow(2);
  editing.DeleteSelectedSnippet();  // behind the last row there is none to select
  library.Saved = true;
  TypeDescription("typed");
  view.code = "typed";
  editing.lstCode_Click(-1);
  EXPECT_EQ(view.code, "typed");
  editing.StoreShownCode();
  editing.lstCode_DblClick();
  EXPECT_FALSE(view.nameBoxRow.has_value());
  EXPECT_EQ(calls, Calls{});

  editing.EditSnippet();
  editing.txtCode_DblClick();
  editing.DeleteSelectedSnippet();
  editing.DeleteSnippet(2);
  EXPECT_EQ(calls, Calls(4, kNoSelection));
  EXPECT_TRUE(view.locked);
  ExpectUntouched({kThree[0], kThree[1]});
}

TEST_F(SnippetEditingTest, TheShownSnippetIsMeantWhileTheMouseIsHeldOnAnotherRow) {
  TypeCode("typed");
  view.selected = 2;  // the list tells of it when the button is let go
  TypeDescription("typed");
  editing.StoreShownCode();
  view.code = "typed more";
  editing.txtCode_LostFocus();
  EXPECT_EQ(library.Snippets[0].Code + library.Snippets[0].Description, "typed moretyped");
  EXPECT_EQ(library.Snippets[2], kThree[2]);
  editing.EditSnippet();
  EXPECT_EQ(view.selected, 0);
  editing.txtCode_LostFocus();
  view.selected = 2;
  TypeName("eins");
  EXPECT_EQ(view.nameBoxRow, 0);
  editing.SettleName();
  ExpectNames({"eins", "two", "three"});
  view.selected = 2;
  editing.DeleteSelectedSnippet();
  ExpectNames({"two", "three"});
}

TEST_F(SnippetEditingTest, EditingUnlocksTheCodeAndEditingAgainCommitsIt) {
  ClickRow(1);
  editing.EditSnippet();
  EXPECT_FALSE(view.locked);
  EXPECT_EQ(view.focus, Focus::Code);

  view.code = "typed";
  editing.EditSnippet();
  ExpectShown(1, "typed", "about two");
  EXPECT_EQ(library.Snippets[1].Code, "typed");

  editing.txtCode_DblClick();
  EXPECT_FALSE(view.locked);
  view.code = "more";
  editing.txtCode_DblClick();
  EXPECT_FALSE(view.locked) << "a double click selects a word in the edited code";
}

TEST_F(SnippetEditingTest, LeavingTheCodeCommitsTheEdit) {
  TypeCode("pasted");
  EXPECT_TRUE(library.Saved);
  editing.txtCode_LostFocus();
  ExpectShown(0, "pasted", "about one");
  EXPECT_EQ(library.Snippets[0].Code, "pasted");
  EXPECT_FALSE(library.Saved) << "changes that were not typed count when they are committed";

  library.Saved = true;
  TypeCode("pasted");
  editing.txtCode_LostFocus();
  EXPECT_TRUE(library.Saved) << "an edit that changed nothing is no change";
  view.code = "not edited";
  editing.txtCode_LostFocus();
  EXPECT_EQ(library.Snippets[0].Code, "pasted");
}

TEST_F(SnippetEditingTest, SelectingAnotherSnippetCommitsTheEditWhereItBelongs) {
  ClickRow(1);
  TypeCode("typed");
  ClickRow(2);
  EXPECT_EQ(library.Snippets[1].Code, "typed");
  EXPECT_EQ(library.Snippets[2], kThree[2]);
  ExpectShown(2, "'three", "about three");
}

TEST_F(SnippetEditingTest, KeysThatTypeMakeTheLibraryUnsaved) {
  for (const char key : "\r aZ~\x7F\x80\xA0\xE9\xFF"s) {
    Open(kThree);
    editing.txtCode_KeyPress(key);
    EXPECT_TRUE(library.Saved) << "while the code is locked: " << static_cast<int>(key);
    editing.EditSnippet();
    editing.txtCode_KeyPress(key);
    EXPECT_FALSE(library.Saved) << static_cast<int>(key);
  }
  Open(kThree);
  editing.EditSnippet();
  for (const char key : "\x1B\b\t\n\0\x01\x1F"s) {
    editing.txtCode_KeyPress(key);
    EXPECT_TRUE(library.Saved) << static_cast<int>(key);
  }
}

TEST_F(SnippetEditingTest, StoringTheShownCodeLetsTheEditGoOn) {
  ClickRow(1);
  TypeCode("typed");
  editing.StoreShownCode();
  EXPECT_EQ(library.Snippets[1].Code, "typed");
  EXPECT_FALSE(view.locked);

  view.code = "typed more";
  editing.txtCode_LostFocus();
  EXPECT_EQ(library.Snippets[1].Code, "typed more");
}

TEST_F(SnippetEditingTest, ADescriptionIsStoredAsItIsTypedUnlessItIsEmptied) {
  ClickRow(1);
  TypeDescription("about two");
  TypeDescription("");
  ExpectUntouched(kThree);
  ClickRow(0);
  ClickRow(1);
  ExpectShown(1, "'two", "about two");

  TypeDescription("new\r\ntext");
  EXPECT_EQ(library.Snippets[1].Description, "new\r\ntext");
  EXPECT_EQ(library.Snippets[0], kThree[0]);
  EXPECT_FALSE(library.Saved);
}

TEST_F(SnippetEditingTest, ASnippetIsRenamedInABoxOverItsRow) {
  ClickRow(1);
  editing.lstCode_DblClick();
  EXPECT_EQ(view.nameBoxRow, 1);
  EXPECT_EQ(view.nameBoxText, "two");
  EXPECT_EQ(view.focus, Focus::NameBox);

  view.nameBoxText = "deux";
  editing.SettleName();
  ExpectNames({"one", "deux", "three"});
  EXPECT_FALSE(view.nameBoxRow.has_value());
  EXPECT_EQ(view.selected, 1);
  EXPECT_FALSE(library.Saved);
}

TEST_F(SnippetEditingTest, ACancelledRenameChangesNothing) {
  TypeName("typed");
  editing.txtName_Cancel();
  EXPECT_FALSE(view.nameBoxRow.has_value());
  editing.SettleName();
  ExpectNames({"one", "two", "three"});
  ExpectUntouched(kThree);
}

TEST_F(SnippetEditingTest, LeavingTheBoxForAnotherRowRenamesTheRowItStoodOver) {
  TypeName("eins");
  ClickRow(2);
  ExpectNames({"eins", "two", "three"});
  EXPECT_FALSE(view.nameBoxRow.has_value());
  ExpectShown(2, "'three", "about three");
}

TEST_F(SnippetEditingTest, ANameThatAnotherSnippetHasIsRefusedInAnyCase) {
  for (const std::string& name : {"three"s, "THREE"s, "two"s, "Two"s}) {
    calls.clear();
    TypeName(name);
    editing.SettleName();
    EXPECT_EQ(calls,
              Calls{"64 [Brennic Snipstore 2.x] A snippet in this library already has this name. Please "
                    "use a different name for this snippet."});
    ExpectNames({"one", "two", "three"});
    ExpectUntouched(kThree);
    EXPECT_EQ(view.nameBoxRow, 0);
    EXPECT_EQ(view.focus, Focus::NameBox);
    editing.txtName_Cancel();
  }
  calls.clear();
  for (const std::string& name : {"one"s, "ONE"s, "four"s}) {  // its own name is no other's
    TypeName(name);
    editing.SettleName();
    ExpectNames({name, "two", "three"});
    EXPECT_FALSE(view.nameBoxRow.has_value());
  }
  EXPECT_EQ(calls, Calls{});
}

TEST_F(SnippetEditingTest, ANameThatWouldEndTheListInTheFileIsRefused) {
  for (const std::string& name : {"..."s, "  ... "s}) {
    calls.clear();
    TypeName(name);
    EXPECT_FALSE(editing.SettleName());
    EXPECT_EQ(calls.size(), 1U);
    ExpectNames({"one", "two", "three"});
    EXPECT_EQ(view.focus, Focus::NameBox);
    editing.txtName_Cancel();
  }
}

TEST_F(SnippetEditingTest, WhatFollowsATypedNameTakesItFirstOrWaitsForABetterOne) {
  TypeName("eins");
  editing.NewSnippet();
  ExpectNames({"eins", "two", "three", "New Snippet"});
  TypeName("two");
  editing.NewSnippet();
  ExpectNames({"eins", "two", "three", "New Snippet"});
  EXPECT_EQ(view.nameBoxText, "two") << "still there to be changed";
}

TEST_F(SnippetEditingTest, ANewSnippetIsAppendedSelectedAndReadyToBeNamed) {
  TypeCode("typed");
  editing.NewSnippet();
  EXPECT_EQ(library.Snippets[0].Code, "typed");
  ExpectNames({"one", "two", "three", "New Snippet"});
  EXPECT_EQ(library.Snippets[3], Placeholder(""));
  ExpectShown(3, "'Insert code here.", "<description goes here>");
  EXPECT_EQ(view.nameBoxRow, 3);
  EXPECT_EQ(view.nameBoxText, "New Snippet");

  Open({});
  editing.NewSnippet();
  ExpectNames({"New Snippet"});
  ExpectShown(0, "'Insert code here.", "<description goes here>");
  EXPECT_FALSE(library.Saved);
}

TEST_F(SnippetEditingTest, AFullLibraryRefusesAnotherSnippet) {
  Open(Snippets(32766, Named("many")));
  editing.NewSnippet();
  ASSERT_EQ(library.Snippets.size(), 32767U);
  EXPECT_EQ(view.selected, 32766);
  EXPECT_EQ(calls, Calls{});

  editing.txtName_Cancel();
  library.Saved = true;
  ClickRow(5);
  editing.NewSnippet();
  EXPECT_EQ(calls,
            Calls{"64 [Brennic Snipstore 2.x] This library is full. It holds 32767 snippets; please add the "
                  "new snippet to another library."});
  EXPECT_EQ(library.Snippets.size(), 32767U);
  EXPECT_EQ(view.rows.size(), 32767U);
  EXPECT_EQ(view.selected, 5);
  EXPECT_FALSE(view.nameBoxRow.has_value());
  EXPECT_TRUE(library.Saved);

  TypeCode("typed");
  editing.NewSnippet();
  EXPECT_EQ(library.Snippets[5].Code, "typed") << "an edit is committed all the same";
  EXPECT_TRUE(view.locked);
}

TEST_F(SnippetEditingTest, AfterADeletionTheFirstSnippetIsShown) {
  ClickRow(1);
  editing.EditSnippet();
  editing.DeleteSelectedSnippet();
  ExpectNames({"one", "three"});
  ExpectShown(0, "'one", "about one");
  EXPECT_EQ(view.focus, Focus::List);
  EXPECT_FALSE(library.Saved);

  editing.DeleteSelectedSnippet();
  ExpectNames({"three"});
  ExpectShown(0, "'three", "about three");
}

TEST_F(SnippetEditingTest, AfterTheLastSnippetIsDeletedNoneIsSelected) {
  ClickRow(2);
  editing.DeleteSelectedSnippet();
  ExpectNames({"one", "two"});
  ExpectShown(-1, "'three", "about three");  // the fields stay as they were
  EXPECT_FALSE(library.Saved);
}

TEST_F(SnippetEditingTest, TheOnlySnippetIsResetAndKeepsItsAttachment) {
  Open({Named("one")});
  editing.DeleteSelectedSnippet();
  ExpectNames({"New Snippet"});
  EXPECT_EQ(library.Snippets[0], Placeholder("C:\\one"));
  ExpectShown(0, "'Insert code here.", "<description goes here>");
  EXPECT_FALSE(library.Saved);
}

TEST_F(SnippetEditingTest, EditsGoWithTheirSnippetAndNotIntoAnother) {
  for (const int row : {0, 1, 2}) {
    SCOPED_TRACE(row);
    Snippets rest = kThree;
    rest.erase(rest.begin() + row);
    Open(kThree);
    ClickRow(row);
    TypeCode("typed");
    TypeName("typed");
    editing.DeleteSelectedSnippet();
    EXPECT_TRUE(view.locked);
    EXPECT_FALSE(view.nameBoxRow.has_value());
    editing.txtCode_LostFocus();
    editing.SettleName();
    ClickRow(1);
    EXPECT_EQ(library.Snippets, rest);
  }
}

TEST_F(SnippetEditingTest, AnEditIsKeptWhenAnotherSnippetIsDeleted) {
  ClickRow(2);
  TypeCode("typed");
  editing.DeleteSnippet(0);
  ExpectNames({"two", "three"});
  EXPECT_EQ(library.Snippets[0], kThree[1]);
  EXPECT_EQ(library.Snippets[1].Code, "typed");
  ExpectShown(0, "'two", "about two");
}

TEST_F(SnippetEditingTest, WhileEditingIsDisabledNothingCanBeChanged) {
  TypeName("begun before");
  editing.DisableEdit(true);
  EXPECT_TRUE(editing.editingDisabled());
  EXPECT_TRUE(view.editingDisabled);

  const std::vector<std::pair<const char*, std::function<void()>>> actions = {
      {"accept a name", [&] { editing.SettleName(); }},
      {"edit", [&] { editing.EditSnippet(); }},
      {"double click the code", [&] { editing.txtCode_DblClick(); }},
      {"type", [&] { view.code = "typed", editing.txtCode_KeyPress('x'); }},
      {"leave the code", [&] { editing.txtCode_LostFocus(); }},
      {"store the shown code", [&] { editing.StoreShownCode(); }},
      {"describe", [&] { TypeDescription("typed"); }},
      {"rename", [&] { editing.lstCode_DblClick(); }},
      {"add", [&] { editing.NewSnippet(); }},
      {"delete", [&] { editing.DeleteSelectedSnippet(); }},
      {"delete by number", [&] { editing.DeleteSnippet(1); }},
  };
  for (const auto& [name, action] : actions) {
    SCOPED_TRACE(name);
    action();
    ExpectUntouched(kThree);
    ExpectNames({"one", "two", "three"});
    EXPECT_TRUE(view.locked);
    EXPECT_FALSE(view.nameBoxRow.has_value());
  }
  EXPECT_EQ(calls, Calls{});

  ClickRow(1);
  ExpectShown(1, "'two", "about two");  // looking is allowed
  editing.DisableEdit(false);
  EXPECT_FALSE(view.editingDisabled);
  TypeCode("typed");
}

}  // namespace
}  // namespace snip::test
