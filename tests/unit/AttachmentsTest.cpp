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
  Attachments attachments{library, editing, view, *this};
};

TEST_F(AttachmentsTest, OnlyAPathThatIsNotBlankCanBeViewed) {
  const std::vector<std::pair<int, bool>> cases = {{-1, false}, {0, false}, {1, false}, {2, true}};
  for (const auto& [row, canView] : cases) {
    view.selected = row;
    EXPECT_EQ(attachments.CanView(), canView) << row;
  }
}

TEST_F(AttachmentsTest, ViewingOpensThePathAsItIsStored) {
  view.selected = 2;
  attachments.ViewAttachment();
  minimizes = false;
  attachments.ViewAttachment();
  EXPECT_EQ(done, (Calls{"minimize", "open  C:\\a.frm", "open  C:\\a.frm"}));
  EXPECT_TRUE(library.Saved);
}

TEST_F(AttachmentsTest, SettingTakesTheChosenPathAndMarksTheLibraryChanged) {
  view.selected = 0;
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

TEST_F(AttachmentsTest, WithoutASelectionOrInALockedLibraryNothingHappens) {
  chosen = "D:\\picture.bmp";
  view.selected = -1;
  attachments.SetAttachment();
  attachments.ViewAttachment();
  view.selected = 0;
  editing.DisableEdit(true);
  attachments.SetAttachment();
  attachments.SetAttachment("D:\\other.bmp");
  EXPECT_TRUE(done.empty());
  EXPECT_EQ(library.Snippets[0].Attachment, "");
  EXPECT_TRUE(library.Saved);
}

}  // namespace
}  // namespace snip::test
