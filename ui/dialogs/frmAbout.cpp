#include "ui/dialogs/frmAbout.h"

#include "platform/Fonts.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "ui/dialogs/SystemInformation.h"
#include "version.h"

namespace snip {
namespace {

constexpr const char* kCredits =
    "Made by Brennic, for programmers who would rather find a piece of code than write it twice. Thanks to "
    "everyone who tried it early and told us what was missing.";
constexpr const char* kLegalNotice =
    "Copyright 2026 The Snipstore developers. You may use this program, copy it and change it under the MIT "
    "License. It comes without warranty of any kind: keep a copy of the libraries that are dear to you.";

constexpr int kMargin = 7;   // dialog units
constexpr int kWidth = 260;  // dialog units

UniqueFont TitleFont(HFONT base) {
  LOGFONTA description{};
  GetObjectA(base, sizeof description, &description);
  description.lfHeight = description.lfHeight * 3 / 2;
  description.lfWeight = FW_BOLD;
  return UniqueFont(CreateFontIndirectA(&description));
}

}  // namespace

void frmAbout::ShowMe(HWND owner) {
  ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
}

void frmAbout::OnInit() {
  UseFont(MessageFont());
  SetWindowTextA(hWnd(), "About Brennic Snipstore");
  AddHeader();
  const int textEnd = AddTexts();

  const int width = Across(kWidth);
  const int buttonTop = textEnd + Down(kMargin);
  const HWND cmdOK = AddDefaultButton("OK", IDOK, {0, 0, 50, 14});
  const HWND cmdSysInfo = AddButton("&System Info...", kSysInfoId, {0, 0, 60, 14});
  const Size ok = ClientSize(cmdOK);
  const Size sysInfo = ClientSize(cmdSysInfo);
  MoveTo(cmdSysInfo, {Across(kMargin), buttonTop, sysInfo.width, sysInfo.height});
  MoveTo(cmdOK, {width - Across(kMargin) - ok.width, buttonTop, ok.width, ok.height});
  SizeAndCentre({width, buttonTop + ok.height + Down(kMargin)});
  SetFocus(cmdOK);
  PaintCaption();
}

void frmAbout::AddHeader() {
  const int side = 2 * GetSystemMetrics(SM_CXICON);
  const int left = Across(kMargin);
  const int top = Down(kMargin);
  headerHeight_ = top + side + top;

  picture_.Reset(static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDI_SNIPSTORE),
                                               IMAGE_ICON, side, side, LR_DEFAULTCOLOR)));
  const HWND img = CreateControl(hWnd(), "STATIC", "", WS_VISIBLE | SS_ICON | SS_REALSIZEIMAGE, 0, kImageId,
                                 nullptr, {left, top, side, side});
  SendMessageA(img, STM_SETICON, reinterpret_cast<WPARAM>(picture_.get()), 0);

  titleFont_ = TitleFont(font());
  const int textLeft = left + side + Across(2 * kMargin);
  const int textWidth = Across(kWidth - kMargin) - textLeft;
  const int titleHeight = CharacterSize(titleFont_.get()).height;
  const int lineHeight = Down(11);
  int y = (headerHeight_ - titleHeight - Down(2) - 2 * lineHeight) / 2;
  const auto add = [&](const char* text, int id, HFONT font, int height) {
    CreateControl(hWnd(), "STATIC", text, WS_VISIBLE | SS_LEFT, 0, id, font,
                  {textLeft, y, textWidth, height});
    y += height;
  };
  add(SNIPSTORE_NAME, -1, titleFont_.get(), titleHeight);
  y += Down(2);
  add("Version " SNIPSTORE_VERSION_TEXT, kVersionId, font(), lineHeight);
  add("Visual Basic add-in for easy storage of code snippets", -1, font(), lineHeight);

  CreateControl(hWnd(), "STATIC", "", WS_VISIBLE | SS_ETCHEDHORZ, 0, -1, nullptr,
                {0, headerHeight_, Across(kWidth), 2});
}

int frmAbout::AddTexts() {
  const int width = Across(kWidth - 2 * kMargin);
  int y = headerHeight_ + Down(kMargin);
  for (const char* text : {kCredits, kLegalNotice}) {
    const int height = WrappedTextSize(font(), text, width).height;
    CreateControl(hWnd(), "STATIC", text, WS_VISIBLE | SS_LEFT | SS_EDITCONTROL, 0, -1, font(),
                  {Across(kMargin), y, width, height});
    y += height + Down(kMargin);
  }
  return y;
}

void frmAbout::OnCommand(int id, int notification) {
  if (notification != BN_CLICKED) return;
  if (id == IDOK || id == IDCANCEL) End(id);
  if (id == kSysInfoId) StartSysInfo(showMessage_);
}

INT_PTR frmAbout::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto dc = reinterpret_cast<HDC>(wParam);
  if (message == WM_CTLCOLORSTATIC && PlaceInParent(reinterpret_cast<HWND>(lParam)).top < headerHeight_) {
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
  }
  if (message == WM_ERASEBKGND) {
    const Size client = ClientSize(hWnd());
    const RECT header{0, 0, client.width, headerHeight_};
    const RECT body{0, headerHeight_, client.width, client.height};
    FillRect(dc, &header, GetSysColorBrush(COLOR_WINDOW));
    FillRect(dc, &body, GetSysColorBrush(COLOR_BTNFACE));
    SetWindowLongPtrA(hWnd(), DWLP_MSGRESULT, TRUE);
    return TRUE;
  }
  return FALSE;
}

}  // namespace snip
