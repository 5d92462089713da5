#pragma once

#include <windows.h>
#include <ole2.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Com.h"
#include "ui/commandbar/CommandBarInput.h"

namespace snip {

/// Readies the thread for dragging and dropping for as long as it lives. Drop targets and drags come and go
/// within.
class OleThread {
 public:
  OleThread() : entered_(OleInitialize(nullptr)) {}
  ~OleThread() {
    if (SUCCEEDED(entered_)) OleUninitialize();
  }
  OleThread(const OleThread&) = delete;
  OleThread& operator=(const OleThread&) = delete;

 private:
  HRESULT entered_;
};

/// What is dragged. A source fills it, a target reads it; texts are in the ANSI code page.
class OleData {
 public:
  class Store;

  /// What somebody else drags: to be read only.
  explicit OleData(ComPtr<IDataObject> object);
  /// What this program drags.
  explicit OleData(ComPtr<Store> store);
  OleData(OleData&&) noexcept;
  OleData& operator=(OleData&&) noexcept;
  ~OleData();

  bool GetFormat(CLIPFORMAT format) const;
  /// Empty when there is no text. CF_UNICODETEXT is converted, any other format taken as bytes up to a zero.
  std::string GetText(CLIPFORMAT format = CF_TEXT) const;
  /// Names of the files that are dragged (CF_HDROP).
  std::vector<std::string> Files() const;

  // These are false for what somebody else drags.
  bool SetText(const std::string& text, CLIPFORMAT format = CF_TEXT);
  /// Without names there is no list of files any more.
  bool SetFiles(const std::vector<std::string>& names);
  /// Offers a format whose data are asked for with OLESetData when a target wants them.
  bool Offer(CLIPFORMAT format);
  bool Clear();

 private:
  ComPtr<IDataObject> object_;
  ComPtr<Store> store_;
};

/// What a drag tells the one who started it. Effects are DROPEFFECT values.
struct OleDragEvents {
  std::function<void(OleData& data, DWORD& allowedEffects)> OLEStartDrag;
  std::function<void(OleData& data, CLIPFORMAT format)> OLESetData;
  std::function<void(DWORD effect, bool& defaultCursors)> OLEGiveFeedback;
  std::function<void(DWORD effect)> OLECompleteDrag;
};

/// The two objects that the platform drags with. Whoever keeps one of them longer than this lives finds the
/// data set by then and nothing more.
class OleDragSource {
 public:
  explicit OleDragSource(std::weak_ptr<const OleDragEvents> events);
  ~OleDragSource();
  OleDragSource(const OleDragSource&) = delete;
  OleDragSource& operator=(const OleDragSource&) = delete;

  OleData Data() const;
  IDataObject* dataObject() const;
  IDropSource* dropSource() const;

 private:
  class Feedback;

  ComPtr<OleData::Store> store_;
  ComPtr<Feedback> feedback_;
};

/// Drags until the mouse button is let go or Escape pressed. OLEStartDrag says what is dragged and what may
/// become of it: without it, or with its effects left at DROPEFFECT_NONE, no target takes a drop. When the
/// events go meanwhile the drag is given up and none of them is raised any more.
void OleDrag(const std::weak_ptr<const OleDragEvents>& events);

/// Where the pointer with the dragged data is, as OLEDragOver tells it.
enum class OleDragState : std::int16_t { Enter = 0, Leave = 1, Over = 2 };

/// Lets data be dropped on a window.
class OleDropTarget {
 public:
  /// `effect` comes in with all the effects that the source allows and goes out with the one to take; when
  /// several are left, the keys choose among them. Places are client pixels.
  struct Listener {
    std::function<void(OleData& data, DWORD& effect, const BarMouse& mouse, OleDragState state)> dragOver;
    std::function<void(OleData& data, DWORD& effect, const BarMouse& mouse)> dragDrop;
  };

  OleDropTarget();
  ~OleDropTarget();
  OleDropTarget(const OleDropTarget&) = delete;
  OleDropTarget& operator=(const OleDropTarget&) = delete;

  /// Takes drops on a window of this thread until it is destroyed; false when the system refuses. The
  /// listener may revoke, and may destroy this or the window.
  bool Register(HWND window, Listener listener);
  void Revoke();
  bool registered() const { return window_ != nullptr; }

 private:
  class Object;

  static LRESULT CALLBACK SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR self);

  HWND window_ = nullptr;
  ComPtr<Object> object_;
};

}  // namespace snip
