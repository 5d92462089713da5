#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <thread>

#include "platform/Geometry.h"

namespace snip::test {

/// Dispatches the messages that wait for this thread, those aside that `preTranslate` uses up.
void AnswerMessages(const std::function<bool(MSG&)>& preTranslate = {});

/// Waits until `condition` holds, calling `answer` meanwhile; false when it did not within the time. Never
/// assert after a mere pause: real input and other processes take as long as they take.
bool WaitUntil(
    const std::function<bool()>& condition, int milliseconds = 30000,
    const std::function<void()>& answer = [] { AnswerMessages(); });

/// The visible top-level window with exactly that title, or null when none came up in time.
HWND WaitForWindow(const std::string& title, int milliseconds = 30000);
HWND FindVisibleWindow(const std::string& title);
HWND FindVisibleOfClass(const std::string& className);
std::string ClassOf(HWND window);

/// A window's control by its id, however deep it lies; null when there is none.
HWND FindControl(HWND window, int id);

/// A window of this thread with a caption, active once it is made.
class TestFrame {
 public:
  explicit TestFrame(const char* title = "frame", const Rect& place = {10, 10, 600, 400});
  ~TestFrame() { DestroyWindow(window_); }
  TestFrame(const TestFrame&) = delete;
  TestFrame& operator=(const TestFrame&) = delete;
  HWND get() const { return window_; }

 private:
  HWND window_;
};

/// Real input: it goes where the system sends it, to the foreground window's focus or to the pointer's place.
void PressKey(WORD virtualKey, std::initializer_list<WORD> held = {});
/// Characters that a plain or shifted key gives.
void TypeText(const std::string& text);
void MovePointer(POINT screen);
enum class MouseButton { Left, Right };
void PressMouse(MouseButton button = MouseButton::Left);
void ReleaseMouse(MouseButton button = MouseButton::Left);
/// Moves to a place of a window, in its client pixels, once the window is what lies there on the screen.
void PointAt(HWND window, POINT place);
/// Moves to a place of the screen, sending the movement again until it has arrived: the system may lose one
/// that is sent just as its own dragging ends. False when it does not arrive in time.
bool PointAtScreen(
    POINT screen, const std::function<void()>& answer = [] { AnswerMessages(); });
/// Clicks there.
void ClickAt(HWND window, POINT place, int times = 1, MouseButton button = MouseButton::Left);
void ClickCentre(HWND window, int times = 1);

/// Pixels of the screen.
Rect PlaceOf(HWND window);
/// What a place of a window's client area shows.
COLORREF ShownAt(HWND window, Point client);

/// Whether a window is the one that gets keys.
bool IsForeground(HWND window);

/// Runs a script beside the thread that sits in a modal loop; joins when it goes.
class Driver {
 public:
  explicit Driver(std::function<void()> script) : thread_(std::move(script)) {}
  ~Driver() { thread_.join(); }
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;

 private:
  std::thread thread_;
};

/// Drags a window of this thread, which moves by the place `from` of the screen; false when it has not moved
/// that far in time.
bool DragBy(HWND window, POINT from, POINT by, const std::function<void()>& answer);

/// A folder of its own for a test, removed with all it holds.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "\\" + name; }
  void Write(const std::string& name, const std::string& bytes) const;
  std::string Read(const std::string& name) const;
  bool Has(const std::string& name) const;

 private:
  std::string path_;
};

}  // namespace snip::test
