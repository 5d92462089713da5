#include "ui/commandbar/BnCommandBar.h"

#include <windowsx.h>

#include <array>
#include <cmath>
#include <utility>

#include "platform/Drawing.h"
#include "platform/Fonts.h"
#include "platform/MouseMessage.h"
#include "platform/Rects.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/commandbar/ButtonPainter.h"
#include "ui/commandbar/PropertyFont.h"

namespace snip {
namespace {

char ToLower(char c) {
  CharLowerBuffA(&c, 1);
  return c;
}

/// The host's numbers of mouse pointers, 0 (the default) to 15.
const std::array<LPCSTR, 16> kPointers = {
    IDC_ARROW,    IDC_ARROW,  IDC_CROSS,   IDC_IBEAM, IDC_ICON, IDC_SIZE,        IDC_SIZENESW, IDC_SIZENS,
    IDC_SIZENWSE, IDC_SIZEWE, IDC_UPARROW, IDC_WAIT,  IDC_NO,   IDC_APPSTARTING, IDC_HELP,     IDC_SIZEALL};
constexpr std::int16_t kManualDrop = 1;      ///< OLEDropMode: the container handles what is dropped.
constexpr std::int16_t kCustomPointer = 99;  ///< The cursor of MouseIcon.

BarMouse MouseArguments(std::int16_t button, WPARAM keys, LPARAM lParam) {
  return {
      button, HeldShiftKeys(keys, GetKeyState(VK_MENU) < 0), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}};
}

}  // namespace

BnCommandBar::BnCommandBar(Services services, Events events)
    : services_(std::move(services)),
      events_(std::move(events)),
      twips_(ScreenTwips()),
      buttons_({.toLower = &ToLower,
                .sameText =
                    [](std::string_view a, std::string_view b) {
                      return SameTextIgnoringCase(std::string(a), std::string(b));
                    }}),
      input_(buttons_, properties_, *this),
      // Never scaled, because its part of the button is eight pixels wide on every screen.
      drop_(Picture::FromResource(IDB_DROP_ARROW)) {}

BnCommandBar::~BnCommandBar() {
  Destroy();
}

bool BnCommandBar::CreateIn(HWND parent, int id, const std::string& name, const FontProperty& ambientFont,
                            bool runMode) {
  ambientFont_ = ambientFont;
  properties_ = CommandBarProperties::Initial(ambientFont);
  MakeFont();
  const bool made = Create({.className = "BnCommandBar",
                            .title = name.c_str(),
                            .style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,  // a control may be on it
                            .place = {},
                            .parent = parent,
                            .id = id,
                            .classStyle = CS_DBLCLKS | CS_OWNDC});
  if (made) Tell(&CommandBarInput::Show, runMode);
  return made;
}

void BnCommandBar::ReadProperties(const PropertyBag& bag) {
  properties_ = CommandBarProperties::Read(bag, ambientFont_);
  EnableWindow(hWnd(), properties_.Enabled ? TRUE : FALSE);
  LoadMouseIcon();
  MakeFont();
  FollowOLEDropMode();
  LayOut();
}

void BnCommandBar::WriteProperties(PropertyBag& bag) const {
  properties_.Write(bag, ambientFont_);
}

void BnCommandBar::AddButton(const std::string& caption, PictureRef picture, ButtonType type,
                             DisplayType display, bool grayBtn) {
  const Size pictureSize = picture ? picture->size() : Size{};
  const BarChange change = buttons_.Add({.Caption = caption,
                                         .Picture = std::move(picture),
                                         .PictureSize = pictureSize,
                                         .ButtonType = type,
                                         .DisplayType = display,
                                         .GrayBtn = grayBtn},
                                        Metrics());
  if (Apply(change)) accessible_.Notify(EVENT_OBJECT_REORDER);
}

void BnCommandBar::RemoveButton(int index) {
  if (Apply(buttons_.Remove(index, Metrics()))) accessible_.Notify(EVENT_OBJECT_REORDER);
}

void BnCommandBar::MoveButton(int index, int newIndex) {
  if (Apply(buttons_.Move(index, newIndex, Metrics()))) accessible_.Notify(EVENT_OBJECT_REORDER);
}

int BnCommandBar::NextButtonX() const {
  return buttons_.NextButtonX(Metrics(), twips_);
}

void BnCommandBar::SetCaption(int index, const std::string& caption) {
  if (buttons_.Find(index) == nullptr) return;
  if (Apply(buttons_.SetCaption(index, caption, Metrics())))
    accessible_.Notify(EVENT_OBJECT_NAMECHANGE, accessibleItems_.ItemOf(index));
}

std::string BnCommandBar::Shortcut(int index, ButtonPart part) const {
  const auto found = shortcuts_.find({buttons_.IdOf(index), part});
  return found == shortcuts_.end() ? std::string() : found->second;
}

void BnCommandBar::SetGrayed(int index, bool grayed) {
  Apply(buttons_.SetGrayed(index, grayed));
  AnnounceStates();
}

void BnCommandBar::SetState(int index, std::int32_t state) {
  Apply(buttons_.SetState(index, state));
  AnnounceStates();
}

void BnCommandBar::EraseBtn(int index) {
  const BarButton* button = buttons_.Find(index);
  if (button == nullptr || hWnd() == nullptr) return;
  const WindowDC dc(hWnd());
  ButtonPainter(dc.get(), painter_).Erase(button->Area());
}

void BnCommandBar::RedrawButton(int index) {
  const BarButton* button = buttons_.Find(index);
  if (button == nullptr || !input_.InRunMode()) return;
  if (IsWindowVisible(hWnd()) == 0) return;  // painted when it is shown
  PaintButton(index, RedrawLook(*button));
}

void BnCommandBar::Refresh() {
  if (hWnd() == nullptr) return;  // the system would take it for the desktop
  RedrawWindow(hWnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void BnCommandBar::SetEnabled(bool enabled) {
  properties_.Enabled = enabled;
  EnableWindow(hWnd(), enabled ? TRUE : FALSE);
  PropertyChanged(BarProperty::kEnabled);
}

void BnCommandBar::SetFont(const FontProperty& font) {
  properties_.Font = font;
  MakeFont();
  PropertyChanged(BarProperty::kFont);
}

void BnCommandBar::SetBorderStyle(std::int16_t style) {
  properties_.BorderStyle = style;
  Refresh();
  PropertyChanged(BarProperty::kBorderStyle);
}

void BnCommandBar::SetMaskColor(ColorProperty color) {
  properties_.MaskColor = color;
  PropertyChanged(BarProperty::kMaskColor);
}

void BnCommandBar::SetDockable(bool dockable) {
  properties_.Dockable = dockable;
  if (PropertyChanged(BarProperty::kDockable)) LayOut();
}

void BnCommandBar::SetMouseIcon(const std::string& cursorFile) {
  properties_.MouseIcon.file = cursorFile;
  LoadMouseIcon();
  PropertyChanged(BarProperty::kMouseIcon);
}

void BnCommandBar::SetMousePointer(std::int16_t pointer) {
  properties_.MousePointer = pointer;
  PropertyChanged(BarProperty::kMousePointer);
}

void BnCommandBar::SetOLEDropMode(std::int16_t mode) {
  properties_.OLEDropMode = mode;
  FollowOLEDropMode();
  PropertyChanged(BarProperty::kOLEDropMode);
}

bool BnCommandBar::AccessKeyPress(char key) {
  const auto code = static_cast<std::int16_t>(static_cast<unsigned char>(key));
  if (buttons_.IndexFromAccessKey(code) < 0) return false;
  Tell(&CommandBarInput::AccessKeyPress, code);
  return true;
}

int BnCommandBar::PopupMenu(HMENU menu, Point at) const {
  POINT screen = ToPOINT(at);
  ClientToScreen(hWnd(), &screen);
  return TrackPopupMenu(menu, TPM_RETURNCMD | TPM_NONOTIFY, screen.x, screen.y, 0,
                        GetAncestor(hWnd(), GA_ROOT), nullptr);
}

void BnCommandBar::ShowAboutBox() const {
  services_.showMessage(
      "Brennic BnCommandBar 1.0\r\n\r\nA toolbar control with flat buttons. It is a part of Brennic "
      "Snipstore and "
      "released on its terms.",
      MessageStyle::kInformation, "Brennic BnCommandBar");
}

bool BnCommandBar::Apply(const BarChange& change) {
  const Lifetime::Watch watch = lifetime_.Begin();
  const Size size = ClientSize(hWnd());
  if (change.ownWidth && *change.ownWidth != size.width) {
    // The bar answers its new size itself, by laying out and repainting.
    SetWindowPos(hWnd(), nullptr, 0, 0, *change.ownWidth, size.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return !watch.Ended();
  }
  if (change.redrawButton) RedrawButton(*change.redrawButton);
  if (change.refresh) Refresh();
  return true;
}

void BnCommandBar::ShowTip(const std::string& text, Point screen) {
  if (services_.tip == nullptr) return;
  services_.tip->ShowTip(text, screen.x, screen.y);
  showsTip_ = true;
}

void BnCommandBar::HideTip() {
  if (services_.tip != nullptr) services_.tip->Hide();
  showsTip_ = false;
}

bool BnCommandBar::TakeCapture() {
  const Lifetime::Watch watch = lifetime_.Begin();
  SetCapture(hWnd());
  return !watch.Ended() && hWnd() != nullptr;
}

void BnCommandBar::ReleaseCapture() {
  if (GetCapture() == hWnd()) ::ReleaseCapture();
}

bool BnCommandBar::Raise(BarButtonEvent event, int button) {
  return CallAsWindow(event == BarButtonEvent::ButtonClicked ? events_.ButtonClicked
                      : event == BarButtonEvent::Dropdown    ? events_.Dropdown
                      : event == BarButtonEvent::MouseHover  ? events_.MouseHover
                                                             : events_.MouseLeave,
                      button);
}

bool BnCommandBar::Raise(BarMouseEvent event, const BarMouse& mouse) {
  return CallAsWindow(event == BarMouseEvent::MouseDown   ? events_.MouseDown
                      : event == BarMouseEvent::MouseMove ? events_.MouseMove
                                                          : events_.MouseUp,
                      mouse);
}

bool BnCommandBar::PropertyChanged(const char* name) {
  return lifetime_.Call(events_.PropertyChanged, name);
}

/// Tells assistive programs of every item whose state is another than the one they were told last.
void BnCommandBar::AnnounceStates() {
  for (int item = 0; item < accessibleItems_.AccessibleCount(); ++item) {
    const LONG state = accessibleItems_.DescribeItem(item).state;
    const auto [announced, isNew] = announcedStates_.try_emplace(accessibleItems_.IdOf(item), state);
    if (isNew || announced->second == state) continue;
    announced->second = state;
    accessible_.Notify(EVENT_OBJECT_STATECHANGE, item);
  }
}

BarMetrics BnCommandBar::Metrics() const {
  return {.scaleHeight = ClientSize(hWnd()).height,
          .dockable = properties_.Dockable,
          .textWidth = [this](std::string_view text) { return TextSize(font_.get(), text).width; }};
}

void BnCommandBar::MakeFont() {
  font_ = snip::MakeFont(properties_.Font, twips_);
  const MeasuringDC dc;
  const SelectedObject font(dc.get(), font_.get());
  TEXTMETRICA metrics{};
  GetTextMetricsA(dc.get(), &metrics);
  lineHeight_ = static_cast<int>(metrics.tmHeight);
}

void BnCommandBar::LoadMouseIcon() {
  const std::string& file = properties_.MouseIcon.file;
  mouseIcon_.Reset(file.empty() ? nullptr
                                : static_cast<HCURSOR>(LoadImageA(nullptr, file.c_str(), IMAGE_CURSOR, 0, 0,
                                                                  LR_LOADFROMFILE | LR_DEFAULTSIZE)));
}

bool BnCommandBar::SetPointer() const {
  const std::int16_t pointer = properties_.MousePointer;
  if (pointer == kCustomPointer) {
    if (mouseIcon_) SetCursor(mouseIcon_.get());
    return static_cast<bool>(mouseIcon_);
  }
  if (pointer <= 0 || static_cast<std::size_t>(pointer) >= kPointers.size()) return false;
  SetCursor(LoadCursorA(nullptr, kPointers[static_cast<std::size_t>(pointer)]));
  return true;
}

/// In a designer, what is dragged onto a bar is for the designer.
void BnCommandBar::FollowOLEDropMode() {
  if (properties_.OLEDropMode != kManualDrop || !input_.InRunMode()) {
    dropTarget_.Revoke();
  } else if (hWnd() != nullptr && !dropTarget_.registered()) {
    dropTarget_.Register(hWnd(), {.dragOver = events_.OLEDragOver, .dragDrop = events_.OLEDragDrop});
  }
}

void BnCommandBar::LayOut() {
  Apply(buttons_.LayOut(Metrics()));
}

void BnCommandBar::UserControl_Resize() {
  const BarChange change = buttons_.LayOut(Metrics());
  const bool sizedAnew = change.ownWidth && *change.ownWidth != ClientSize(hWnd()).width;
  if (Apply(change) && !sizedAnew) lifetime_.Call(events_.Resize);
}

void BnCommandBar::UserControl_Paint(HDC dc) {
  const Size client = ClientSize(hWnd());
  const Canvas canvas(client);
  const ButtonPainter painter(canvas.dc(), painter_);
  painter.Erase({0, 0, client.width, client.height});
  painter.DrawBorder({0, 0, client.width, client.height}, properties_.BorderStyle);
  if (properties_.Dockable) painter.DrawGrip(client.height);
  const std::vector<ButtonLook> looks = PaintLooks(buttons_.All(), input_.InRunMode());
  for (std::size_t i = 0; i < looks.size(); ++i)
    DrawBarButton(canvas.dc(), painter_, buttons_.All()[i], looks[i], Style());
  BitBlt(dc, 0, 0, client.width, client.height, canvas.dc(), 0, 0, SRCCOPY);
}

/// Draws a button beside the screen and shows it in one go, so that it never flickers.
void BnCommandBar::PaintButton(int index, const ButtonLook& look) {
  const BarButton* button = buttons_.Find(index);
  if (button == nullptr || hWnd() == nullptr) return;
  const Rect area = button->Area();
  const Canvas canvas({area.width, area.height});
  SetViewportOrgEx(canvas.dc(), -area.left, -area.top, nullptr);
  DrawBarButton(canvas.dc(), painter_, *button, look, Style());
  BitBlt(WindowDC(hWnd()).get(), area.left, area.top, area.width, area.height, canvas.dc(), area.left,
         area.top, SRCCOPY);
}

BarStyle BnCommandBar::Style() const {
  return {.font = font_.get(),
          .lineHeight = lineHeight_,
          .maskColor = properties_.MaskColor.value,
          .drop = drop_.get(),
          .scaleHeight = ClientSize(hWnd()).height};
}

void BnCommandBar::tHitTest_Timer() {
  POINT screen{};
  GetCursorPos(&screen);
  const Point at = ToPoint(screen);
  std::optional<Point> client;
  if (LiesAt(hWnd(), screen) || (showsTip_ && services_.tip->Hides(hWnd(), at))) {
    POINT place = screen;
    ScreenToClient(hWnd(), &place);
    client = ToPoint(place);
  }
  hover_.Ticked(client || input_.HotButton() >= 0 || showsTip_);
  Tell(&CommandBarInput::tHitTest_Timer, client, at);
}

LRESULT BnCommandBar::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = accessible_.Answer(message, wParam, lParam)) return *answer;
  switch (message) {
    case WM_ERASEBKGND:
      return 1;  // painting covers everything
    case WM_PAINT: {
      const PaintDC dc(hWnd());
      UserControl_Paint(dc.get());
      return 0;
    }
    case WM_SIZE:
      UserControl_Resize();
      return 0;
    case WM_TIMER:
      if (wParam == kHoverTimer) tHitTest_Timer();
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      Tell(&CommandBarInput::MouseDown, MouseArguments(ButtonOf(message), wParam, lParam));
      return 0;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
      Tell(&CommandBarInput::MouseUp, MouseArguments(ButtonOf(message), wParam, lParam));
      return 0;
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK:
      Tell(&CommandBarInput::DblClick);
      return 0;
    case WM_MOUSEMOVE:
      LookForPointer();
      Tell(&CommandBarInput::MouseMove, MouseArguments(HeldButtons(wParam), wParam, lParam));
      return 0;
    case WM_CAPTURECHANGED:
      if (reinterpret_cast<HWND>(lParam) != hWnd()) Tell(&CommandBarInput::CaptureLost);
      return 0;
    case WM_SETCURSOR:
      return LOWORD(lParam) == HTCLIENT && SetPointer() ? TRUE : Default(message, wParam, lParam);
    case WM_SYSCOLORCHANGE:  // sent to top-level windows: the container hands it on
      Refresh();
      return 0;
    case WM_DESTROY:
      Tell(&CommandBarInput::Show, false);  // takes the tip away and forgets what was hot and pressed
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
