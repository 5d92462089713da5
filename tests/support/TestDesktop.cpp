#include "tests/support/TestDesktop.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "platform/Handle.h"
#include "platform/Rects.h"

namespace snip::test {
namespace {

constexpr int kPollMs = 10;

INPUT KeyInput(WORD virtualKey, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = virtualKey;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(virtualKey, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  return input;
}

INPUT MouseInput(DWORD flags, LONG x = 0, LONG y = 0) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = x;
  input.mi.dy = y;
  input.mi.dwFlags = flags;
  return input;
}

using WindowTest = std::function<bool(HWND)>;

struct WindowSearch {
  const WindowTest& fits;
  HWND found;
};

BOOL CALLBACK TryWindow(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<WindowSearch*>(parameter);
  if (IsWindowVisible(window) == 0 || !search.fits(window)) return TRUE;
  search.found = window;
  return FALSE;
}

HWND FindVisible(const WindowTest& fits) {
  WindowSearch search{fits, nullptr};
  EnumWindows(&TryWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

struct IdSearch {
  int id;
  HWND found;
};

BOOL CALLBACK CompareId(HWND child, LPARAM parameter) {
  auto& search = *reinterpret_cast<IdSearch*>(parameter);
  if (GetDlgCtrlID(child) == search.id) search.found = child;
  return search.found == nullptr ? TRUE : FALSE;
}

void Send(std::vector<INPUT> inputs) {
  SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

}  // namespace

void AnswerMessages(const std::function<bool(MSG&)>& preTranslate) {
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (preTranslate && preTranslate(message)) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

bool WaitUntil(const std::function<bool()>& condition, int milliseconds,
               const std::function<void()>& answer) {
  const DWORD start = GetTickCount();
  for (;;) {
    answer();
    if (condition()) return true;
    if (GetTickCount() - start > static_cast<DWORD>(milliseconds)) return false;
    Sleep(kPollMs);
  }
}

std::string ClassOf(HWND window) {
  char name[64]{};
  GetClassNameA(window, name, sizeof name);
  return name;
}

HWND FindVisibleWindow(const std::string& title) {
  return FindVisible([&](HWND window) {
    char text[256]{};
    // Asked without a message, which a hanging program would not answer.
    GetWindowTextA(window, text, sizeof text);
    return title == text;
  });
}

HWND FindVisibleOfClass(const std::string& className) {
  return FindVisible([&](HWND window) { return lstrcmpiA(ClassOf(window).c_str(), className.c_str()) == 0; });
}

HWND FindControl(HWND window, int id) {
  IdSearch search{id, nullptr};
  EnumChildWindows(window, &CompareId, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND WaitForWindow(const std::string& title, int milliseconds) {
  HWND window = nullptr;
  WaitUntil([&] { return (window = FindVisibleWindow(title)) != nullptr; }, milliseconds);
  return window;
}

TestFrame::TestFrame(const char* title, const Rect& place)
    : window_(CreateWindowExA(0, "STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, place.left, place.top,
                              place.width, place.height, nullptr, nullptr, nullptr, nullptr)) {
  // Where no window manager does it, the window comes to the front with the next messages.
  WaitUntil([&] { return GetActiveWindow() == window_ && IsForeground(window_); });
}

void PressKey(WORD virtualKey, std::initializer_list<WORD> held) {
  std::vector<INPUT> inputs;
  for (const WORD key : held) inputs.push_back(KeyInput(key, 0));
  inputs.push_back(KeyInput(virtualKey, 0));
  inputs.push_back(KeyInput(virtualKey, KEYEVENTF_KEYUP));
  for (const WORD key : held) inputs.push_back(KeyInput(key, KEYEVENTF_KEYUP));
  Send(inputs);
}

void TypeText(const std::string& text) {
  for (const char c : text) {
    const SHORT key = VkKeyScanA(c);
    if (key == -1) throw std::invalid_argument("no key types this character");
    const auto virtualKey = static_cast<WORD>(key & 0xFF);
    if ((key & 0x100) != 0) {
      PressKey(virtualKey, {VK_SHIFT});
    } else {
      PressKey(virtualKey);
    }
  }
}

void MovePointer(POINT screen) {
  const LONG width = GetSystemMetrics(SM_CXSCREEN);
  const LONG height = GetSystemMetrics(SM_CYSCREEN);
  // Absolute positions are in 65536ths of the screen; rounding up makes them exact pixels.
  Send({MouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, (screen.x * 65536 + width - 1) / width,
                   (screen.y * 65536 + height - 1) / height)});
}

void PressMouse(MouseButton button) {
  Send({MouseInput(button == MouseButton::Left ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN)});
}

void ReleaseMouse(MouseButton button) {
  Send({MouseInput(button == MouseButton::Left ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP)});
}

void PointAt(HWND window, POINT place) {
  HWND there = nullptr;
  const bool reached = WaitUntil([&] {
    POINT screen = place;
    ClientToScreen(window, &screen);
    POINT pointer{};
    GetCursorPos(&pointer);
    if (pointer.x != screen.x || pointer.y != screen.y) {
      MovePointer(screen);
      return false;
    }
    there = WindowFromPoint(screen);
    return there == window || IsChild(window, there) != 0 ||
           ClassOf(there) == "frmTip";  // which lets clicks through
  });
  if (!reached) throw std::runtime_error(ClassOf(window) + " is covered by " + ClassOf(there));
}

bool PointAtScreen(POINT screen, const std::function<void()>& answer) {
  return WaitUntil(
      [&] {
        POINT pointer{};
        GetCursorPos(&pointer);
        if (pointer.x == screen.x && pointer.y == screen.y) return true;
        MovePointer(screen);
        return false;
      },
      5000, answer);
}

void ClickAt(HWND window, POINT place, int times, MouseButton button) {
  PointAt(window, place);
  for (int i = 0; i < times; ++i) {
    PressMouse(button);
    ReleaseMouse(button);
  }
}

void ClickCentre(HWND window, int times) {
  RECT client{};
  GetClientRect(window, &client);
  ClickAt(window, {client.right / 2, client.bottom / 2}, times);
}

Rect PlaceOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return ToRect(place);
}

COLORREF ShownAt(HWND window, Point client) {
  return GetPixel(WindowDC(window).get(), client.x, client.y);
}

bool IsForeground(HWND window) {
  return window != nullptr && GetForegroundWindow() == window;
}

bool DragBy(HWND window, POINT from, POINT by, const std::function<void()>& answer) {
  const Rect before = PlaceOf(window);
  const auto arrived = [&] {
    const Rect now = PlaceOf(window);
    return now.left == before.left + by.x && now.top == before.top + by.y;
  };
  if (!PointAtScreen(from, answer)) return false;
  // The dragging is the system's and does not return before the release.
  const Driver driver([&] {
    PressMouse();
    for (int step = 1; step <= 4; ++step) {
      Sleep(30);
      MovePointer({from.x + by.x * step / 4, from.y + by.y * step / 4});
    }
    WaitUntil(arrived, 5000, [] {});
    ReleaseMouse();
  });
  return WaitUntil([&] { return arrived() && GetCapture() == nullptr && GetKeyState(VK_LBUTTON) >= 0; }, 5000,
                   answer);
}

TemporaryFolder::TemporaryFolder() {
  char directory[MAX_PATH]{};
  GetTempPathA(sizeof directory, directory);
  char name[MAX_PATH]{};
  // With a blank, which not every path may have been thought of with.
  if (GetTempFileNameA(directory, "s p", 0, name) == 0) throw std::runtime_error("no temporary name");
  DeleteFileA(name);
  if (CreateDirectoryA(name, nullptr) == 0) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void TemporaryFolder::Write(const std::string& name, const std::string& bytes) const {
  std::ofstream(File(name), std::ios::binary) << bytes;
}

std::string TemporaryFolder::Read(const std::string& name) const {
  std::ifstream file(File(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool TemporaryFolder::Has(const std::string& name) const {
  return GetFileAttributesA(File(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace snip::test
