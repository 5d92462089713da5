#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Handle.h"
#include "platform/Window.h"
#include "ui/history/NoticeText.h"

namespace snip {

/// A line with some buttons over the upper edge of a part of its owner. It comes without taking the focus and
/// stays until a button is chosen, or Escape is pressed while it has the focus.
class Notice : public Window {
 public:
  explicit Notice(std::function<void(NoticeChoice)> chosen) : chosen_(std::move(chosen)) {}
  ~Notice() override;

  /// Shows another text. `beneath` is the part of the owner over whose upper edge it is put.
  void Show(HWND owner, HWND beneath, const NoticeText& text);
  void Hide();
  bool shown() const { return hWnd() != nullptr; }
  /// Goes where its owner has gone.
  void Follow();
  /// Its owner has come to the front. Wine 8 does not raise owned windows along with it.
  void ComeToFront() const;
  /// Gives its first button the focus.
  void Focus() const;
  /// Its keys; true when a message is used up.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  static constexpr int kFirstButton = 100;

  void Choose(NoticeChoice choice);

  std::function<void(NoticeChoice)> chosen_;
  NoticeText text_;
  HWND beneath_ = nullptr;
  UniqueFont font_;
  Size size_{};  ///< Of all that it shows, in pixels.
  int textWidth_ = 0;
  HWND label_ = nullptr;
};

}  // namespace snip
