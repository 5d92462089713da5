#include "ui/editor/BnRichEdit.h"

#include <richedit.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/OleColor.h"
#include "platform/ScreenTwips.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/editor/EditMessages.h"
#include "ui/editor/PlainTextOnly.h"
#include "ui/editor/RichEditFormat.h"
#include "ui/editor/RichEditText.h"

namespace snip {
namespace {

constexpr LPARAM kNoTextLimit = 0x7FFFFFFE;
constexpr int kTabCharacters = 4;

constexpr UINT_PTR kColouringTimer = 1;
constexpr UINT kColouringPause = 10;  ///< Milliseconds between two slices.
/// Posted to the container when the control changed by itself, as it does when something is dropped on it.
constexpr UINT kFollowChange = WM_APP + 1;

std::size_t LineEndsIn(std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find("\r\n"); at != std::string_view::npos; at = text.find("\r\n", at + 2)) ++count;
  return count;
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
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_GROUP,
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
  subclass_.Start(control_, [this](const Subclass::Message& message) { return OnControlMessage(message); });
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
  if (parts_.unfinished()) return static_cast<int>(parts_.WholeLength());
  if (colouring_.active()) return static_cast<int>(colouring_.TextLength());
  return static_cast<int>(Utf16FromAnsi(FieldText(control_).value_or(std::string())).size());
}

void BnRichEdit::Show(const std::string& shown) {
  {
    const FlagScope filling(filling_);
    StopWork();
    changed_ = false;
    parts_.Forget();
    marks_ = {};
    std::u16string characters = hasRichEdit_ ? RichEditCharacters(shown) : std::u16string();
    std::string columns = RichEditColumns(characters);
    if (!ShowAsRtf(std::move(characters), columns)) ShowPlain(shown, std::move(columns));
    SendMessageA(control_, EM_EMPTYUNDOBUFFER, 0, 0);
    if (!AtStart()) SetSelection(0, 0);
  }
  FinishColouring();
}

RtfLook BnRichEdit::Look() const {
  return {.font = font_, .colours = colouring_.colours(), .tabTwips = TabTwips()};
}

bool BnRichEdit::ShowAsRtf(std::u16string characters, std::string columns) {
  if (!colouring_.active()) return false;
  if (CodeFilling::IsLong(colouring_.text())) MakeControl();
  const auto inSight = static_cast<std::size_t>(ClientSize(hWnd()).height / characterSize_.height + 2);
  return parts_.Start(control_, std::move(characters), std::move(columns), Look(), inSight);
}

void BnRichEdit::FillMore() {
  const FlagScope filling(filling_);
  parts_.AddPart(Look());
  if (parts_.unfinished()) return MarkFilled();
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
  while (parts_.unfinished()) FillMore();
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
  const bool showsAgain = CodeFilling::IsLong(colouring_.text()) && !touched_ && marks_.empty() && AtStart();
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
  if ((colouring_.finished() && !parts_.unfinished()) || working_) return;
  working_ = true;
  SetTimer(hWnd(), kColouringTimer, kColouringPause, nullptr);
}

void BnRichEdit::WorkOn() {
  if (parts_.unfinished()) {
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
  marks_.Set(std::move(marks));
  MarkFilled();
}

void BnRichEdit::MarkFilled() {
  const FlagScope filling(filling_);
  marks_.MarkUpTo(parts_.FilledEnd(), hasRichEdit_ ? control_ : nullptr);
  // The lines below it are to be seen as well.
  if (const auto shown = marks_.TakeShown(parts_.FilledEnd(CodeFilling::kLinesOfPart))) {
    SetSelection(static_cast<int>(shown->first), static_cast<int>(shown->second - shown->first));
    ScrollToMiddle();
  }
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

LRESULT BnRichEdit::OnControlMessage(const Subclass::Message& message) {
  const UINT id = message.id;
  if (parts_.unfinished() && !filling_ && message.window == control_ && ConcernsWholeText(id)) FillAll();
  if (FilterInput(message)) return 0;
  // An event may have replaced the control, or locked it.
  const bool going = id == WM_DESTROY || id == WM_NCDESTROY;
  if (!going && (message.window != control_ || (locked_ && !filling_ && ChangesText(id)))) return 0;
  if (id == WM_PAINT && !changed_ && !filling_) colouring_.FinishVisible();
  if (id == WM_PASTE || id == EM_PASTESPECIAL) {
    Paste();
    return 0;
  }
  if (answering_ || remaking_ || filling_ || colouring_.busy()) return message.PassOn();
  const bool atCaret = colouring_.active() && EditsAtCaret(id, message.wParam);
  const CodeColouring::Caret caret =
      atCaret ? colouring_.CaretBefore(id == WM_CHAR ? message.wParam : 0) : CodeColouring::Caret{};
  LRESULT result = 0;
  {
    const FlagScope answering(answering_);
    result = message.PassOn();
  }
  if (changed_ && message.window == control_) {
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
      parts_.Forget();
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
