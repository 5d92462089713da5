#pragma once

#include <windows.h>
#include <shellapi.h>

#include <cstdint>
#include <utility>

namespace snip {

/// Owns one handle of the system and closes it once. `Empty` is the value that means no handle.
template <class Handle, auto Close, std::intptr_t Empty = 0>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(Handle handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  Handle get() const { return handle_; }
  explicit operator bool() const { return handle_ != None(); }

  Handle Release() { return std::exchange(handle_, None()); }
  void Reset(Handle handle = None()) {
    if (handle_ != None()) Close(handle_);
    handle_ = handle;
  }

 private:
  static Handle None() { return reinterpret_cast<Handle>(Empty); }

  Handle handle_ = None();
};

using UniqueFile = UniqueHandle<HANDLE, &CloseHandle, -1>;
using UniqueKernelObject = UniqueHandle<HANDLE, &CloseHandle>;  ///< A process, an event and the like.
using UniqueFind = UniqueHandle<HANDLE, &FindClose, -1>;
using UniqueDrop = UniqueHandle<HDROP, &DragFinish>;
using UniqueRegKey = UniqueHandle<HKEY, &RegCloseKey>;
using UniqueBitmap = UniqueHandle<HBITMAP, &DeleteObject>;
using UniqueBrush = UniqueHandle<HBRUSH, &DeleteObject>;
using UniqueFont = UniqueHandle<HFONT, &DeleteObject>;
using UniquePalette = UniqueHandle<HPALETTE, &DeleteObject>;
using UniqueRegion = UniqueHandle<HRGN, &DeleteObject>;
using UniqueMetafile = UniqueHandle<HENHMETAFILE, &DeleteEnhMetaFile>;
using UniqueMemoryContext = UniqueHandle<HDC, &DeleteDC>;
using UniqueIcon = UniqueHandle<HICON, &DestroyIcon>;
using UniqueAccelerators = UniqueHandle<HACCEL, &DestroyAcceleratorTable>;
using UniqueCursor = UniqueHandle<HCURSOR, &DestroyCursor>;
using UniqueMenu = UniqueHandle<HMENU, &DestroyMenu>;

/// A device context to measure texts and the screen with. Nothing is drawn on it: one of the screen itself
/// would be a request to Wine's server each time.
class MeasuringDC {
 public:
  HDC get() const { return dc_.get(); }

 private:
  UniqueMemoryContext dc_{CreateCompatibleDC(nullptr)};
};

/// A device context of a window as long as it lives.
template <auto Get>
class ContextOfWindow {
 public:
  explicit ContextOfWindow(HWND window) : window_(window), dc_(Get(window)) {}
  ~ContextOfWindow() { ReleaseDC(window_, dc_); }
  ContextOfWindow(const ContextOfWindow&) = delete;
  ContextOfWindow& operator=(const ContextOfWindow&) = delete;
  HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

using WindowDC = ContextOfWindow<&GetDC>;  ///< Of the client area, or of the whole screen for a null window.
using FrameDC = ContextOfWindow<&GetWindowDC>;  ///< Frame included; its origin is the window's left top.

/// The device context in which a window answers WM_PAINT.
class PaintDC {
 public:
  explicit PaintDC(HWND window) : window_(window) { BeginPaint(window, &paint_); }
  ~PaintDC() { EndPaint(window_, &paint_); }
  PaintDC(const PaintDC&) = delete;
  PaintDC& operator=(const PaintDC&) = delete;
  HDC get() const { return paint_.hdc; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
};

/// Selects an object into a device context for as long as it lives.
class SelectedObject {
 public:
  SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~SelectedObject() { SelectObject(dc_, previous_); }
  SelectedObject(const SelectedObject&) = delete;
  SelectedObject& operator=(const SelectedObject&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

/// Selects a palette into a device context and realises it, for as long as it lives; a null palette leaves
/// the context its own.
class SelectedPalette {
 public:
  SelectedPalette(HDC dc, HPALETTE palette)
      : dc_(dc), previous_(palette != nullptr ? SelectPalette(dc, palette, TRUE) : nullptr) {
    RealizePalette(dc_);
  }
  ~SelectedPalette() {
    if (previous_ != nullptr) SelectPalette(dc_, previous_, TRUE);
  }
  SelectedPalette(const SelectedPalette&) = delete;
  SelectedPalette& operator=(const SelectedPalette&) = delete;

 private:
  HDC dc_;
  HPALETTE previous_;
};

/// A device context in memory, compatible with the screen, with a bitmap and perhaps a palette selected; owns
/// neither of the two.
class MemoryDC {
 public:
  explicit MemoryDC(HBITMAP bitmap, HPALETTE palette = nullptr)
      : dc_(CreateCompatibleDC(nullptr)), palette_(dc_.get(), palette), bitmap_(dc_.get(), bitmap) {}
  HDC get() const { return dc_.get(); }

 private:
  // In this order: what is selected is taken out before the context goes.
  UniqueMemoryContext dc_;
  SelectedPalette palette_;
  SelectedObject bitmap_;
};

}  // namespace snip
