// The code field with 10,000 lines, beside a bare rich-edit control.

#include <richedit.h>
#include <tom.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "benches/BareWindow.h"
#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "benches/Pixels.h"
#include "benches/WindowBenches.h"
#include "platform/Com.h"
#include "platform/Handle.h"
#include "ui/editor/BnRichEdit.h"

namespace snip::bench {
namespace {

constexpr int kLines = 10000;
constexpr int kRuns = 5;
constexpr int kKeys = 15;
constexpr double kLimit = 1.5;
constexpr double kLongestPauseMs = 50;
const FontProperty kFont{.Name = "Courier New", .Size = 10};
constexpr Rect kPlace{0, 0, 520, 400};
constexpr int kColouringPatienceMs = 900000;
/// Long after this the first screen still looks the same.
constexpr int kScreenPatienceMs = 3000;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "window_bench: %s\n", what);
  std::exit(1);
}

/// The colour of the last character, whatever is selected.
long LastColour(HWND control) {
  constexpr IID textDocument = {0x8CC497C0, 0xA1DF, 0x11CE, {0x80, 0x98, 0x00, 0xAA, 0x00, 0x47, 0xBE, 0x5D}};
  ComPtr<IUnknown> richEdit;
  ComPtr<ITextDocument> document;
  ComPtr<ITextRange> range;
  ComPtr<ITextFont> font;
  SendMessageA(control, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(richEdit.Put()));
  if (!richEdit || FAILED(richEdit->QueryInterface(textDocument, document.PutVoid())))
    Fail("no text document");
  GETTEXTLENGTHEX ask{GTL_NUMCHARS, CP_ACP};
  const auto length =
      static_cast<long>(SendMessageA(control, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&ask), 0));
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
      const double start = Now();
      while (Now() - start < kScreenPatienceMs) AnswerOne();
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
    const long before = LastColour(control());
    const double start = Now();
    double longest = 0;
    while (LastColour(control()) == before) {
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

/// Types one character where the caret is and has it shown.
double TypeKey(HWND control) {
  return Milliseconds([&] {
    SendMessageA(control, WM_CHAR, 'x', 0);
    UpdateWindow(control);
    AnswerAll();
  });
}

void PutCaretInTheMiddle(HWND control) {
  const LRESULT place = SendMessageA(control, EM_LINEINDEX, kLines / 2, 0) + 6;
  SendMessageA(control, EM_SETSEL, static_cast<WPARAM>(place), place);
  SendMessageA(control, EM_SCROLLCARET, 0, 0);
  AnswerAll();
}

/// Runs this program for one of its groups, which tells by its exit code how many microseconds were measured.
/// Each long text gets a process of its own: those that were shown before leave the memory in pieces, among
/// which Wine's search for a fitting one slows either side by chance, up to thirtyfold.
double MeasuredInOwnProcess(const std::string& group) {
  std::string commandLine(MAX_PATH, '\0');
  commandLine.resize(GetModuleFileNameA(nullptr, commandLine.data(), MAX_PATH));
  commandLine = '"' + commandLine + "\" " + group;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION created{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &created) == 0) {
    Fail("cannot start itself");
  }
  const UniqueFile thread(created.hThread);
  const UniqueFile process(created.hProcess);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD microseconds = 0;
  GetExitCodeProcess(process.get(), &microseconds);
  if (microseconds < 1000) Fail("a measurement failed");
  return microseconds / 1000.0;
}

int Microseconds(double milliseconds) {
  return static_cast<int>(milliseconds * 1000);
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

void BenchCodeField() {
  const Comparison showing = Compare(
      kRuns, [] { return MeasuredInOwnProcess("code-field"); },
      [] { return MeasuredInOwnProcess("code-bare"); });
  PrintRatio("show 10000 lines, another 10000 shown before", showing, kLimit);
  LongTexts real;
  EmptyControl bare(real.control());
  const double firstScreen = real.ShowOther();
  const auto [all, longestPause] = real.ColourToTheEnd();
  PrintValue("the same, until every line is coloured", firstScreen + all, -1, "ms");
  PrintValue("longest pause between answered messages meanwhile", longestPause, kLongestPauseMs, "ms");

  bare.Show(real.ShownCode());
  const int length = real.field().TextLength();
  real.field().SetLocked(false);
  PutCaretInTheMiddle(real.control());
  PutCaretInTheMiddle(bare.control());
  const Comparison typing = Compare(
      kKeys, [&] { return TypeKey(real.control()); }, [&] { return TypeKey(bare.control()); });
  if (real.field().TextLength() != length + kKeys + 1) Fail("the keys were not taken in");
  PrintRatio("one key in the middle of 10000 lines", typing, kLimit);
}

}  // namespace snip::bench
