#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Handle.h"
#include "platform/Window.h"
#include "ui/history/NoticeText.h"

namespace snip {

/// A line of text with buttons, shown above a part of its owner. It does not take the focus, and stays until
/// a button is clicked or Escape is pressed in it.
class Notice : public Window {
 public:
  explicit Notice(std::function<void(NoticeChoice)> chosen) : chosen_(std::move(chosen)) {}
  ~Notice() override;

  /// Shows another text, at the right edge of the owner and level with the upper edge of `part`, a control
  /// on it.
  void Show(HWND owner, HWND part, const NoticeText& text);
  void Hide();
  bool shown() const { return hWnd() != nullptr; }
  /// Follows its owner, which has moved.
  void Follow();
  /// Call this when the owner comes to the front: Wine 8 does not raise owned windows with it.
  void ComeToFront() const;
  /// Moves the focus to the first button.
  void Focus() const;
  /// Handles the notice's keys; true if the message has been handled.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  static constexpr int kFirstButton = 100;

  void Choose(NoticeChoice choice);

  std::function<void(NoticeChoice)> chosen_;
  NoticeText text_;
  HWND part_ = nullptr;
  UniqueFont font_;
  Size size_{};  ///< Of text and buttons, in pixels.
  int textWidth_ = 0;
  HWND label_ = nullptr;
};

}  // namespace snip
