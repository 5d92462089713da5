#include "ui/editor/BnRichEdit.h"

#include <richedit.h>
#include <windowsx.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/Clipboard.h"
#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/OleColor.h"
#include "platform/ScreenTwips.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/editor/EditorKeys.h"
#include "ui/editor/PlainTextOnly.h"
#include "ui/editor/RichEditText.h"
#include "ui/editor/RtfText.h"
#include "ui/editor/WordRange.h"

namespace snip {
namespace {

/// What a screen reader calls it.
constexpr const char* kName = "Code";
/// A longer text is replaced more quickly by making the control anew, and filled in more quickly without its
/// colours: both take a time that grows with the square of the length.
constexpr std::size_t kShortText = 16000;  ///< Characters.
constexpr std::ptrdiff_t kShortTextLines = 200;
constexpr LPARAM kNoTextLimit = 0x7FFFFFFE;
constexpr int kTabCharacters = 4;

constexpr DWORD kFontMask =
    CFM_FACE | CFM_SIZE | CFM_CHARSET | CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_STRIKEOUT;

constexpr UINT_PTR kColouringTimer = 1;
constexpr UINT kColouringPause = 10;  ///< Milliseconds between two slices.
/// Posted to the container when the control changed by itself, as it does when something is dropped on it.
constexpr UINT kFollowChange = WM_APP + 1;

bool Held(int key) {
  return GetKeyState(key) < 0;
}

EditorKey WithHeldKeys(WPARAM key) {
  return {.code = static_cast<unsigned>(key),
          .shift = Held(VK_SHIFT),
          .control = Held(VK_CONTROL),
          .alt = Held(VK_MENU)};
}

/// Messages by which others than the program change the text; a locked control's own refusal does not cover
/// all.
bool ChangesText(UINT message) {
  switch (message) {
    case WM_CUT:
    case WM_PASTE:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_SETTEXT:
    case WM_UNICHAR:
    case WM_IME_STARTCOMPOSITION:
    case WM_IME_COMPOSITION:
    case WM_IME_ENDCOMPOSITION:
    case WM_IME_CHAR:
    case WM_IME_KEYDOWN:
    case EM_UNDO:
    case EM_REDO:
    case EM_PASTESPECIAL:
    case EM_REPLACESEL:
    case EM_SETTEXTEX:
    case EM_STREAMIN:
      return true;
    default:
      return false;
  }
}

/// Messages that change the text at the caret, if at all.
bool EditsAtCaret(UINT message, WPARAM wParam) {
  switch (message) {
    case WM_CHAR:
    case WM_CUT:
    case WM_CLEAR:
    case EM_REPLACESEL:
      return true;
    case WM_KEYDOWN:
      return wParam != 'Z' && wParam != 'Y';
    default:
      return false;
  }
}

template <class Event, class... Arguments>
void Raise(const Event& event, Arguments... arguments) {
  if (event) event(arguments...);
}

}  // namespace

// The rich-edit library stays loaded until the process ends: a window class does not survive its library, and
// other parts of the process may use it as well.
BnRichEdit::BnRichEdit(Events events, Engine preferred)
    : events_(std::move(events)),
      hasRichEdit_(preferred == Engine::RichEdit && LoadSystemLibrary("riched20.dll") != nullptr),
      foreColor_(SystemColor(COLOR_WINDOWTEXT)) {}

BnRichEdit::~BnRichEdit() {
  Destroy();
}

bool BnRichEdit::CreateIn(HWND parent, int id, const FontProperty& font) {
  font_ = font;
  colouring_.TakeColours(TranslateColor(foreColor_));
  return Create({.className = "BnRichEdit",
                 .title = kName,
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {},
                 .parent = parent,
                 .id = id,
                 .background = COLOR_WINDOW});
}

void BnRichEdit::MakeControl() {
  const bool hadFocus = control_ != nullptr && HasFocus();
  const FlagScope remaking(remaking_);
  colouring_.Attach(nullptr, 0);
  if (control_ != nullptr) DestroyWindow(control_);
  const Size size = ClientSize(hWnd());
  fontHandle_ = MakeFont(font_, ScreenTwips());
  characterSize_ = CharacterSize(fontHandle_.get());
  // A system without the rich-edit library still has the plain edit control.
  control_ = CreateControl(hWnd(), hasRichEdit_ ? RICHEDIT_CLASSA : "EDIT", "",
                           WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL |
                               ES_AUTOHSCROLL | ES_WANTRETURN | ES_NOHIDESEL,
                           WS_EX_CLIENTEDGE, kControlId, fontHandle_.get(), {0, 0, size.width, size.height});
  if (control_ == nullptr) return;
  // By hand: the common controls' way asks for window properties with each message, which takes long.
  SetWindowLongPtrA(control_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  controlsOwn_ = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(control_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ControlProc)));
  SendMessageA(control_, EM_SETREADONLY, locked_ ? TRUE : FALSE, 0);
  if (hasRichEdit_) {
    SendMessageA(control_, EM_EXLIMITTEXT, 0, kNoTextLimit);
    SendMessageA(control_, EM_SETEVENTMASK, 0, ENM_CHANGE);
    const ComPtr<PlainTextOnly> callback(new PlainTextOnly);
    SendMessageA(control_, EM_SETOLECALLBACK, 0, reinterpret_cast<LPARAM>(callback.get()));
    SetControlFormat(kFontMask | CFM_COLOR);
    colouring_.Attach(control_, characterSize_.height);
  } else {
    SendMessageA(control_, EM_SETLIMITTEXT, 0, 0);
  }
  SetTabStops();
  if (hadFocus) ::SetFocus(control_);
}

/// Those parts of font and colour of a rich-edit control that the mask names.
void BnRichEdit::SetControlFormat(DWORD mask) const {
  constexpr double twipsPerPoint = 20;
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  format.dwMask = mask;
  format.yHeight = std::lround(font_.Size * twipsPerPoint);
  format.bCharSet = font_.Charset;
  format.crTextColor = colouring_.colours().fore;
  format.dwEffects = (font_.Bold ? CFE_BOLD : 0U) | (font_.Italic ? CFE_ITALIC : 0U) |
                     (font_.Underline ? CFE_UNDERLINE : 0U) | (font_.Strikethrough ? CFE_STRIKEOUT : 0U);
  font_.Name.copy(format.szFaceName, sizeof format.szFaceName - 1);
  for (const int part : {SCF_DEFAULT, SCF_ALL}) {
    SendMessageA(control_, EM_SETCHARFORMAT, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(&format));
  }
}

int BnRichEdit::TabTwips() const {
  return std::max(ScreenTwips().ToTwipsX(characterSize_.width * kTabCharacters), 1);
}

void BnRichEdit::SetTabStops() const {
  if (!hasRichEdit_) {
    UINT dialogUnits = kTabCharacters * 4;  // of which a character of the font is four wide
    SendMessageA(control_, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&dialogUnits));
    return;
  }
  PARAFORMAT format{};
  format.cbSize = sizeof format;
  format.dwMask = PFM_TABSTOPS;
  format.cTabCount = kTabStops;
  const int distance = TabTwips();
  for (int stop = 0; stop < kTabStops; ++stop) format.rgxTabs[stop] = (stop + 1) * distance;
  SendMessageA(control_, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
}

std::optional<std::string> BnRichEdit::text() const {
  if (!touched_) return original_;
  std::optional<std::string> shown = ShownText();
  if (!shown) return std::nullopt;
  return *shown == bytes_.shown() ? original_ : bytes_.Restore(std::move(*shown));
}

std::optional<std::string> BnRichEdit::ShownText() const {
  if (!touched_) return bytes_.shown();
  if (!hasRichEdit_) return FieldText(control_);
  const std::optional<std::u16string> characters = RichEditText(control_);
  return characters ? std::optional(AnsiFromRichEdit(*characters)) : std::nullopt;
}

void BnRichEdit::SetText(const std::string& text) {
  original_ = text;
  bytes_ = TextFieldBytes(text);
  touched_ = false;
  Show(bytes_.shown());
}

int BnRichEdit::TextLength() const {
  if (colouring_.active()) return static_cast<int>(colouring_.TextLength());
  return static_cast<int>(Utf16FromAnsi(FieldText(control_).value_or(std::string())).size());
}

void BnRichEdit::Show(const std::string& shown) {
  {
    const FlagScope filling(filling_);
    StopWork();
    changed_ = false;
    const std::u16string characters = hasRichEdit_ ? RichEditCharacters(shown) : std::u16string();
    std::string columns = RichEditColumns(characters);
    if (!ShowAsRtf(characters, columns)) ShowPlain(shown, std::move(columns));
    SendMessageA(control_, EM_EMPTYUNDOBUFFER, 0, 0);
    const bool atStart =
        SelStart() == 0 && SelLength() == 0 && SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0) == 0;
    if (!atStart) SetSelection(0, 0);
  }
  FinishColouring();
}

/// The quickest way to show a short text in colours; false when the text is none or needs another way.
bool BnRichEdit::ShowAsRtf(const std::u16string& characters, std::string columns) {
  const auto isShort = [](const auto& text) {
    return text.size() <= kShortText && std::count(text.begin(), text.end(), '\r') <= kShortTextLines;
  };
  if (!colouring_.active() || characters.empty() || !isShort(characters) || !FitsRtf(characters))
    return false;
  if (!isShort(colouring_.text())) MakeControl();
  const std::vector<HueRun> runs = colouring_.Start(std::move(columns));
  StreamIn(control_,
           RtfOf(characters, runs, {.font = font_, .colours = colouring_.colours(), .tabTwips = TabTwips()}),
           SF_RTF);
  SetControlFormat(CFM_SIZE);  // RTF has half points only
  return colouring_.AgreesWithControl();
}

void BnRichEdit::ShowPlain(const std::string& shown, std::string columns) {
  if (TextLength() > 0) MakeControl();
  // What looks like RTF would be taken as such.
  const bool looksLikeRtf = shown.starts_with("{\\rtf") || shown.starts_with("{\\urtf");
  if (looksLikeRtf && hasRichEdit_) {
    StreamIn(control_, shown, SF_TEXT);
  } else {
    SendMessageA(control_, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(shown.c_str()));
  }
  if (!colouring_.active()) return;
  colouring_.StartUncoloured(std::move(columns));
}

void BnRichEdit::SetLocked(bool locked) {
  if (locked_ == locked) return;  // Wine paints all edges of a control that is told
  locked_ = locked;
  SendMessageA(control_, EM_SETREADONLY, locked ? TRUE : FALSE, 0);
}

void BnRichEdit::SetFont(const FontProperty& font) {
  if (font == font_) return;
  font_ = font;
  if (control_ == nullptr) return;
  UniqueFont handle = MakeFont(font_, ScreenTwips());
  characterSize_ = CharacterSize(handle.get());
  if (hasRichEdit_) {
    colouring_.SetLineHeight(characterSize_.height);
    colouring_.ChangeLook([this] { ChangeFont(); });
  } else {
    SendMessageA(control_, WM_SETFONT, reinterpret_cast<WPARAM>(handle.get()), TRUE);
    SetTabStops();
  }
  fontHandle_ = std::move(handle);  // the control has let go of the old one
}

/// Of a rich-edit control, whose text, selection and first line stay.
void BnRichEdit::ChangeFont() const {
  const LRESULT firstLine = SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0);
  CHARRANGE selection{};
  SendMessageA(control_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  SetControlFormat(kFontMask);
  CHARRANGE all{0, -1};
  SendMessageA(control_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&all));
  SetTabStops();
  SendMessageA(control_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&selection));
  const LRESULT shownLine = SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0);
  SendMessageA(control_, EM_LINESCROLL, 0, firstLine - shownLine);
}

void BnRichEdit::SetForeColor(COLORREF color) {
  foreColor_ = color;
  UpdateColours();
}

void BnRichEdit::SetSyntaxColors(bool colouring) {
  colouring_.SetSyntaxColors(colouring);
  FinishColouring();
}

void BnRichEdit::UpdateColours() {
  const bool changed = colouring_.TakeColours(TranslateColor(foreColor_));
  if (changed && colouring_.active()) {
    CHARFORMATA format{};
    format.cbSize = sizeof format;
    format.dwMask = CFM_COLOR;
    format.crTextColor = colouring_.colours().fore;
    SendMessageA(control_, EM_SETCHARFORMAT, SCF_DEFAULT, reinterpret_cast<LPARAM>(&format));
  }
  FinishColouring();
}

/// Colours what can be seen at once and the rest by and by.
void BnRichEdit::FinishColouring() {
  colouring_.FinishVisible();
  StartWork();
}

void BnRichEdit::StartWork() {
  if (colouring_.finished() || working_) return;
  working_ = true;
  SetTimer(hWnd(), kColouringTimer, kColouringPause, nullptr);
}

void BnRichEdit::StopWork() {
  if (std::exchange(working_, false)) KillTimer(hWnd(), kColouringTimer);
}

int BnRichEdit::SelStart() const {
  DWORD start = 0;
  SendMessageA(control_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), 0);
  return static_cast<int>(start);
}

int BnRichEdit::SelLength() const {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageA(control_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return static_cast<int>(end - start);
}

void BnRichEdit::SetSelection(int start, int length) {
  SendMessageA(control_, EM_SETSEL, static_cast<WPARAM>(start), start + length);
  SendMessageA(control_, EM_SCROLLCARET, 0, 0);
}

std::optional<std::string> BnRichEdit::SelText() const {
  if (hasRichEdit_) {
    const std::optional<std::u16string> selected = SelectedRichEditText(control_);
    return selected ? std::optional(bytes_.Restore(AnsiFromRichEdit(*selected))) : std::nullopt;
  }
  const std::optional<std::string> shown = ShownText();
  if (!shown) return std::nullopt;
  const std::u16string text = Utf16FromAnsi(*shown);
  const std::size_t start = std::min(static_cast<std::size_t>(SelStart()), text.size());
  return bytes_.Restore(AnsiFromUtf16(text.substr(start, static_cast<std::size_t>(SelLength()))));
}

void BnRichEdit::ReplaceSelection(const std::string& text) {
  std::string kept = text;
  std::erase(kept, '\0');
  std::replace(kept.begin(), kept.end(), '\v', '\n');  // how other programs break a line within a paragraph
  const std::string shown = TextFieldBytes(kept).shown();
  SendMessageA(control_, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(shown.c_str()));
}

bool BnRichEdit::CanUndo() const {
  return !locked_ && SendMessageA(control_, EM_CANUNDO, 0, 0) != 0;
}

void BnRichEdit::Undo() {
  SendMessageA(control_, EM_UNDO, 0, 0);
}

/// Selects by itself, since the control is no help here: on Windows it selects a word with the blanks behind
/// it, and Wine's takes text elsewhere when the word is the last one of its line.
void BnRichEdit::SelectWordAt(POINTL place) {
  const LRESULT character = SendMessageA(control_, EM_CHARFROMPOS, 0, reinterpret_cast<LPARAM>(&place));
  const std::optional<std::u16string> text = RichEditText(control_);
  if (!text || character < 0) return;
  const std::string columns = RichEditColumns(*text);
  const std::size_t at = std::min(static_cast<std::size_t>(character), columns.size());
  const std::size_t begin = at == 0 ? 0 : columns.rfind('\r', at - 1) + 1;
  const std::size_t end = std::min(columns.find('\r', at), columns.size());
  const ColumnRange word = WordAt(std::string_view(columns).substr(begin, end - begin), at - begin);
  CHARRANGE range{static_cast<LONG>(begin + word.begin), static_cast<LONG>(begin + word.end)};
  SendMessageA(control_, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

void BnRichEdit::Paste() {
  // As text, whatever else the clipboard offers: pictures and formats have no place in code.
  if (const std::string text = ClipboardText(hWnd()); !text.empty()) ReplaceSelection(text);
}

bool BnRichEdit::FilterKey(WPARAM key) {
  switch (ActionOf(WithHeldKeys(key), locked_)) {
    case KeyAction::Pass:
      return false;
    case KeyAction::Paste:
      Paste();
      break;
    case KeyAction::NewLine:
      ReplaceSelection("\r\n");
      SendMessageA(control_, EM_SCROLLCARET, 0, 0);
      break;
    case KeyAction::MoveOn:
      ::SetFocus(GetNextDlgTabItem(GetAncestor(hWnd(), GA_ROOT), control_, Held(VK_SHIFT) ? TRUE : FALSE));
      break;
    case KeyAction::Stop:
      break;
  }
  return true;
}

/// Raises contextMenu for a place right below the caret, or in the corner when the caret cannot be seen.
void BnRichEdit::AskForMenu() const {
  POINT place{};
  GetCaretPos(&place);
  place.y += characterSize_.height;
  RECT client{};
  GetClientRect(control_, &client);
  if (PtInRect(&client, place) == 0) place = {};
  ClientToScreen(control_, &place);
  Raise(events_.contextMenu, place);
}

bool BnRichEdit::FilterInput(UINT message, WPARAM wParam, LPARAM lParam) {
  POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_CHAR: {
      const EditorKey held = WithHeldKeys(0);
      if (wParam >= ' ' || !held.control) Raise(events_.keyPress, static_cast<char>(wParam));
      return !TakesCharacter(static_cast<unsigned char>(wParam), held, locked_);
    }
    case WM_KEYDOWN:
      return FilterKey(wParam);
    case WM_KEYUP:
      // The system makes WM_CONTEXTMENU of the menu key, here or before the key comes.
      if (wParam != VK_APPS) return false;
      DefWindowProcA(control_, message, wParam, lParam);
      return true;
    case WM_SYSKEYDOWN:
      if (wParam == VK_F10 && Held(VK_SHIFT)) {
        AskForMenu();
        return true;
      }
      if (ActionOf(WithHeldKeys(wParam), locked_) == KeyAction::Pass) return false;
      // Menus and the window's own keys; the control would make characters of numbers with it.
      DefWindowProcA(control_, message, wParam, lParam);
      return true;
    case WM_SYSCHAR:
      DefWindowProcA(control_, message, wParam, lParam);
      return true;
    case WM_CONTEXTMENU:
      // With the mouse it was asked for by mouseDown; the keyboard's is sent by programs that help people.
      if (lParam == -1) AskForMenu();
      return true;
    case WM_LBUTTONDOWN:
      ClientToScreen(control_, &place);
      Raise(events_.mouseDown, kLeftButton, place);
      return false;
    case WM_RBUTTONDOWN:
      Focus();
      ClientToScreen(control_, &place);
      Raise(events_.mouseDown, kRightButton, place);
      return true;
    case WM_RBUTTONUP:
      return true;
    case WM_LBUTTONDBLCLK:
      if (!hasRichEdit_) {
        CallWindowProcA(controlsOwn_, control_, message, wParam, lParam);
      } else {
        SelectWordAt({place.x, place.y});
      }
      Raise(events_.dblClick);
      return true;
    default:
      return false;
  }
}

LRESULT BnRichEdit::OnControlMessage(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  if (FilterInput(message, wParam, lParam)) return 0;
  // An event may have made the control anew, or locked it.
  const bool going = message == WM_DESTROY || message == WM_NCDESTROY;
  if (!going && (control != control_ || (locked_ && !filling_ && ChangesText(message)))) return 0;
  if (message == WM_PAINT && !changed_ && !filling_) colouring_.FinishVisible();
  if (message == WM_PASTE || message == EM_PASTESPECIAL) {
    Paste();
    return 0;
  }
  if (answering_ || remaking_ || filling_ || colouring_.busy()) {
    return CallWindowProcA(controlsOwn_, control, message, wParam, lParam);
  }
  const bool atCaret = colouring_.active() && EditsAtCaret(message, wParam);
  const CodeColouring::Caret caret = atCaret ? colouring_.CaretBefore() : CodeColouring::Caret{};
  LRESULT result = 0;
  {
    const FlagScope answering(answering_);
    result = CallWindowProcA(controlsOwn_, control, message, wParam, lParam);
  }
  if (changed_ && control == control_) {
    changed_ = false;
    if (atCaret) {
      colouring_.FollowEdit(caret);
    } else {
      colouring_.FollowChange();
    }
    StartWork();
  }
  return result;
}

LRESULT CALLBACK BnRichEdit::ControlProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    auto* self = reinterpret_cast<BnRichEdit*>(GetWindowLongPtrA(control, GWLP_USERDATA));
    return self->OnControlMessage(control, message, wParam, lParam);
  } catch (...) {
    // What threw was mostly memory running out. The message has no further effect.
    return 0;
  }
}

/// The control tells that its text has changed.
void BnRichEdit::OnChange() {
  if (filling_ || remaking_ || colouring_.busy()) return;
  touched_ = true;
  changed_ = true;
  if (!answering_) PostMessageA(hWnd(), kFollowChange, 0, 0);
}

LRESULT BnRichEdit::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      NameNextControl(hWnd(), kName);
      MakeControl();
      return control_ != nullptr ? 0 : -1;
    case WM_SIZE:
      MoveTo(control_, {0, 0, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case WM_SETFOCUS:
      Focus();
      return 0;
    case WM_DESTROY:
      colouring_.Attach(nullptr, 0);
      control_ = nullptr;
      return 0;
    case WM_COMMAND:
      if (remaking_) return 0;
      if (HIWORD(wParam) == EN_SETFOCUS) Raise(events_.gotFocus);
      if (HIWORD(wParam) == EN_KILLFOCUS) Raise(events_.lostFocus);
      if (HIWORD(wParam) == EN_CHANGE) OnChange();
      return 0;
    case WM_TIMER:
      if (wParam == kColouringTimer && !colouring_.FinishSome()) StopWork();
      return 0;
    case kFollowChange:
      if (std::exchange(changed_, false)) colouring_.FollowChange();
      FinishColouring();
      return 0;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      SendMessageA(control_, message, wParam, lParam);
      UpdateColours();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
