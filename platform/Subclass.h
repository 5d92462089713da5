#pragma once

#include <windows.h>

#include <functional>
#include <memory>

namespace snip {

/// Sees the messages of another window of the thread before that window does, for as long as it is there and
/// the window lives. A window may have several, which end in any order; the latest sees a message first. When
/// other code has put a procedure in front since then, ours stays after the end and only passes messages on.
/// That code must not put back an older procedure than ours.
///
/// They are found by the window's user data, which is theirs alone. The common controls find theirs by window
/// properties and ask Wine's server for three with each message, a sixth of showing the next snippet.
class Subclass {
  struct Link;

 public:
  struct Message {
    HWND window;
    UINT id;
    WPARAM wParam;
    LPARAM lParam;
    /// The subclass has ended, and what its handler refers to may be gone; or its window ends with this
    /// message.
    const bool& stopped;
    const Link& link;  ///< Of the subclass.
    WNDPROC own;       ///< The window's, behind the last subclass.

    /// Has the window answer it, and the subclasses that were there before. To have them see
    /// something else, change a copy and pass that on.
    LRESULT PassOn() const;
  };
  /// Answers a message. It may do anything, the end of the subclass included. When it throws, the message has
  /// no further effect.
  using Handler = std::function<LRESULT(const Message& message)>;

  Subclass() = default;
  ~Subclass() { Stop(); }
  Subclass(const Subclass&) = delete;
  Subclass& operator=(const Subclass&) = delete;

  /// Instead of the window so far. False for what is no window of this thread.
  bool Start(HWND window, Handler handler);
  void Stop();

  /// The procedure that the window had before its first subclass. For one that sees messages.
  WNDPROC OriginalProcedure() const;

 private:
  struct Chain;

  static Chain* Of(HWND window);
  static void End(HWND window);
  static void Bind(HWND window, const Chain* chain);
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND window_ = nullptr;
  std::shared_ptr<Link> link_;  ///< Shared with the messages that are being handled.
};

}  // namespace snip
