// The controls of the main window, their layout, and the settings of the window.
#include <algorithm>

#include "platform/ScreenTwips.h"
#include "settings/SettingsText.h"
#include "ui/main/MainWindowLayout.h"
#include "ui/main/frmAddIn.h"

namespace snip {
namespace {

// In twips.
constexpr int kBarHeight = 390;
constexpr int kAttachPanelWidth = 1500;
constexpr Size kAttachButton{1320, 345};

// In twips: from the library chooser to the right end of its bar, and from the chooser to the name box over
// it.
constexpr int kChooserRightMargin = 40;
constexpr int kFileNameInset = 60;
constexpr int kFileNameNarrower = 330;
/// From the edge of the pane to the highlight along the list, in twips.
constexpr int kFrameInset = 15;

}  // namespace

void frmAddIn::MakeControls() {
  // In Tab order. Controls that cover others are made first, because a new sibling goes below the earlier
  // ones.
  chooser_.Create(hWnd(), kFilesId, kFileNameId, font_.get());
  bars_.CreateMain(hWnd(), kMainBarId, font_.get());
  controls_.CreateNameBox(hWnd(), kNameId, font_.get());
  picSplt_.CreateIn(hWnd(), "Width of the snippet list");
  leftPane_.CreateIn(hWnd(), "Snippets", [this](HDC dc) { LeftPane_Paint(dc); });
  rightPane_.CreateIn(hWnd(), "Snippet");
  picHSplt_.CreateIn(rightPane_.hWnd(), "Height of the description");
  controls_.Create(leftPane_.hWnd(), rightPane_.hWnd(),
                   {.lstCode = kListId, .txtDesc = kDescriptionId, .txtCode = kCodeId}, font_.get());
  picAttach_.CreateIn(rightPane_.hWnd(), "Snippet Attachment");
  cmdAttach_ = CreateControl(picAttach_.hWnd(), "BUTTON", "Attachment",
                             WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, kAttachId, font_.get(),
                             twips_.ToPixels({0, 0, kAttachButton.width, kAttachButton.height}));
  bars_.CreateEdit(rightPane_.hWnd(), kEditBarId, font_.get());
  // Tab follows the z-order: put the attachment between the description and the code.
  SetWindowPos(picAttach_.hWnd(), controls_.txtDesc(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

  tTip_.Attach(leftPane_.hWnd(), controls_.lstCode());
  tTip_.TakeListFont();
  watch_.Attach(hWnd(), rightPane_.hWnd());
  captionHook_.Install(hWnd(), services_.caption);
}

// --- Settings ---------------------------------------------------------------------------------------------

void frmAddIn::LoadSettings() {
  const Settings settings = services_.settings.Load();
  if (settings.KeepOnTop) {
    SetKeepOnTop(true);
    bars_.cmd.SetState(MainButton::kKeepOnTop, 1);
  }
  switches_ = settings.switches;
  bars_.cmd.SetPlaysSounds(switches_[Switch::UseSounds]);
  bars_.cmdEdit.SetPlaysSounds(switches_[Switch::UseSounds]);

  FontProperty font = controls_.Font();
  if (settings.FontName) font.Name = *settings.FontName;
  if (settings.FontSize) font.Size = *settings.FontSize;
  controls_.SetFont(font);
  bars_.cmdEdit.SetState(EditButton::kSyntaxHighlighting, settings.ColorSyntax);
  controls_.txtCode().SetSyntaxColors(bars_.cmdEdit.state(EditButton::kSyntaxHighlighting) != 0);

  if (settings.LeftPaneWidth) leftPaneWidth_ = std::max(*settings.LeftPaneWidth, kLeastLeftPaneWidth);
  if (settings.DescriptionHeight) {
    descriptionHeight_ = std::max(*settings.DescriptionHeight, kLeastDescriptionHeight);
  }
  const Rect place = PlaceInParent(hWnd());
  const Size design = twips_.ToTwips({place.width, place.height});
  const Rect wanted{RoundHalfToEven(settings.Left), RoundHalfToEven(settings.Top),
                    settings.Width.value_or(design.width), settings.Height.value_or(design.height)};
  MoveTo(hWnd(), twips_.ToPixels(wanted));

  // A window that is too small keeps its last layout, but a new window has none: make the stored sizes fit.
  const Size room = RoomForSplitters(twips_.ToTwips(ClientSize(hWnd())), kBarHeight, twips_);
  leftPaneWidth_ = std::max(kLeastLeftPaneWidth, std::min(leftPaneWidth_, room.width));
  descriptionHeight_ = std::max(kLeastDescriptionHeight, std::min(descriptionHeight_, room.height));
  Form_Resize();
}

void frmAddIn::CloseSettings() {
  // Store the place of the restored window, not of the minimised or maximised one.
  if (IsIconic(hWnd()) != 0 || IsZoomed(hWnd()) != 0) ShowWindow(hWnd(), SW_SHOWNOACTIVATE);
  const Rect place = PlaceInParent(hWnd());
  services_.settings.SaveWindow({.KeepOnTop = bars_.cmd.state(MainButton::kKeepOnTop),
                                 .ColorSyntax = bars_.cmdEdit.state(EditButton::kSyntaxHighlighting),
                                 .Top = place.top * twips_.y,
                                 .Left = place.left * twips_.x,
                                 .Width = place.width * twips_.x,
                                 .Height = place.height * twips_.y,
                                 .LeftPaneWidth = static_cast<double>(leftPaneWidth_),
                                 .DescriptionHeight = static_cast<double>(descriptionHeight_)});
}

// --- Layout -----------------------------------------------------------------------------------------------

void frmAddIn::Form_Resize() {
  if (IsIconic(hWnd()) != 0) return;
  const Size pixels = ClientSize(hWnd());
  MoveTo(bars_.cmd.hWnd(), {0, 0, pixels.width, twips_.ToPixelsY(kBarHeight)});
  const auto places = LayOutMainWindow({.client = twips_.ToTwips(pixels),
                                        .barHeight = kBarHeight,
                                        .leftPaneWidth = leftPaneWidth_,
                                        .rightPaneTop = kBarHeight + 15,
                                        .splitterRight = leftPaneWidth_ + kSplitterSize});
  if (!places) return;
  MoveTo(leftPane_.hWnd(), twips_.ToPixels(places->leftPane));
  MoveTo(rightPane_.hWnd(), twips_.ToPixels(places->rightPane));
  MoveTo(picSplt_.hWnd(), twips_.ToPixels(places->splitter));

  constexpr int leastListHeight = 350;
  const Size list = ClientSize(leftPane_.hWnd());
  if (twips_.ToTwipsY(list.height) >= leastListHeight) {
    MoveTo(controls_.lstCode(), {0, 0, list.width, list.height});
    controls_.BringNameBoxBack();
  }
  RightPane_Resize();
}

void frmAddIn::cmd_Resize() {
  chooser_.Place({.left = twips_.ToPixelsX(bars_.cmd.NextButtonX()),
                  .bar = ClientSize(bars_.cmd.hWnd()),
                  .rightMargin = twips_.ToPixelsX(kChooserRightMargin),
                  .boxInset = twips_.ToPixelsX(kFileNameInset),
                  .boxNarrower = twips_.ToPixelsX(kFileNameNarrower)});
}

void frmAddIn::LeftPane_Paint(HDC dc) {
  const Rect list = PlaceInParent(controls_.lstCode());
  const int right = list.right() - twips_.ToPixelsX(kFrameInset);
  const int bottom = list.bottom() - twips_.ToPixelsY(kFrameInset);
  const RECT below{0, bottom, right + 1, bottom + 1};
  const RECT beside{right, 0, right + 1, bottom + 1};
  FillRect(dc, &below, GetSysColorBrush(COLOR_3DHILIGHT));
  FillRect(dc, &beside, GetSysColorBrush(COLOR_3DHILIGHT));
}

void frmAddIn::RightPane_Resize(bool evenIfTooLow) {
  const RightPaneSizes sizes{.inner = twips_.ToTwips(ClientSize(rightPane_.hWnd())),
                             .descriptionHeight = descriptionHeight_,
                             .attachPanelWidth = kAttachPanelWidth,
                             .editBarHeight = kBarHeight,
                             .splitterBottom = descriptionHeight_ + kSplitterSize};
  auto places = LayOutRightPane(sizes);
  if (!places && evenIfTooLow) places = PlaceRightPane(sizes);
  if (!places) return;
  MoveTo(picAttach_.hWnd(), twips_.ToPixels(places->attachPanel));
  MoveTo(controls_.txtDesc(), twips_.ToPixels(places->description));
  MoveTo(bars_.cmdEdit.hWnd(), twips_.ToPixels(places->editBar));
  MoveTo(controls_.txtCode().hWnd(), twips_.ToPixels(places->code));
  MoveTo(picHSplt_.hWnd(), twips_.ToPixels(places->splitter));

  const Size panel = ClientSize(picAttach_.hWnd());
  Rect button = PlaceInParent(cmdAttach_);
  button.left = (panel.width - button.width) / 2;
  button.top = (panel.height - button.height) / 2;
  MoveTo(cmdAttach_, button);
}

void frmAddIn::picSplt_MouseUp(int left) {
  leftPaneWidth_ = LeftPaneWidthAfterDrop(twips_.ToTwipsX(left), twips_.ToTwipsX(ClientSize(hWnd()).width));
  MoveTo(picSplt_.hWnd(), {twips_.ToPixelsX(leftPaneWidth_), PlaceInParent(picSplt_.hWnd()).top,
                           twips_.ToPixelsX(kSplitterSize), ClientSize(picSplt_.hWnd()).height});
  Form_Resize();
}

void frmAddIn::picHSplt_MouseUp(int top) {
  descriptionHeight_ =
      DescriptionHeightAfterDrop(twips_.ToTwipsY(top), twips_.ToTwipsY(ClientSize(rightPane_.hWnd()).height));
  // The user may drop it so low that the code has no room; the window is laid out all the same.
  RightPane_Resize(true);
}

}  // namespace snip
