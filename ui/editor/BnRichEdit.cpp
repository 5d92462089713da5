#include "ui/editor/BnRichEdit.h"

#include <richedit.h>
#include <windowsx.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/Guarded.h"
#include "platform/OleColor.h"
#include "platform/ScreenTwips.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/editor/PlainTextOnly.h"
#include "ui/editor/RichEditFormat.h"
#include "ui/editor/RichEditText.h"

namespace snip {
namespace {

/// A longer text is replaced more quickly with the control itself, and filled in more quickly in parts: both
/// take a time that grows with the square of the length.
constexpr std::size_t kShortText = 16000;  ///< Characters.
constexpr std::ptrdiff_t kShortTextLines = 200;
/// Of a longer text, what is filled in at a time: it takes about 4 ms.
constexpr std::size_t kLinesOfPart = 48;
constexpr LPARAM kNoTextLimit = 0x7FFFFFFE;
constexpr int kTabCharacters = 4;

constexpr UINT_PTR kColouringTimer = 1;
constexpr UINT kColouringPause = 10;  ///< Milliseconds between two slices.
/// Posted to the container when the control changed by itself, as it does when something is dropped on it.
constexpr UINT kFollowChange = WM_APP + 1;

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

bool IsShort(const auto& text) {
  return text.size() <= kShortText && std::count(text.begin(), text.end(), '\r') <= kShortTextLines;
}

std::size_t LongestLineOf(std::u16string_view characters) {
  std::size_t longest = 0;
  for (std::size_t start = 0; start < characters.size();) {
    const std::size_t end = std::min(characters.find(u'\r', start), characters.size());
    longest = std::max(longest, end - start);
    start = end + 1;
  }
  return longest;
}

void SelectIn(HWND control, CHARRANGE range) {
  SendMessageA(control, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
}

/// Messages that tell, change or scroll the text, or may.
bool ConcernsWholeText(UINT message) {
  switch (message) {
    case EM_GETSEL:
    case EM_EXGETSEL:
    case EM_GETFIRSTVISIBLELINE:
    case EM_CANUNDO:
    case EM_SETREADONLY:
      return false;
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
    case WM_NCLBUTTONDOWN:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_CONTEXTMENU:
    case WM_GETOBJECT:
    case WM_SETFONT:
    case WM_PRINT:
    case WM_PRINTCLIENT:
      return true;
    default: {
      const auto within = [message](UINT first, UINT last) { return first <= message && message <= last; };
      constexpr UINT lastOfPlainControl = 0x00DF;
      return within(WM_KEYFIRST, WM_KEYLAST) || within(WM_LBUTTONDOWN, WM_MOUSELAST) ||
             within(WM_IME_STARTCOMPOSITION, WM_IME_KEYLAST) || within(WM_CUT, WM_UNDO) ||
             within(EM_GETSEL, lastOfPlainControl) || message >= WM_USER;
    }
  }
}

std::size_t LineEndsIn(std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find("\r\n"); at != std::string_view::npos; at = text.find("\r\n", at + 2)) ++count;
  return count;
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

bool BnRichEdit::CreateIn(HWND parent, int id, const FontProperty& font, const char* name) {
  font_ = font;
  colouring_.TakeColours(TranslateColor(foreColor_));
  return Create({.className = "BnRichEdit",
                 .title = name,
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
  mouse_ = {};
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
    SetRichEditFormat(control_, font_, colouring_.colours().fore, kFontFormat | CFM_COLOR);
    colouring_.Attach(control_, characterSize_.height);
  } else {
    SendMessageA(control_, EM_SETLIMITTEXT, 0, 0);
  }
  SetTabStops();
  if (hadFocus) ::SetFocus(control_);
}

int BnRichEdit::TabTwips() const {
  return std::max(ScreenTwips().ToTwipsX(characterSize_.width * kTabCharacters), 1);
}

void BnRichEdit::SetTabStops() const {
  if (hasRichEdit_) {
    SetRichEditTabs(control_, TabTwips());
    return;
  }
  UINT dialogUnits = kTabCharacters * 4;  // of which a character of the font is four wide
  SendMessageA(control_, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&dialogUnits));
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
  if (unfilled_) return static_cast<int>(unfilled_->characters.size());
  if (colouring_.active()) return static_cast<int>(colouring_.TextLength());
  return static_cast<int>(Utf16FromAnsi(FieldText(control_).value_or(std::string())).size());
}

void BnRichEdit::Show(const std::string& shown) {
  {
    const FlagScope filling(filling_);
    StopWork();
    changed_ = false;
    unfilled_.reset();
    marks_ = {};
    markShown_ = true;
    std::u16string characters = hasRichEdit_ ? RichEditCharacters(shown) : std::u16string();
    std::string columns = RichEditColumns(characters);
    if (!ShowAsRtf(std::move(characters), columns)) ShowPlain(shown, std::move(columns));
    SendMessageA(control_, EM_EMPTYUNDOBUFFER, 0, 0);
    if (!AtStart()) SetSelection(0, 0);
  }
  FinishColouring();
}

/// The quickest way to show a text in colours; false when it needs another way. A long text takes a control
/// less time in parts than as a whole, a twelfth of it for 10,000 lines, and what is coloured line by line
/// when it is there takes fifty times as long.
bool BnRichEdit::ShowAsRtf(std::u16string characters, std::string columns) {
  if (!colouring_.active() || characters.empty() || !FitsRtf(characters) ||
      LongestLineOf(characters) > kShortText) {
    return false;
  }
  if (!IsShort(colouring_.text())) MakeControl();
  const bool isShort = IsShort(characters);
  colouring_.Start(std::move(columns));
  const auto inSight = static_cast<std::size_t>(ClientSize(hWnd()).height / characterSize_.height + 2);
  const std::size_t end = isShort ? colouring_.lineCount() : EndOfPart(0, std::max(inSight, kLinesOfPart));
  ShowPart(characters, 0, end, RtfScope::Whole);
  if (isShort) return colouring_.AgreesWithControl();
  unfilled_ = {std::move(characters), end};
  return true;
}

/// The line in front of which a part ends that is shown in a moment.
std::size_t BnRichEdit::EndOfPart(std::size_t firstLine, std::size_t lines) const {
  const std::size_t start = colouring_.LineStart(firstLine);
  std::size_t end = firstLine + 1;
  while (end < colouring_.lineCount() && end < firstLine + lines &&
         colouring_.LineStart(end + 1) - start <= kShortText) {
    ++end;
  }
  return end;
}

void BnRichEdit::ShowPart(std::u16string_view characters, std::size_t firstLine, std::size_t endLine,
                          RtfScope scope) {
  const std::size_t start = colouring_.LineStart(firstLine);
  const std::size_t end = colouring_.LineStart(endLine);
  std::vector<HueRun> runs = colouring_.HuesOf(firstLine, endLine);
  for (HueRun& run : runs) {
    run.begin -= start;
    run.end -= start;
  }
  const bool whole = scope == RtfScope::Whole;
  StreamIn(control_,
           RtfOf(characters.substr(start, end - start), runs,
                 {.font = font_, .colours = colouring_.colours(), .tabTwips = TabTwips()}, scope),
           whole ? SF_RTF : SF_RTF | SFF_SELECTION);
  constexpr double halfPoints = 2;
  // RTF has half points only. To set the size of each part takes as long as filling it in.
  if (std::floor(font_.Size * halfPoints) == font_.Size * halfPoints) return;
  if (!whole) SelectIn(control_, {static_cast<LONG>(start), static_cast<LONG>(end)});
  SetRichEditSize(control_, font_, whole ? SCF_ALL : SCF_SELECTION);
}

/// Adds some lines to a text that is shown in part.
void BnRichEdit::FillMore() {
  const FlagScope filling(filling_);
  const std::size_t end = EndOfPart(unfilled_->shownLines, kLinesOfPart);
  // What it shows is not changed, and drawing it takes three times as long as adding to it.
  UpdateWindow(control_);
  SendMessageA(control_, WM_SETREDRAW, FALSE, 0);
  constexpr LONG behindAll = 0x7FFFFFFF;
  CHARRANGE selected{};
  POINT scrolled{};
  SendMessageA(control_, EM_EXGETSEL, 0, reinterpret_cast<LPARAM>(&selected));
  SendMessageA(control_, EM_GETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
  SelectIn(control_, {behindAll, behindAll});
  // To free what Wine 8 records for undo leaves gaps between the lines that slow every key afterwards: in
  // 10,000 lines a key takes ten times as long.
  colouring_.WithoutUndo(
      [&] { ShowPart(unfilled_->characters, unfilled_->shownLines, end, RtfScope::Part); });
  SelectIn(control_, selected);
  SendMessageA(control_, EM_SETSCROLLPOS, 0, reinterpret_cast<LPARAM>(&scrolled));
  SendMessageA(control_, WM_SETREDRAW, TRUE, 0);
  unfilled_->shownLines = end;
  if (end < colouring_.lineCount()) return MarkFilled();
  unfilled_.reset();
  if (!touched_) SendMessageA(control_, EM_EMPTYUNDOBUFFER, 0, 0);  // should it have recorded all the same
  MarkFilled();
  RedrawWindow(control_, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME);  // the scroll bars have changed
  // Something may have been dropped on it meanwhile, which is followed later.
  if (!touched_ && !colouring_.AgreesWithControl()) {
    const std::u16string characters = RichEditCharacters(bytes_.shown());
    ShowPlain(bytes_.shown(), RichEditColumns(characters));
  }
}

void BnRichEdit::FillAll() {
  while (unfilled_) FillMore();
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
  if (locked_ == locked) return;  // Wine 8 repaints all edges for EM_SETREADONLY
  locked_ = locked;
  SendMessageA(control_, EM_SETREADONLY, locked ? TRUE : FALSE, 0);
}

void BnRichEdit::SetFont(const FontProperty& font) {
  if (font == font_) return;
  FillAll();
  font_ = font;
  if (control_ == nullptr) return;
  UniqueFont handle = MakeFont(font_, ScreenTwips());
  characterSize_ = CharacterSize(handle.get());
  if (hasRichEdit_) {
    colouring_.SetLineHeight(characterSize_.height);
    colouring_.WithoutUndo([this] { ChangeRichEditFont(control_, font_, TabTwips()); });
  } else {
    SendMessageA(control_, WM_SETFONT, reinterpret_cast<WPARAM>(handle.get()), TRUE);
    SetTabStops();
  }
  fontHandle_ = std::move(handle);  // the control has let go of the old one
}

void BnRichEdit::SetForeColor(COLORREF color) {
  foreColor_ = color;
  UpdateColours();
}

void BnRichEdit::SetSyntaxColors(bool colouring) {
  if (colouring == SyntaxColors()) return;
  // To show a long text again takes a twentieth of the time in which it is coloured where it is.
  const bool showsAgain = !IsShort(colouring_.text()) && !touched_ && marks_.parts.empty() && AtStart();
  if (!showsAgain) FillAll();
  colouring_.SetSyntaxColors(colouring);
  if (showsAgain) {
    Show(bytes_.shown());
  } else {
    FinishColouring();
  }
}

/// Whether the caret and what is seen are where a text is shown at first.
bool BnRichEdit::AtStart() const {
  return SelStart() == 0 && SelLength() == 0 && SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0) == 0;
}

void BnRichEdit::UpdateColours() {
  FillAll();
  const bool changed = colouring_.TakeColours(TranslateColor(foreColor_));
  if (changed && colouring_.active()) SetRichEditDefaultColor(control_, colouring_.colours().fore);
  FinishColouring();
}

/// Colours what can be seen at once and the rest by and by.
void BnRichEdit::FinishColouring() {
  colouring_.FinishVisible();
  StartWork();
}

void BnRichEdit::StartWork() {
  if ((colouring_.finished() && !unfilled_) || working_) return;
  working_ = true;
  SetTimer(hWnd(), kColouringTimer, kColouringPause, nullptr);
}

void BnRichEdit::WorkOn() {
  if (unfilled_) {
    FillMore();
  } else if (!colouring_.FinishSome()) {
    StopWork();
  }
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

void BnRichEdit::ScrollToMiddle() const {
  const LRESULT line = SendMessageA(control_, EM_LINEFROMCHAR, static_cast<WPARAM>(SelStart()), 0);
  const LRESULT first = SendMessageA(control_, EM_GETFIRSTVISIBLELINE, 0, 0);
  const int inSight = ClientSize(control_).height / std::max(1, characterSize_.height);
  SendMessageA(control_, EM_LINESCROLL, 0, line - first - inSight / 2);
}

int BnRichEdit::PlaceOfByte(std::size_t byte) const {
  return static_cast<int>(CharactersIn(text().value_or(std::string()).substr(0, byte)));
}

/// How many characters of the control a part of the text is.
std::size_t BnRichEdit::CharactersIn(std::string_view part) const {
  return Utf16FromAnsi(part).size() - (hasRichEdit_ ? LineEndsIn(part) : 0);
}

std::size_t BnRichEdit::ByteOfPlace(int place) const {
  const std::u16string all = Utf16FromAnsi(text().value_or(std::string()));
  std::size_t end = 0;
  for (int passed = 0; passed < place && end < all.size(); ++passed) {
    end += hasRichEdit_ && all.compare(end, 2, u"\r\n") == 0 ? 2 : 1;
  }
  return AnsiFromUtf16(all.substr(0, end)).size();
}

void BnRichEdit::Mark(Marks marks) {
  const std::string all = text().value_or(std::string());
  std::size_t passed = 0;
  std::size_t place = 0;
  const auto placeOf = [&](std::size_t byte) {
    const std::string_view next = std::string_view(all).substr(passed, byte - passed);
    passed = byte;
    return place += CharactersIn(next);
  };
  for (auto& [begin, end] : marks.parts) {
    begin = placeOf(begin);
    end = placeOf(end);
  }
  marks_ = std::move(marks);
  marked_ = 0;
  markShown_ = marks_.parts.empty();
  MarkFilled();
}

void BnRichEdit::MarkFilled() {
  const auto isFilled = [this](const Marks::Part& part, std::size_t linesBefore) {
    return !unfilled_ || (unfilled_->shownLines > linesBefore &&
                          part.second <= colouring_.LineStart(unfilled_->shownLines - linesBefore));
  };
  const FlagScope filling(filling_);
  if (marked_ < marks_.parts.size() && isFilled(marks_.parts[marked_], 0)) {
    const RichEditRanges ranges(hasRichEdit_ ? control_ : nullptr);
    std::optional<RichEditRanges::Colouring> marking;
    if (ranges) marking.emplace(ranges);
    for (; marking && marked_ < marks_.parts.size() && isFilled(marks_.parts[marked_], 0); ++marked_) {
      const auto& [begin, end] = marks_.parts[marked_];
      marking->SetBackColor(begin, end, marks_.ground);
      if (marks_.ink) marking->SetColor(begin, end, *marks_.ink);
    }
  }
  // The lines below it are to be seen as well.
  if (markShown_ || !isFilled(marks_.parts[marks_.shown], kLinesOfPart)) return;
  markShown_ = true;
  const auto& [begin, end] = marks_.parts[marks_.shown];
  SetSelection(static_cast<int>(begin), static_cast<int>(end - begin));
  ScrollToMiddle();
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

LRESULT BnRichEdit::OnControlMessage(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  if (unfilled_ && !filling_ && control == control_ && ConcernsWholeText(message)) FillAll();
  if (FilterInput(message, wParam, lParam)) return 0;
  // An event may have replaced the control, or locked it.
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
  const CodeColouring::Caret caret =
      atCaret ? colouring_.CaretBefore(message == WM_CHAR ? wParam : 0) : CodeColouring::Caret{};
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
  auto* self = reinterpret_cast<BnRichEdit*>(GetWindowLongPtrA(control, GWLP_USERDATA));
  return Guarded(LRESULT{0}, [&] { return self->OnControlMessage(control, message, wParam, lParam); });
}

/// The control tells that its text has changed.
void BnRichEdit::OnChange() {
  if (filling_ || remaking_ || colouring_.busy()) return;
  touched_ = true;
  Raise(events_.change);
  changed_ = true;
  if (!answering_) PostMessageA(hWnd(), kFollowChange, 0, 0);
}

LRESULT BnRichEdit::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      NameNextControl(hWnd(), WindowText(hWnd()).c_str());
      MakeControl();
      return control_ != nullptr ? 0 : -1;
    case WM_SIZE:
      MoveTo(control_, {0, 0, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case WM_SETFOCUS:
      Focus();
      return 0;
    case WM_DESTROY:
      unfilled_.reset();
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
      if (wParam == kColouringTimer) WorkOn();
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
