#include "ui/main/Splitter.h"

#include <windowsx.h>

#include <utility>

#include "platform/Handle.h"

namespace snip {

Splitter::Splitter(Divides divides, std::function<void(int edge)> dropped)
    : divides_(divides), dropped_(std::move(dropped)) {}

Splitter::~Splitter() {
  Destroy();
}

bool Splitter::CreateIn(HWND parent, const char* name) {
  return Create({.className = "SnipstoreSplitter",
                 .title = name,
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                 .place = {},
                 .parent = parent});
}

int Splitter::Along(LPARAM lParam) const {
  return divides_ == Divides::Columns ? GET_X_LPARAM(lParam) : GET_Y_LPARAM(lParam);
}

int Splitter::Edge() const {
  const Rect place = PlaceInParent(hWnd());
  return divides_ == Divides::Columns ? place.left : place.top;
}

void Splitter::MoveEdge(int edge) {
  Rect place = PlaceInParent(hWnd());
  (divides_ == Divides::Columns ? place.left : place.top) = edge;
  // On top, to be seen over the controls that it crosses.
  SetWindowPos(hWnd(), HWND_TOP, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
}

void Splitter::React(SplitterDrag::Reaction reaction) {
  if (reaction == SplitterDrag::Reaction::None) return;
  InvalidateRect(hWnd(), nullptr, TRUE);
  if (reaction == SplitterDrag::Reaction::Begin) {
    startEdge_ = Edge();
    above_ = GetWindow(hWnd(), GW_HWNDPREV);
    SetCapture(hWnd());
    return;
  }
  ReleaseCapture();
  GoBeneath();
  dropped_(Edge());
}

/// Undoes a drag that ended because another window took the mouse capture.
void Splitter::CancelDrag() {
  if (drag_.MouseUp() == SplitterDrag::Reaction::None) return;
  InvalidateRect(hWnd(), nullptr, TRUE);
  MoveEdge(startEdge_);
  GoBeneath();
}

/// Restores the z-order, so that it is below the controls that cover it.
void Splitter::GoBeneath() {
  SetWindowPos(hWnd(), above_ != nullptr ? above_ : HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

LRESULT Splitter::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = accessible_.Answer(message, wParam, lParam)) return *answer;
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      React(drag_.MouseDown(true, Along(lParam)));
      return 0;
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      React(drag_.MouseDown(false, Along(lParam)));
      return 0;
    case WM_MOUSEMOVE:
      if (const int distance = drag_.MouseMove(Along(lParam)); distance != 0) MoveEdge(Edge() + distance);
      return 0;
    case WM_LBUTTONUP:
      React(drag_.MouseUp());
      return 0;
    case WM_CAPTURECHANGED:
      CancelDrag();
      return 0;
    case WM_SETCURSOR:
      SetCursor(LoadCursorA(nullptr, divides_ == Divides::Columns ? IDC_SIZEWE : IDC_SIZENS));
      return TRUE;
    case WM_ERASEBKGND: {
      const Size size = ClientSize(hWnd());
      const RECT area{0, 0, size.width, size.height};
      const UniqueBrush dragged(drag_.dragging() ? CreateSolidBrush(kSplitDragColor) : nullptr);
      FillRect(reinterpret_cast<HDC>(wParam), &area,
               dragged ? dragged.get() : GetSysColorBrush(COLOR_BTNFACE));
      return 1;
    }
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
