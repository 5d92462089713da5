#pragma once

#include <windows.h>
#include <shellapi.h>

#include <utility>

namespace snip {

/// Owns one handle of the system and closes it once. `Traits` names the handle's type, its empty value and
/// how it is closed.
template <class Traits>
class UniqueHandle {
 public:
  using Type = typename Traits::Type;

  UniqueHandle() = default;
  explicit UniqueHandle(Type handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  Type get() const { return handle_; }
  explicit operator bool() const { return handle_ != Traits::Empty(); }

  Type Release() { return std::exchange(handle_, Traits::Empty()); }
  void Reset(Type handle = Traits::Empty()) {
    if (handle_ != Traits::Empty()) Traits::Close(handle_);
    handle_ = handle;
  }

 private:
  Type handle_ = Traits::Empty();
};

struct FileTraits {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { CloseHandle(handle); }
};
using UniqueFile = UniqueHandle<FileTraits>;

struct FindTraits {
  using Type = HANDLE;
  static Type Empty() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { FindClose(handle); }
};
using UniqueFind = UniqueHandle<FindTraits>;

struct DropTraits {
  using Type = HDROP;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DragFinish(handle); }
};
using UniqueDrop = UniqueHandle<DropTraits>;

struct RegKeyTraits {
  using Type = HKEY;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { RegCloseKey(handle); }
};
using UniqueRegKey = UniqueHandle<RegKeyTraits>;

template <class Object>
struct GdiObjectTraits {
  using Type = Object;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DeleteObject(handle); }
};
using UniqueBitmap = UniqueHandle<GdiObjectTraits<HBITMAP>>;
using UniqueBrush = UniqueHandle<GdiObjectTraits<HBRUSH>>;
using UniqueFont = UniqueHandle<GdiObjectTraits<HFONT>>;
using UniquePalette = UniqueHandle<GdiObjectTraits<HPALETTE>>;
using UniqueRegion = UniqueHandle<GdiObjectTraits<HRGN>>;

struct MetafileTraits {
  using Type = HENHMETAFILE;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DeleteEnhMetaFile(handle); }
};
using UniqueMetafile = UniqueHandle<MetafileTraits>;

struct MemoryContextTraits {
  using Type = HDC;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DeleteDC(handle); }
};
using UniqueMemoryContext = UniqueHandle<MemoryContextTraits>;

struct IconTraits {
  using Type = HICON;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DestroyIcon(handle); }
};
using UniqueIcon = UniqueHandle<IconTraits>;

struct AcceleratorTraits {
  using Type = HACCEL;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DestroyAcceleratorTable(handle); }
};
using UniqueAccelerators = UniqueHandle<AcceleratorTraits>;

struct CursorTraits {
  using Type = HCURSOR;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DestroyCursor(handle); }
};
using UniqueCursor = UniqueHandle<CursorTraits>;

struct MenuTraits {
  using Type = HMENU;
  static Type Empty() { return nullptr; }
  static void Close(Type handle) { DestroyMenu(handle); }
};
using UniqueMenu = UniqueHandle<MenuTraits>;

/// The device context of a window, or of the whole screen for a null window.
class WindowDC {
 public:
  explicit WindowDC(HWND window) : window_(window), dc_(GetDC(window)) {}
  ~WindowDC() { ReleaseDC(window_, dc_); }
  WindowDC(const WindowDC&) = delete;
  WindowDC& operator=(const WindowDC&) = delete;
  HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

/// The device context of a whole window, frame included; its origin is the window's left top.
class FrameDC {
 public:
  explicit FrameDC(HWND window) : window_(window), dc_(GetWindowDC(window)) {}
  ~FrameDC() { ReleaseDC(window_, dc_); }
  FrameDC(const FrameDC&) = delete;
  FrameDC& operator=(const FrameDC&) = delete;
  HDC get() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
};

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
