#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// A window of a class of our own. Binds the C++ object to the handle while the handle lives.
///
/// The object may live longer than its window; `hWnd` is null before `Create` and after the window is gone. A
/// class that answers messages with its own members destroys its window in its own destructor, while it still
/// has them.
class Window {
 public:
  Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  virtual ~Window();

  HWND hWnd() const { return hWnd_; }

  void Destroy();

 protected:
  struct Creation {
    const char* className = "";
    const char* title = "";
    DWORD style = 0;
    DWORD exStyle = 0;
    Rect place{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT};  ///< Pixels.
    HWND parent = nullptr;
    int id = 0;         ///< Of a child window.
    UniqueMenu menu{};  ///< Of any other.
    UINT classStyle = CS_DBLCLKS;
    int iconId = 0;                  ///< Resource number of the window's icon, 0 for none.
    int background = COLOR_BTNFACE;  ///< A system colour.
  };

  /// Registers the class on first use and makes the window. False when the system refuses.
  bool Create(Creation creation);

  /// Answers a message; what it does not know it hands to `Default`.
  virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND hWnd_ = nullptr;
};

/// The icon resource in a size of the system's (SM_CXICON or SM_CXSMICON); shared, never to be destroyed.
HICON SharedIcon(int iconId, int widthMetric);

/// Makes a control of a system class. `place` is in pixels; the font is set when one is given.
HWND CreateControl(HWND parent, const char* className, const char* text, DWORD style, DWORD exStyle, int id,
                   HFONT font = nullptr, const Rect& place = {});

/// Gives the control that is made next on `parent` a name for assistive programs: a label that is not shown.
void NameNextControl(HWND parent, const char* name);

/// Puts a control that was made last, and the label that names it, behind a sibling in z-order and thus in
/// Tab order, or in front of all for HWND_TOP.
void PlaceWithLabel(HWND control, HWND after);

/// Puts a control into the Tab order or takes it out.
void SetTabStop(HWND control, bool stop);

/// Moves a window to `place`, in pixels of its parent.
void MoveTo(HWND window, const Rect& place);

/// Inner size of a window in pixels.
Size ClientSize(HWND window);

/// A window's place in pixels of its parent.
Rect PlaceInParent(HWND window);

/// Whether a window itself is what a place of the screen shows: no child of it and no window in front. A
/// window in a disabled one does not count, because it gets no mouse.
bool LiesAt(HWND window, POINT screen);

/// A window's timer that follows the pointer. It runs while there is something to follow and half a second
/// longer, since the system tells a wrong place for a moment after some moves. Three that ran all the time
/// took 0.36 % of a processor from an idle program.
class HoverTimer {
 public:
  static constexpr UINT kIntervalMs = 55;

  HoverTimer(const Window& window, UINT_PTR id) : window_(window), id_(id) {}
  HoverTimer(const HoverTimer&) = delete;
  HoverTimer& operator=(const HoverTimer&) = delete;

  /// The pointer may have come.
  void Start();
  void Stop();
  /// To be told whenever the window looks whether there is something to follow.
  void Ticked(bool needed);

 private:
  const Window& window_;
  const UINT_PTR id_;
  bool running_ = false;
  int needlessTicks_ = 0;
};

}  // namespace snip
