#include "library/LibraryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "history/SystemFiles.h"
#include "history/VersionFolder.h"
#include "platform/Handle.h"
#include "tests/unit/AllBytes.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

class LibraryFolderTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  LibraryFolder store_{folder_.path()};

  std::optional<std::string> Read(const std::string& path) const { return Read(store_, path); }
  static std::optional<std::string> Read(const LibraryFolder& store, const std::string& path) {
    const auto bytes = store.Open(path);
    if (bytes == nullptr) return std::nullopt;
    std::string all = AllBytes(*bytes);
    return bytes->Failed() ? std::nullopt : std::optional(all);
  }
  bool Replace(const std::string& path, const std::string& bytes) { return Replace(store_, path, bytes); }
  static bool Replace(LibraryFolder& store, const std::string& path, const std::string& bytes) {
    return store.Replace(path, BytesInMemory(bytes));
  }
};

TEST_F(LibraryFolderTest, ListsLibrariesOnly) {
  const std::vector<std::string> libraries = {"Strings", "with blanks", "a.b.c", "s\xFC\xDF \xE9t\xE9",
                                              std::string(200, 'n')};
  for (const std::string& name : libraries) folder_.Write(name + ".bns", "x");
  for (const char* other : {".bns", "notes.bnsold", "bns", "x.bns.txt"}) folder_.Write(other, "x");
  MoveFileA(folder_.File("Strings.bns").c_str(), folder_.File("Strings.BNS").c_str());
  CreateDirectoryA(folder_.File("x.bns").c_str(), nullptr);
  const std::vector<std::string> names = store_.Names();
  EXPECT_TRUE(std::ranges::is_permutation(names, libraries)) << testing::PrintToString(names);
  EXPECT_EQ(LibraryFolder("C:\\").PathOf("x"), "C:\\x.bns");
}

TEST_F(LibraryFolderTest, AHistoryGoesAlongWithItsLibraryAndLeavesNothing) {
  SystemFiles files(std::make_shared<Patience>());
  const std::string root = folder_.File("History");
  VersionFolder former(files, root, folder_.File("a.bns")), now(files, root, folder_.File("b.bns"));
  ASSERT_TRUE(former.Make() && former.Keep("x", VersionTag::Saved));
  now.TakeFrom(former);
  EXPECT_EQ(now.Versions().size(), 1U);
  EXPECT_EQ(files.List(root).size(), 1U) << "the former name's folder is gone";
}

TEST_F(LibraryFolderTest, WhatCannotBeReadIsNothing) {
  CreateDirectoryA(folder_.File("x.bns").c_str(), nullptr);
  folder_.Write("locked.bns", "BNS2.0\r\n...\r\n");
  const UniqueFile lock(CreateFileA(folder_.File("locked.bns").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr));
  {
    const UniqueFile huge(
        CreateFileA(folder_.File("huge.bns").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    SetFilePointer(huge.get(), (256 << 20) + 1, nullptr, FILE_BEGIN);
    ASSERT_NE(SetEndOfFile(huge.get()), 0);
  }
  for (const char* name : {"x.bns", "locked.bns", "huge.bns", "missing.bns", "a<b?.bns"}) {
    EXPECT_FALSE(Read(folder_.File(name))) << name;
  }
}

TEST_F(LibraryFolderTest, ReplacesWholeFilesOfAnySize) {
  for (const std::string& bytes :
       {std::string(5000000, 'z'), std::string("a\0b\r\n\xFF", 6), std::string()}) {
    EXPECT_TRUE(Replace(store_.PathOf("lib"), bytes));
    EXPECT_EQ(folder_.Read("lib.bns"), bytes);
    EXPECT_EQ(Read(store_.PathOf("lib")), bytes);
  }
}

TEST_F(LibraryFolderTest, NamesAsLongAsTheFileSystemTakesAreReadAndWritten) {
  const std::string path = store_.PathOf(std::string(250, 'n'));
  ASSERT_GT(path.size(), 260U);
  EXPECT_TRUE(Replace(path, "one"));
  EXPECT_TRUE(Replace(path, "two"));
  EXPECT_EQ(Read(path), "two");
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
  EXPECT_TRUE(Replace(store_.PathOf("lib"), "new"));
  EXPECT_EQ(folder_.Read("lib.bns"), "new");
}

TEST_F(LibraryFolderTest, AFileThatAnotherProgramKeepsOpenStaysAsItIs) {
  folder_.Write("lib.bns", "old");
  {
    const UniqueFile lock(CreateFileA(folder_.File("lib.bns").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(Replace(store_.PathOf("lib"), "new"));
  }
  EXPECT_EQ(folder_.Read("lib.bns"), "old");
  EXPECT_FALSE(Replace(folder_.File("no such folder\\lib.bns"), "new"));
}

TEST_F(LibraryFolderTest, AFileIsNeverReadWhileItIsHalfWritten) {
  // Two versions of a file that another instance of the program saves again and again.
  const std::string versions[] = {std::string(3000000, 'a'), std::string(2000000, 'b')};
  Replace(store_.PathOf("lib"), versions[0]);
  std::atomic<bool> done = false;
  std::thread writer([&] {
    for (int i = 1; !done; ++i) Replace(store_.PathOf("lib"), versions[i % 2]);
  });
  int whole = 0;
  EXPECT_TRUE(WaitUntil([&] {
    const auto bytes = Read(store_.PathOf("lib"));
    if (!bytes) return false;  // between the deletion and the new file
    EXPECT_TRUE(*bytes == versions[0] || *bytes == versions[1]) << bytes->size();
    return ++whole == 20;
  }));
  done = true;
  writer.join();
}

TEST_F(LibraryFolderTest, NothingIsWrittenBesideTheFolderOrWhereItIsNotListed) {
  CreateDirectoryA(folder_.File("sub").c_str(), nullptr);
  folder_.Write("lib.bns", "lib");
  using namespace std::string_literals;
  for (const std::string& name : {"sub\\x"s, "sub/x"s, "..\\x"s, "sub\\..\\x"s, "lib.bns:x"s, "C:\\x"s,
                                  "\\\\.\\NUL"s, "x\0y"s, "CON"s, "nul"s, "com1 "s, "AUX.old"s, "LPT9"s}) {
    SCOPED_TRACE(testing::PrintToString(name));
    EXPECT_FALSE(Replace(store_.PathOf(name), "new"));
    EXPECT_FALSE(store_.Rename(store_.PathOf("lib"), store_.PathOf(name)));
    EXPECT_EQ(store_.Names(), std::vector<std::string>{"lib"});
    EXPECT_FALSE(folder_.Has("sub\\x.bns") || folder_.Has("..\\x.bns") || folder_.Has("x"));
    EXPECT_EQ(folder_.Read("lib.bns"), "lib");
  }
}

TEST_F(LibraryFolderTest, AnyOtherNameIsOneForALibrary) {
  for (const char* name :
       {"console", "COM", "COM10", "a.CON", " null", "x.", "it's (1) & 50% of #2; {all}"}) {
    EXPECT_TRUE(Replace(store_.PathOf(name), name)) << name;
    EXPECT_EQ(folder_.Read(std::string(name) + ".bns"), name);
  }
}

TEST_F(LibraryFolderTest, AFullDiskLeavesTheFileMissingOrShortAndSaysSo) {
  // A folder on a disk of 64 kilobytes, when the one who runs the tests may make such a disk.
  const char* disk = std::getenv("SNIPSTORE_SMALL_DISK");
  if (disk == nullptr) GTEST_SKIP() << "no small disk";
  LibraryFolder small(disk);
  for (const std::size_t size : {60000U, 64000U, 65000U, 66000U, 70000U, 100000U, 1000000U}) {
    SCOPED_TRACE(size);
    const std::string bytes(size, 'x');
    const bool complete = Replace(small, small.PathOf("lib"), bytes);
    EXPECT_EQ(complete, size <= 65536);
    const auto there = Read(small, small.PathOf("lib"));
    EXPECT_TRUE(!there || (bytes.starts_with(*there) && (there->size() == size) == complete));
  }
  EXPECT_TRUE(Replace(small, small.PathOf("lib"), "short"));
  EXPECT_EQ(Read(small, small.PathOf("lib")), "short");
}

TEST_F(LibraryFolderTest, AFolderThatCannotBeWrittenKeepsItsFiles) {
  const char* disk = std::getenv("SNIPSTORE_READ_ONLY_DISK");  // holds "lib.bns" with the text "old"
  if (disk == nullptr) GTEST_SKIP() << "no read-only disk";
  LibraryFolder readOnly(disk);
  EXPECT_FALSE(Replace(readOnly, readOnly.PathOf("lib"), "new"));
  EXPECT_FALSE(Replace(readOnly, readOnly.PathOf("other"), "new"));
  EXPECT_FALSE(readOnly.Rename(readOnly.PathOf("lib"), readOnly.PathOf("other")));
  EXPECT_EQ(readOnly.Names(), std::vector<std::string>{"lib"});
  EXPECT_EQ(Read(readOnly, readOnly.PathOf("lib")), "old");
}

TEST_F(LibraryFolderTest, AFolderThatIsGoneHoldsNothingAndTakesNothing) {
  LibraryFolder gone(folder_.File("no such folder"));
  EXPECT_TRUE(gone.Names().empty());
  EXPECT_EQ(Read(gone, gone.PathOf("lib")), std::nullopt);
  EXPECT_FALSE(gone.Exists(gone.PathOf("lib")));
  EXPECT_FALSE(Replace(gone, gone.PathOf("lib"), "new"));
  EXPECT_FALSE(gone.Rename(gone.PathOf("lib"), gone.PathOf("other")));
}

}  // namespace
}  // namespace snip::test
