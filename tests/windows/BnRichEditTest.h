#pragma once

#include <gtest/gtest.h>
#include <richedit.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/GlobalMemory.h"
#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"
#include "ui/editor/BnRichEdit.h"

namespace snip::test {

/// Letters that the code page has: one byte, two or three in it, and one character in the control.
inline std::string Letters() {
  std::string letters;
  for (const char16_t letter : std::u16string_view(u"\u00E9\u3042\u8A9E")) {
    const std::string bytes = AnsiFromUtf16({&letter, 1});
    if (Utf16FromAnsi(bytes)[0] == letter) letters += bytes;
  }
  return letters;
}

/// A code field in a frame, behind another field.
class BnRichEditTest : public testing::Test {
 protected:
  explicit BnRichEditTest(BnRichEdit::Engine engine = BnRichEdit::Engine::RichEdit) : engine_(engine) {}
  void SetUp() override {
    other_ = CreateControl(frame_.get(), "EDIT", "", WS_VISIBLE | WS_TABSTOP, 0, 8, nullptr, {0, 0, 100, 20});
    ASSERT_TRUE(editor_.CreateIn(frame_.get(), 5, {.Name = "Courier New", .Size = 10}));
    MoveWindow(editor_.hWnd(), 0, 20, 480, 200, TRUE);
  }

  std::string Text() const { return editor_.text().value(); }
  HWND Control() const { return GetDlgItem(editor_.hWnd(), BnRichEdit::kControlId); }

  CHARFORMAT2A FormatOfSelection() const {
    CHARFORMAT2A format{};
    format.cbSize = sizeof format;
    SendMessageA(Control(), EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    return format;
  }
  /// Where a character of the control's is, in pixels.
  POINT PlaceOf(int character) const {
    POINTL place{};
    SendMessageA(Control(), EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), character);
    return {place.x, place.y};
  }
  LRESULT FirstLine() const { return SendMessageA(Control(), EM_GETFIRSTVISIBLELINE, 0, 0); }

  void PutOnClipboard(const std::vector<std::pair<UINT, std::string>>& contents) const {
    ASSERT_NE(OpenClipboard(frame_.get()), 0);
    EmptyClipboard();
    for (const auto& [format, data] : contents)
      SetClipboardData(format, MakeGlobal({data.c_str(), data.size() + 1}).Release());
    CloseClipboard();
  }

  const TestFrame frame_{"editor", {50, 50, 500, 300}};
  BnRichEdit::Engine engine_;
  std::vector<std::string> log_;
  std::function<void()> onDoubleClick_ = [] {};
  BnRichEdit editor_{{.gotFocus = [this] { log_.emplace_back("got focus"); },
                      .lostFocus = [this] { log_.emplace_back("lost focus"); },
                      .keyPress = [this](char key) { log_.push_back(std::string("key ") + key); },
                      .dblClick = [this] { onDoubleClick_(); },
                      .mouseDown = [this](BnRichEdit::MouseButton button,
                                          POINT) { log_.push_back("button " + std::to_string(button)); },
                      .contextMenu = [this](POINT) { log_.emplace_back("menu"); }},
                     engine_};
  HWND other_ = nullptr;
};

}  // namespace snip::test
