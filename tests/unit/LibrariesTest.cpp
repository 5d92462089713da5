// What scripts/main-window.txt cannot say of the main window's logic: limits, failures and threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <new>
#include <utility>

#include "library/BnsFormat.h"
#include "tests/unit/FakeMainWindow.h"
#include "ui/find/PaletteLibraries.h"
#include "ui/find/PaletteRows.h"

namespace snip::test {
namespace {

using namespace std::string_literals;

const std::string kStrings = "C:\\Snip\\Strings.bns";
const std::string kOther = "C:\\Snip\\Other.bns";

Snippet Named(const std::string& name) {
  return {.Name = name, .Attachment = "", .Code = "'" + name, .Description = "about " + name};
}

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

class LibrariesTest : public testing::Test, protected FakeMainWindow {
 protected:
  LibrariesTest() {
    store.names = {"Strings", "Other"};
    store.files = {{kStrings, WriteBns(std::vector{Named("Left"), Named("Right")})},
                   {kOther, WriteBns(std::vector{Named("Today")})}};
  }

  void Load() {
    operations.LoadFiles();
    calls.clear();
  }
  void LoadChanged() {
    Load();
    TypeDescription("changed");
    changed = library;
  }

  Library changed;
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
    EXPECT_EQ(library.LibraryName, anotherComesFirst ? "Other" : "Strings");
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

TEST_F(LibrariesTest, ThePaletteSearchesWhatIsReadAndReadsAgainWhatHasChanged) {
  CountedStore counted(calls);
  counted.files = {
      {"s", BigFile(false, 1)}, {"d", WriteBns(std::vector{Named("Noon")})}, {"o", "no library"}};
  const Folding folding = Folding::Utf8();
  const std::vector<Snippet> open{Named("New")};
  PaletteRows rows(folding);
  PaletteLibraries libraries(counted, folding);
  const auto refresh = [&] {
    libraries.Refresh(FindTarget::Open{{"Open", "p"}, &open},
                      {{"Strings", "s"}, {"Dates", "d"}, {"Other", "o"}});
    libraries.Read([] {});
  };
  const auto found = [&](const std::string& text) {
    rows.finder().SetLibraries(libraries.Searchable());
    rows.Search(text, std::nullopt);
    return rows.count();
  };
  const auto takeAll = [&] {
    bool different = false;
    while (libraries.unread() > 0) different = libraries.TakeResults() || different;
    return different;
  };
  // What is asked for next drops what is still to come.
  for (int round = 0; round < 20; ++round) refresh();
  EXPECT_EQ(found("n"), 1);  // The others are still being read.
  EXPECT_TRUE(takeAll() && found("n") == 3);
  EXPECT_EQ(libraries.Unreadable(), "Other");
  const int readsBefore = counted.reads["s"];
  refresh();
  EXPECT_TRUE(!takeAll() && counted.reads["s"] == readsBefore);

  counted.files["s"] = WriteBns(std::vector{Named("Next")});
  counted.files.erase("d");
  refresh();
  EXPECT_EQ(found("noon"), 1);
  EXPECT_TRUE(takeAll() && found("noon") == 0 && found("next") == 1);
  EXPECT_EQ(libraries.Unreadable(), "Dates, Other");
  libraries.Refresh({}, {{"Open", "p"}});  // is not the window's any more
  EXPECT_TRUE(libraries.Searchable().empty());
  refresh();  // is left behind
}

TEST_F(LibrariesTest, ANamelessLibraryIsNotAskedAbout) {
  EXPECT_EQ(operations.SavedElsewhere(), "");
  library.Saved = false;
  operations.LoadFiles();
  EXPECT_EQ(calls, Calls{"read " + kStrings});
}

TEST_F(LibrariesTest, AnOverfullFileIsLockedAndNeverWritten) {
  for (const bool version1 : {false, true}) {
    SCOPED_TRACE(version1 ? "version 1" : "version 2");
    const std::string bytes = BigFile(version1, 32769);
    store.files[kOther] = bytes;
    chooser.files.clear();
    Load();
    editing.lstCode_DblClick();
    chooser.selected = 1;
    operations.OpenBNSFile(kOther);  // with the rename going on
    ASSERT_EQ(calls.size(), 2U) << "one message";
    EXPECT_EQ(
        calls.back(),
        "64 [Brennic Snipstore 2.x] A library holds at most 32767 snippets. This file has 2 more, which "
        "could not be read. The library can be looked at but not changed, so that nothing of the file is "
        "lost.");
    EXPECT_TRUE(editing.editingDisabled());
    EXPECT_EQ(view.rows.size(), 32767U);
    calls.clear();
    editing.SettleName();
    editing.NewSnippet();
    TypeDescription("typed");
    ClickRow(32766);
    operations.SaveLibrary();
    ChooseFile(0);
    EXPECT_EQ(calls, Calls{"read " + kStrings});
    EXPECT_EQ(store.files[kOther], bytes);
    EXPECT_FALSE(editing.editingDisabled());
  }
}

TEST_F(LibrariesTest, AFullLibraryTakesNoMoreSnippetsButEdits) {
  store.files[kOther] = BigFile(false, 32766);
  Load();
  ChooseFile(1);
  editing.NewSnippet();
  editing.txtName_Cancel();
  EXPECT_EQ(view.selected, 32766);
  calls.clear();
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
  operations.SaveLibrary();
  ChooseFile(1);
  EXPECT_FALSE(editing.editingDisabled()) << "a full library is one like any other";
}

TEST_F(LibrariesTest, KeysThatTypeMakeTheLibraryUnsaved) {
  Load();
  for (const bool edits : {false, true}) {
    if (edits) editing.EditSnippet();
    for (int key = 0; key < 256; ++key) {
      library.Saved = true;
      editing.txtCode_KeyPress(static_cast<char>(key));
      EXPECT_EQ(library.Saved, !edits || (key < ' ' && key != '\r')) << key;
    }
  }
}

TEST_F(LibrariesTest, ADiskThatIsFullAtAnyByteLeavesTheLibraryInMemoryWhole) {
  LoadChanged();
  const std::string bytes = WriteBns(library.Snippets);
  for (std::size_t room = 0; room < bytes.size(); ++room) {
    store.room = room;
    library.Saved = false;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kStrings], bytes.substr(0, room));
    ASSERT_EQ(library.Snippets, changed.Snippets);
    ASSERT_EQ(library.LibraryName, "Strings");
    // A failed save counts as one; the next makes the file whole.
    ASSERT_TRUE(library.Saved);
    store.room = std::string::npos;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kStrings], bytes);
  }
  store.failing = true;
  operations.SaveLibrary();
  const std::string& byAnother = store.files[kStrings] = store.files[kOther];
  store.keeping = false;
  operations.LoadAgain(kStrings);
  EXPECT_EQ(library.Snippets, changed.Snippets) << "what is nowhere else is not replaced";
  store.keeping = true;
  operations.LoadAgain(kStrings);
  EXPECT_EQ(WriteBns(library.Snippets), byAnother);
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
    store.files[store.PathOf(name)] = WriteBns(std::vector{Named(name)});
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
  for (const auto& [entry, name] :
       std::vector<std::pair<std::string, std::string>>{{"Strings", "Strings"},
                                                        {"Strings.bns", "Strings.bns"},
                                                        {"a\\b", "a\\b"},
                                                        {"", ""},
                                                        {"C:\\My Snippets\\Strings.BNS", "Strings"},
                                                        {"C:\\dir.bns\\a.b.bns", "a.b"},
                                                        {"C:\\dir\\twice.bns.bns", "twice.bns"},
                                                        {"C:\\dir\\other.txt", "other.txt"},
                                                        {"C:\\dir\\abns", "abns"},
                                                        {"C:\\dir\\.bns", ".bns"},
                                                        {"C:\\dir/sub/Strings.bns", "Strings"},
                                                        {"\\\\server\\share\\Strings.bns", "Strings"}}) {
    EXPECT_EQ(LibraryNameFromEntry(entry), name) << entry;
  }
}

}  // namespace
}  // namespace snip::test
