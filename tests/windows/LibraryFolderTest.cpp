#include "library/LibraryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/Handle.h"
#include "tests/windows/TestDesktop.h"

namespace snip::test {
namespace {

class LibraryFolderTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  LibraryFolder store_{folder_.path()};

  std::vector<std::string> SortedNames() const {
    std::vector<std::string> names = store_.Names();
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(LibraryFolderTest, ListsLibrariesOnly) {
  const std::string accents =
      "Gr\xFC\xDF"
      "e \xE9t\xE9";
  const std::string longName(200, 'n');
  for (const std::string& name :
       {std::string("Strings.bns"), std::string("UPPER.BNS"), std::string("with blanks.bns"),
        std::string("a.b.c.bns"), accents + ".bns", longName + ".bns", std::string(".bns"),
        std::string("notes.bnsold"), std::string("bns"), std::string("x.bns.txt")}) {
    folder_.Write(name, "x");
  }
  CreateDirectoryA(folder_.File("x.bns").c_str(), nullptr);
  std::vector<std::string> expected = {"Strings", "UPPER", "with blanks", "a.b.c", accents, longName};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(SortedNames(), expected);
}

TEST_F(LibraryFolderTest, FormsPathsWithOneBackslash) {
  EXPECT_EQ(LibraryFolder("C:\\dir").PathOf("My Lib"), "C:\\dir\\My Lib.bns");
  EXPECT_EQ(LibraryFolder("C:\\").PathOf("x"), "C:\\x.bns");
}

TEST_F(LibraryFolderTest, WhatCannotBeReadIsNothing) {
  CreateDirectoryA(folder_.File("x.bns").c_str(), nullptr);
  folder_.Write("locked.bns", "BNS2.0\r\n...\r\n");
  const UniqueFile lock(CreateFileA(folder_.File("locked.bns").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr));
  for (const char* name : {"x.bns", "locked.bns", "missing.bns", "a<b?.bns"}) {
    EXPECT_EQ(store_.Read(folder_.File(name)), std::nullopt) << name;
  }
}

TEST_F(LibraryFolderTest, ReplacesWholeFilesOfAnySize) {
  for (const std::string& bytes :
       {std::string(5000000, 'z'), std::string("a\0b\r\n\xFF", 6), std::string()}) {
    EXPECT_TRUE(store_.Replace(store_.PathOf("lib"), bytes));
    EXPECT_EQ(folder_.Read("lib.bns"), bytes);
    EXPECT_EQ(store_.Read(store_.PathOf("lib")), bytes);
  }
}

TEST_F(LibraryFolderTest, NamesAsLongAsTheFileSystemTakesAreReadAndWritten) {
  const std::string path = store_.PathOf(std::string(250, 'n'));
  ASSERT_GT(path.size(), 260U);
  EXPECT_TRUE(store_.Replace(path, "one"));
  EXPECT_TRUE(store_.Replace(path, "two"));
  EXPECT_EQ(store_.Read(path), "two");
  EXPECT_EQ(store_.Names(), std::vector<std::string>{std::string(250, 'n')});
}

TEST_F(LibraryFolderTest, AFileThatIsLetGoAMomentLaterIsStillReplaced) {
  folder_.Write("lib.bns", "old");
  UniqueFile scanner(CreateFileA(folder_.File("lib.bns").c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(scanner);
  const Driver driver([&] {
    Sleep(60);  // the moment
    scanner.Reset();
  });
  EXPECT_TRUE(store_.Replace(store_.PathOf("lib"), "new"));
  EXPECT_EQ(folder_.Read("lib.bns"), "new");
}

TEST_F(LibraryFolderTest, AFileThatAnotherProgramKeepsOpenStaysAsItIs) {
  folder_.Write("lib.bns", "old");
  {
    const UniqueFile lock(CreateFileA(folder_.File("lib.bns").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(store_.Replace(store_.PathOf("lib"), "new"));
  }
  EXPECT_EQ(folder_.Read("lib.bns"), "old");
  EXPECT_FALSE(store_.Replace(folder_.File("no such folder\\lib.bns"), "new"));
}

}  // namespace
}  // namespace snip::test
