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

}  // namespace

void frmAddIn::MakeControls() {
  // In Tab order, those that cover others first, because a new sibling goes below the earlier ones. The panes
  // are no windows, and the boxes for names are made when they are first shown: each window more makes a
  // start under Wine 8 take 0.6 % longer.
  chooser_.Create(hWnd(), kFilesId, kFileNameId, font_.get());
  bars_.CreateMain(hWnd(), kMainBarId, font_.get());
  picSplt_.CreateIn(hWnd(), "Width of the snippet list");
  picHSplt_.CreateIn(hWnd(), "Height of the description");
  controls_.Create(hWnd(),
                   {.lstCode = kListId, .txtName = kNameId, .txtDesc = kDescriptionId, .txtCode = kCodeId},
                   font_.get());
  cmdAttach_ = CreateControl(
      hWnd(), "BUTTON", "Attachment", WS_VISIBLE | WS_CLIPSIBLINGS | WS_GROUP | WS_TABSTOP | BS_PUSHBUTTON, 0,
      kAttachId, font_.get(), twips_.ToPixels({0, 0, kAttachButton.width, kAttachButton.height}));
  bars_.CreateEdit(hWnd(), kEditBarId, font_.get());
  // Tab follows the z-order: put the attachment between the description and the code.
  SetWindowPos(cmdAttach_, controls_.txtDesc(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

  tTip_.Attach(controls_.lstCode());
  tTip_.TakeListFont();
  watch_.Attach(hWnd(), controls_.lstCode());
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
  MoveTo(controls_.lstCode(), twips_.ToPixels(places->leftPane));
  MoveTo(picSplt_.hWnd(), twips_.ToPixels(places->splitter));
  controls_.BringNameBoxBack();
  rightPane_ = twips_.ToPixels(places->rightPane);
  RightPane_Resize();
}

void frmAddIn::cmd_Resize() {
  chooser_.Place({.left = twips_.ToPixelsX(bars_.cmd.NextButtonX()),
                  .bar = ClientSize(bars_.cmd.hWnd()),
                  .rightMargin = twips_.ToPixelsX(kChooserRightMargin),
                  .boxInset = twips_.ToPixelsX(kFileNameInset),
                  .boxNarrower = twips_.ToPixelsX(kFileNameNarrower)});
}

void frmAddIn::RightPane_Resize(bool evenIfTooLow) {
  const RightPaneSizes sizes{.inner = twips_.ToTwips({rightPane_.width, rightPane_.height}),
                             .descriptionHeight = descriptionHeight_,
                             .attachPanelWidth = kAttachPanelWidth,
                             .editBarHeight = kBarHeight,
                             .splitterBottom = descriptionHeight_ + kSplitterSize};
  if (const auto places = LayOutRightPane(sizes)) {
    rightPlaces_ = *places;
  } else if (evenIfTooLow) {
    rightPlaces_ = PlaceRightPane(sizes);
  }
  MoveTo(controls_.txtDesc(), InRightPane(rightPlaces_.description));
  controls_.FitDescriptionBar();
  MoveTo(bars_.cmdEdit.hWnd(), InRightPane(rightPlaces_.editBar));
  MoveTo(controls_.txtCode().hWnd(), InRightPane(rightPlaces_.code));
  MoveTo(picHSplt_.hWnd(), InRightPane(rightPlaces_.splitter));

  const Rect panel = InRightPane(rightPlaces_.attachPanel);
  Rect button = PlaceInParent(cmdAttach_);
  button.left = panel.left + (panel.width - button.width) / 2;
  button.top = panel.top + (panel.height - button.height) / 2;
  MoveTo(cmdAttach_, button);
}

Rect frmAddIn::InRightPane(const Rect& place) const {
  const Rect pixels = twips_.ToPixels(place);
  return {rightPane_.left + pixels.left, rightPane_.top + pixels.top, pixels.width, pixels.height};
}

void frmAddIn::picSplt_MouseUp(int left) {
  leftPaneWidth_ = LeftPaneWidthAfterDrop(twips_.ToTwipsX(left), twips_.ToTwipsX(ClientSize(hWnd()).width));
  MoveTo(picSplt_.hWnd(), {twips_.ToPixelsX(leftPaneWidth_), PlaceInParent(picSplt_.hWnd()).top,
                           twips_.ToPixelsX(kSplitterSize), ClientSize(picSplt_.hWnd()).height});
  Form_Resize();
}

void frmAddIn::picHSplt_MouseUp(int top) {
  descriptionHeight_ =
      DescriptionHeightAfterDrop(twips_.ToTwipsY(top - rightPane_.top), twips_.ToTwipsY(rightPane_.height));
  // The user may drop it so low that the code has no room; the window is laid out all the same.
  RightPane_Resize(true);
}

}  // namespace snip
