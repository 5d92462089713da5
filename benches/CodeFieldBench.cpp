// The code field with 10,000 lines, beside a bare rich-edit control.

#include <richedit.h>
#include <tom.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/OwnProcess.h"
#include "benches/Pixels.h"
#include "benches/WindowBenches.h"
#include "platform/Com.h"
#include "platform/OleColor.h"
#include "ui/editor/BnRichEdit.h"
#include "ui/editor/RichEditText.h"
#include "ui/editor/RtfText.h"

namespace snip::bench {
namespace {

constexpr int kLines = 10000;
constexpr int kRuns = 9;
constexpr int kKeys = 15;
constexpr Limit kShowLimit{1.5, "a long text is there as soon as without colours"};
constexpr Limit kKeysLimit{1.5, "colours must not slow typing"};
constexpr Limit kColouringLimit{5000, "nobody scrolls there sooner"};
/// What a user does not feel; what the system's own calls need may be a fifth more.
constexpr double kLongestPauseMs = 16;
constexpr double kPauseLimit = 1.2;
constexpr std::size_t kLinesOfPart = 48;  ///< As many as the field is filled with at a time.
const FontProperty kFont{.Name = "Courier New", .Size = 10};
constexpr Rect kPlace{0, 0, 520, 400};
constexpr int kColouringPatienceMs = 900000;

/// Asks a rich-edit control past the field around it, which would have the rest of its text shown first.
LRESULT Ask(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  WNDCLASSA description{};
  GetClassInfoA(nullptr, RICHEDIT_CLASSA, &description);
  return CallWindowProcA(description.lpfnWndProc, control, message, wParam, lParam);
}

long LengthOf(HWND control) {
  GETTEXTLENGTHEX ask{GTL_NUMCHARS, CP_ACP};
  return static_cast<long>(Ask(control, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&ask), 0));
}

/// The colour of the last character, whatever is selected.
long LastColour(HWND control) {
  constexpr IID textDocument = {0x8CC497C0, 0xA1DF, 0x11CE, {0x80, 0x98, 0x00, 0xAA, 0x00, 0x47, 0xBE, 0x5D}};
  ComPtr<IUnknown> richEdit;
  ComPtr<ITextDocument> document;
  ComPtr<ITextRange> range;
  ComPtr<ITextFont> font;
  Ask(control, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(richEdit.Put()));
  if (!richEdit || FAILED(richEdit->QueryInterface(textDocument, document.PutVoid())))
    Fail("no text document");
  const long length = LengthOf(control);
  long colour = 0;
  if (FAILED(document->Range(length - 1, length, range.Put())) || FAILED(range->GetFont(font.Put())) ||
      FAILED(font->GetForeColor(&colour))) {
    Fail("no colour");
  }
  return colour;
}

/// The field with one of two long texts in it.
class LongTexts {
 public:
  LongTexts() {
    field_.CreateIn(window_.hWnd(), 1, kFont);
    MoveTo(field_.hWnd(), kPlace);
    AnswerAll();
    for (Text& text : texts_) {
      field_.SetText(text.code);
      const auto length = static_cast<long>(RichEditCharacters(text.code).size());
      while (LengthOf(control()) < length) AnswerOne();
      AnswerAll();
      text.screen = Pixels(control());
    }
  }

  BnRichEdit& field() { return field_; }
  HWND control() const { return GetDlgItem(field_.hWnd(), BnRichEdit::kControlId); }
  const std::string& ShownCode() const { return texts_[shown_].code; }

  /// Shows the other text; the time until the window looks as it finally will.
  double ShowOther() {
    shown_ = 1 - shown_;
    double spent = Milliseconds([&] {
      field_.SetText(texts_[shown_].code);
      UpdateWindow(control());
    });
    while (Pixels(control()) != texts_[shown_].screen) {
      if (spent > kColouringPatienceMs) Fail("the first screen is never as it should be");
      spent += AnswerOne();
    }
    return spent;
  }

  /// The time until every line has its colours, and the longest time meanwhile that the window did not look
  /// for messages.
  struct Colouring {
    double all;
    double longestPause;
  };
  Colouring ColourToTheEnd() {
    constexpr int answersBetweenLooks = 10;
    const auto plain = static_cast<long>(TranslateColor(field_.foreColor()));
    const double start = Now();
    double longest = 0;
    const auto length = static_cast<long>(RichEditCharacters(ShownCode()).size());
    while (LengthOf(control()) < length || LastColour(control()) == plain) {
      if (Now() - start > kColouringPatienceMs) Fail("the end of the text never gets its colour");
      for (int i = 0; i < answersBetweenLooks; ++i) longest = std::max(longest, AnswerOne());
    }
    return {Now() - start, longest};
  }

 private:
  struct Text {
    std::string code;
    std::vector<std::uint32_t> screen{};  ///< What the control looks like when all is done.
  };

  /// Answers one message if there is one; the time that it took.
  static double AnswerOne() {
    MSG message{};
    if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) == 0) {
      return Milliseconds([] { MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT); });
    }
    return Milliseconds([&] {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    });
  }

  BareWindow window_;
  BnRichEdit field_{{}};
  Text texts_[2] = {{GeneratedCode(kLines, 1)}, {GeneratedCode(kLines, 2)}};
  std::size_t shown_ = 1;
};

/// An empty bare control of the same look.
class EmptyControl {
 public:
  explicit EmptyControl(HWND like) : like_(like) {}

  HWND control() const { return control_; }
  double Show(const std::string& text) {
    if (control_ != nullptr) DestroyWindow(control_);
    const Size size = ClientSize(like_);
    control_ = MakeBareRichEdit(window_.hWnd(), {0, 0, size.width, size.height},
                                reinterpret_cast<HFONT>(SendMessageA(like_, WM_GETFONT, 0, 0)));
    AnswerAll();
    return Milliseconds([&] {
      SendMessageA(control_, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
      UpdateWindow(control_);
    });
  }

 private:
  HWND like_;
  BareWindow window_;
  HWND control_ = nullptr;
};

/// The longest of the calls that fill a bare control with a text in colours, in parts that are not drawn.
double LongestBareCall(HWND control, const std::string& code) {
  const std::u16string characters = RichEditCharacters(code);
  ColouredText text;
  text.Load(RichEditColumns(characters));
  const RtfLook look{kFont, CodeColoursOn(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT))};
  double longest = 0;
  for (std::size_t line = 0; line < text.lineCount(); line += kLinesOfPart) {
    const std::size_t next = line + kLinesOfPart;
    const std::size_t start = text.LineStart(line);
    const std::size_t end = next < text.lineCount() ? text.LineStart(next) : characters.size();
    std::vector<HueRun> runs = text.Finish(line, std::min(next, text.lineCount()));
    for (HueRun& run : runs) run = {run.begin - start, run.end - start, run.hue};
    const std::string rtf =
        RtfOf(std::u16string_view(characters).substr(start, end - start), runs, look, RtfScope::Part);
    longest = std::max(longest, Milliseconds([&] {
                         SendMessageA(control, WM_SETREDRAW, FALSE, 0);
                         SendMessageA(control, EM_SETSEL, characters.size(),
                                      static_cast<LPARAM>(characters.size()));
                         StreamIn(control, rtf, SF_RTF | SFF_SELECTION);
                         SendMessageA(control, WM_SETREDRAW, TRUE, 0);
                       }));
    AnswerAll();
  }
  return longest;
}

/// Types characters in the middle, which are shown one by one; what they take.
double TypeKeys(HWND control) {
  const LRESULT place = SendMessageA(control, EM_LINEINDEX, kLines / 2, 0) + 6;
  SendMessageA(control, EM_SETSEL, static_cast<WPARAM>(place), place);
  SendMessageA(control, EM_SCROLLCARET, 0, 0);
  AnswerAll();
  return Milliseconds([control] {
    for (int key = 0; key < kKeys; ++key) {
      SendMessageA(control, WM_CHAR, 'x', 0);
      UpdateWindow(control);
      AnswerAll();
    }
  });
}

}  // namespace

int ShowInField() {
  LongTexts texts;
  return Microseconds(texts.ShowOther());
}

int ShowInBareControl() {
  BnRichEdit field{{}};
  const BareWindow window;
  field.CreateIn(window.hWnd(), 1, kFont);
  MoveTo(field.hWnd(), kPlace);
  EmptyControl bare(GetDlgItem(field.hWnd(), BnRichEdit::kControlId));
  return Microseconds(bare.Show(GeneratedCode(kLines, 1)));
}

int FillBareControlInParts() {
  const BareWindow window;
  const HWND control = MakeBareRichEdit(window.hWnd(), kPlace, nullptr);
  return Microseconds(LongestBareCall(control, GeneratedCode(kLines, 1)));
}

int TypeInField() {
  BnRichEdit field{{}};
  const BareWindow window;
  field.CreateIn(window.hWnd(), 1, kFont);
  MoveTo(field.hWnd(), kPlace);
  field.SetText(GeneratedCode(kLines, 1));
  const int length = field.TextLength();
  field.SetLocked(false);
  const double time = TypeKeys(GetDlgItem(field.hWnd(), BnRichEdit::kControlId));
  if (field.TextLength() != length + kKeys) Fail("the keys were not taken in");
  return Microseconds(time);
}

int TypeInBareControl() {
  const BareWindow window;
  const HWND control = MakeBareRichEdit(window.hWnd(), kPlace, nullptr);
  ShowIn(control, GeneratedCode(kLines, 1));
  return Microseconds(TypeKeys(control));
}

void BenchCodeField() {
  const auto inOwnProcesses = [](const char* name, const char* field, const char* bare, const Limit& limit) {
    PrintRatio(name,
               Compare(
                   kRuns, [field] { return MeasuredInOwnProcess(field); },
                   [bare] { return MeasuredInOwnProcess(bare); }),
               limit);
  };
  inOwnProcesses("show 10000 lines, another 10000 shown before", "code-field", "code-bare", kShowLimit);
  LongTexts real;
  const double firstScreen = real.ShowOther();
  const auto [all, longestPause] = real.ColourToTheEnd();
  PrintValue("the same, until every line is coloured", firstScreen + all, kColouringLimit, "ms");
  const double bareCall = MeasuredInOwnProcess("code-parts");
  PrintValue("the longest of the same calls to a bare control", bareCall, {}, "ms");
  PrintValue("longest pause between answered messages meanwhile", longestPause,
             Limit{std::max(kLongestPauseMs, kPauseLimit * bareCall),
                   "a user does not feel 16 ms; the bare calls may need more"},
             "ms");
  inOwnProcesses("15 keys in the middle of 10000 lines", "code-keys-field", "code-keys-bare", kKeysLimit);
}

}  // namespace snip::bench
