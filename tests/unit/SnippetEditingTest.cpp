#include "ui/main/SnippetEditing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <sstream>

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

class SnippetEditingTest : public FakeMainWindow {
 protected:
  SnippetEditingTest() { Open(kThree); }

  void Open(const Snippets& snippets) {
    library.Snippets = snippets;
    library.LibraryName = "Numbers";
    library.Saved = true;
    editing.ShowLibrary();
  }

  /// Runs steps like "row 1; rename; name deux; enter".
  void Do(const std::string& script) {
    const std::map<std::string, std::function<void(const std::string&)>> steps = {
        {"row", [&](const std::string& row) { ClickRow(std::stoi(row)); }},
        {"hold", [&](const std::string& row) { view.selected = std::stoi(row); }},  // not told yet
        {"edit", [&](const std::string&) { editing.EditSnippet(); }},
        {"double", [&](const std::string&) { editing.txtCode_DblClick(); }},
        {"code", [&](const std::string& text) { view.code = text; }},
        {"store", [&](const std::string&) { editing.StoreShownCode(); }},
        {"leave", [&](const std::string&) { editing.txtCode_LostFocus(); }},
        {"describe", [&](const std::string& text) { TypeDescription(text); }},
        {"rename", [&](const std::string&) { editing.lstCode_DblClick(); }},
        {"name", [&](const std::string& text) { view.nameBoxText = text; }},
        {"enter", [&](const std::string&) { editing.SettleName(); }},
        {"escape", [&](const std::string&) { editing.txtName_Cancel(); }},
        {"new", [&](const std::string&) { editing.NewSnippet(); }},
        {"delete", [&](const std::string&) { editing.DeleteSelectedSnippet(); }},
        {"remove", [&](const std::string& row) { editing.DeleteSnippet(std::stoi(row)); }},
        {"only", [&](const std::string& name) { Open({Named(name)}); }},
        {"empty", [&](const std::string&) { Open({}); }}};
    std::istringstream lines(script);
    for (std::string step; std::getline(lines >> std::ws, step, ';');) {
      const std::size_t blank = std::min(step.find(' '), step.size());
      steps.at(step.substr(0, blank))(step.substr(std::min(blank + 1, step.size())));
    }
  }
  /// The rows, the selected one marked; the fields; what is going on; snippets that are not as they came, or
  /// as a new one is; messages.
  std::string State() const {
    std::string state;
    for (int row = 0; row < view.RowCount(); ++row) {
      state += (row == view.selected ? ">" : "") + view.rows[static_cast<std::size_t>(row)] + " ";
    }
    state += "| " + view.code + " | " + view.description;
    if (!view.locked) state += " | editing";
    if (view.nameBoxRow) state += " | naming " + std::to_string(*view.nameBoxRow) + " " + view.nameBoxText;
    for (const Snippet& snippet : library.Snippets) {
      if (snippet == Named(snippet.Name) || snippet == Placeholder("")) continue;
      state +=
          " | " + snippet.Name + "=" + snippet.Code + "," + snippet.Description + "," + snippet.Attachment;
    }
    if (!library.Saved) state += " | changed";
    for (const std::string& call : calls) state += " ! " + call.substr(27, 12);
    return state;
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

TEST_F(SnippetEditingTest, Scripts) {
  struct Case {
    const char* script;
    const char* state;
  };
  const Case cases[] = {
      {"", ">one two three | 'one | about one"},
      {"row 2", "one two >three | 'three | about three"},
      {"empty", "|  | "},
      // Editing the code again commits it; a double click in it selects a word.
      {"row 1; edit", "one >two three | 'two | about two | editing"},
      {"row 1; edit; code typed; edit",
       "one >two three | typed | about two | two=typed,about two,C:\\two | changed"},
      {"double; code typed; double", ">one two three | typed | about one | editing"},
      {"edit; code typed; leave",
       ">one two three | typed | about one | one=typed,about one,C:\\one | changed"},
      {"edit; code 'one; leave", ">one two three | 'one | about one"},
      {"code typed; leave", ">one two three | typed | about one"},
      {"row 1; edit; code typed; row 2",
       "one two >three | 'three | about three | two=typed,about two,C:\\two | changed"},
      {"edit; code typed; store",
       ">one two three | typed | about one | editing | one=typed,about one,C:\\one | changed"},
      {"edit; code typed; store; code more; leave",
       ">one two three | more | about one | one=more,about one,C:\\one | changed"},
      // A description is stored as it is typed, unless it is emptied.
      {"row 1; describe about two; describe ; row 0", ">one two three | 'one | about one"},
      {"row 1; describe new; row 0", ">one two three | 'one | about one | two='two,new,C:\\two | changed"},
      // A name is taken by Enter and by leaving its box.
      {"row 1; rename", "one >two three | 'two | about two | naming 1 two"},
      {"row 1; rename; name deux; enter",
       "one >deux three | 'two | about two | deux='two,about two,C:\\two | changed"},
      {"rename; name typed; escape; enter", ">one two three | 'one | about one"},
      {"rename; name eins; row 2",
       "eins two >three | 'three | about three | eins='one,about one,C:\\one | changed"},
      {"rename; name ONE; enter", ">ONE two three | 'one | about one | ONE='one,about one,C:\\one | changed"},
      {"rename; name three; enter", ">one two three | 'one | about one | naming 0 three ! A snippet in"},
      {"rename; name Two; enter", ">one two three | 'one | about one | naming 0 Two ! A snippet in"},
      {"rename; name ...; enter", ">one two three | 'one | about one | naming 0 ... ! A line of th"},
      {"rename; name   ... ; enter", ">one two three | 'one | about one | naming 0   ...  ! A line of th"},
      {"rename; name two; new", ">one two three | 'one | about one | naming 0 two ! A snippet in"},
      {"rename; name eins; new",
       "eins two three >New Snippet | 'Insert code here. | <description goes here> | naming 3 New Snippet | "
       "eins='one,about one,C:\\one | changed"},
      {"edit; code typed; new",
       "one two three >New Snippet | 'Insert code here. | <description goes here> | naming 3 New Snippet | "
       "one=typed,about one,C:\\one | changed"},
      {"empty; new",
       ">New Snippet | 'Insert code here. | <description goes here> | naming 0 New Snippet | changed"},
      // After a deletion the first snippet is shown; behind the last one there is none to move up.
      {"row 1; edit; code typed; rename; name typed; delete", ">one three | 'one | about one | changed"},
      {"delete; delete", ">three | 'three | about three | changed"},
      {"row 2; delete", "one two | 'three | about three | changed"},
      {"row 2; delete; describe x; code x; store; rename; edit; double; delete; remove 2",
       "one two | x | x | changed ! No snippet s ! No snippet s ! No snippet s ! No snippet s"},
      {"row 2; edit; code typed; remove 0",
       ">two three | 'two | about two | three=typed,about three,C:\\three | changed"},
      {"only one; delete",
       ">New Snippet | 'Insert code here. | <description goes here> | New Snippet='Insert code "
       "here.,<description goes here>,C:\\one | changed"},
      // With the mouse held on another row everything is about the snippet that is shown.
      {"edit; code typed; hold 2; describe new; store; code more; leave",
       "one two >three | more | new | one=more,new,C:\\one | changed"},
      {"hold 2; edit", ">one two three | 'one | about one | editing"},
      {"hold 2; rename", "one two >three | 'one | about one | naming 0 one"},
      {"hold 2; delete", ">two three | 'two | about two | changed"},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.script);
    calls.clear();
    Open(kThree);
    Do(test.script);
    EXPECT_EQ(State(), test.state);
    EXPECT_EQ(view.codeSetWhileWaiting, !view.code.empty());
    EXPECT_FALSE(view.waiting);
    EXPECT_EQ(view.focus == Focus::NameBox, view.nameBoxRow.has_value());
    Rows names;
    for (const Snippet& snippet : library.Snippets) names.push_back(snippet.Name);
    EXPECT_EQ(view.rows, names);
  }
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
