#include "ui/main/Attachments.h"

#include <gtest/gtest.h>

#include "tests/unit/FakeMainWindow.h"

namespace snip::test {
namespace {

class AttachmentsTest : public FakeMainWindow, private AttachmentView {
 protected:
  AttachmentsTest() {
    library.Snippets = {{.Name = "none", .Attachment = "", .Code = "", .Description = ""},
                        {.Name = "blank", .Attachment = "   ", .Code = "", .Description = ""},
                        {.Name = "some", .Attachment = " C:\\a.frm", .Code = "", .Description = ""}};
    library.Saved = true;
    editing.ShowLibrary();
  }

  std::optional<std::string> ChooseAttachment() override {
    done.emplace_back("choose");
    return chosen;
  }
  bool MinimizeOnView() const override { return minimizes; }
  void Minimize() override { done.emplace_back("minimize"); }
  void ShellOpen(const std::string& path) override { done.push_back("open " + path); }

  std::vector<std::string> done;
  std::optional<std::string> chosen;
  bool minimizes = true;
  Attachments attachments{library, editing, *this};
};

TEST_F(AttachmentsTest, OnlyAPathThatIsNotBlankCanBeViewed) {
  const std::vector<std::pair<int, bool>> cases = {{0, false}, {1, false}, {2, true}, {-1, false}};
  for (const auto& [row, canView] : cases) {
    row < 0 ? editing.ShowNothing("") : ClickRow(row);
    done.clear();
    EXPECT_EQ(attachments.CanView(), canView) << row;
    attachments.ViewAttachment();
    EXPECT_EQ(!done.empty(), canView) << row;
  }
}

TEST_F(AttachmentsTest, ViewingOpensThePathAsItIsStored) {
  ClickRow(2);
  attachments.ViewAttachment();
  minimizes = false;
  attachments.ViewAttachment();
  EXPECT_EQ(done, (Calls{"minimize", "open  C:\\a.frm", "open  C:\\a.frm"}));
  EXPECT_TRUE(library.Saved);
}

TEST_F(AttachmentsTest, SettingTakesTheChosenPathAndMarksTheLibraryChanged) {
  ClickRow(0);
  view.selected = 1;  // the mouse is held there
  attachments.SetAttachment();
  EXPECT_EQ(library.Snippets[0].Attachment, "");
  EXPECT_TRUE(library.Saved) << "cancelled";

  chosen = "D:\\picture.bmp";
  for (int time = 0; time < 2; ++time) {  // the same path again is a change as well
    library.Saved = true;
    attachments.SetAttachment();
    EXPECT_EQ(library.Snippets[0].Attachment, "D:\\picture.bmp");
    EXPECT_FALSE(library.Saved);
  }
}

TEST_F(AttachmentsTest, AStrangersPathsAreKeptAsTheyAreAndOpenedOnlyWhenTheUserAsks) {
  const std::vector<std::string> paths = {"C:\\a b\\\"quoted\".exe\" /q",
                                          "\\\\server\\share\\x.exe",
                                          "CON",
                                          "NUL",
                                          "COM1:",
                                          "\\\\.\\PhysicalDrive0",
                                          "..\\..\\x.exe",
                                          std::string(40000, 'x'),
                                          "a\rb",
                                          "%COMSPEC%",
                                          "file:///C:/x.exe",
                                          "...",
                                          "(.)"};
  library.Snippets.clear();
  for (const std::string& path : paths) {
    library.Snippets.push_back({.Name = "x", .Attachment = path, .Code = "", .Description = ""});
  }
  store.files["C:\\Stranger.bns"] = WriteBns(library.Snippets);
  operations.OpenOutside("C:\\Stranger.bns");
  minimizes = false;
  ASSERT_EQ(library.Snippets.size(), paths.size());
  for (std::size_t row = 0; row < paths.size(); ++row) {
    ClickRow(static_cast<int>(row));
    EXPECT_TRUE(done.empty());
    EXPECT_TRUE(attachments.CanView());
    attachments.ViewAttachment();
    EXPECT_EQ(done, Calls{"open " + paths[row]});
    done.clear();
  }
  EXPECT_TRUE(library.Saved);
}

TEST_F(AttachmentsTest, APathThatTheSystemWouldCutShortIsNotOpened) {
  using namespace std::string_literals;
  library.Snippets[0].Attachment = "C:\\run.exe\0.txt"s;
  ClickRow(0);
  EXPECT_FALSE(attachments.CanView());
  attachments.ViewAttachment();
  EXPECT_TRUE(done.empty());
}

TEST_F(AttachmentsTest, APathThatWouldBeTwoLinesOfTheLibraryIsNotTaken) {
  ClickRow(2);
  attachments.SetAttachment("C:\\a\r\n(,)");
  EXPECT_EQ(library.Snippets[2].Attachment, " C:\\a.frm");
  EXPECT_TRUE(library.Saved);
}

TEST_F(AttachmentsTest, WithoutASelectionOrInALockedLibraryNothingHappens) {
  chosen = "D:\\picture.bmp";
  editing.ShowNothing("");
  attachments.SetAttachment();
  attachments.ViewAttachment();
  editing.ShowLibrary();
  editing.DisableEdit(true);
  attachments.SetAttachment();
  attachments.SetAttachment("D:\\other.bmp");
  EXPECT_TRUE(done.empty());
  EXPECT_EQ(library.Snippets[0].Attachment, "");
  EXPECT_TRUE(library.Saved);
}

}  // namespace
}  // namespace snip::test
