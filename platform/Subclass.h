#pragma once

#include <windows.h>

#include <functional>
#include <memory>

namespace snip {

/// Sees the messages of another window of the thread before that window does, for as long as it is there and
/// the window lives. A window may have several.
class Subclass {
 public:
  struct Message {
    HWND window;
    UINT id;
    WPARAM wParam;
    LPARAM lParam;
    const bool& stopped;  ///< The subclass has ended, and what its handler refers to may be gone.

    /// Has the window answer it, and the subclasses that were there before.
    LRESULT PassOn() const;
  };
  /// Answers a message. It may do anything, the end of the subclass included. When it throws, the message has
  /// no further effect.
  using Handler = std::function<LRESULT(const Message& message)>;

  Subclass() = default;
  ~Subclass() { Stop(); }
  Subclass(const Subclass&) = delete;
  Subclass& operator=(const Subclass&) = delete;

  /// Instead of the window so far. False when the system refuses, as it does for a null window.
  bool Start(HWND window, Handler handler);
  void Stop();

 private:
  struct Hook {
    Handler handler;
    bool stopped = false;
  };

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self);

  HWND window_ = nullptr;
  std::shared_ptr<Hook> hook_;  ///< Shared with the messages that are being handled.
};

}  // namespace snip
