#include <gtest/gtest.h>

#include <new>

#include "library/BnsFormat.h"
#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

const std::string kFirst = "C:\\Snip\\First.bns";

/// The library "First" with a change that is not saved yet, and "Second" to go to.
class SaveFaultsTest : public FakeMainWindow {
 protected:
  void SetUp() override {
    store.names = {"First", "Second"};
    for (const std::string& name : store.names) {
      const Snippet one{.Name = name, .Attachment = "", .Code = "x\r\ny", .Description = "about"};
      store.files[store.PathOf(name)] = WriteBns(std::vector{one, one});
    }
    operations.LoadFiles();
    TypeDescription("changed");
    changed_ = library;
    changedBytes_ = WriteBns(library.Snippets);
  }

  Library changed_;
  std::string changedBytes_;
};

TEST_F(SaveFaultsTest, ADiskThatIsFullAtAnyByteLeavesTheLibraryInMemoryWhole) {
  for (std::size_t room = 0; room < changedBytes_.size(); ++room) {
    store.room = room;
    library.Saved = false;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kFirst], changedBytes_.substr(0, room));
    ASSERT_EQ(library.Snippets, changed_.Snippets);
    ASSERT_EQ(library.LibraryName, "First");
    // A failed save counts as one; the next makes the file whole.
    ASSERT_TRUE(library.Saved);
    store.room = std::string::npos;
    operations.SaveLibrary();
    ASSERT_EQ(store.files[kFirst], changedBytes_);
  }
}

TEST_F(SaveFaultsTest, AQuestionAnsweredYesThatCannotBeFulfilledLeadsOnAndClaimsNothing) {
  store.failing = true;
  answers = {MessageResult::Yes};
  operations.OfferToSave();
  EXPECT_FALSE(library.Saved);
  EXPECT_EQ(library.Snippets, changed_.Snippets);

  answers = {MessageResult::Yes};
  ChooseFile(1);
  EXPECT_EQ(library.LibraryName, "Second");
  EXPECT_TRUE(library.Saved);
}

TEST_F(SaveFaultsTest, WhatIsThrownWhileSavingLeavesTheLibraryUnsaved) {
  store.whileBusy = [] { throw std::bad_alloc(); };
  EXPECT_THROW(operations.SaveLibrary(), std::bad_alloc);
  EXPECT_FALSE(library.Saved);
  EXPECT_FALSE(view.waiting);
  EXPECT_EQ(library.Snippets, changed_.Snippets);
}

TEST_F(SaveFaultsTest, MemoryThatRunsOutWhileALibraryIsOpenedNeverGivesOneLibraryTheNameOfAnother) {
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

}  // namespace
}  // namespace snip::test
