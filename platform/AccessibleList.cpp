#include "platform/AccessibleList.h"

#include <new>

#include "platform/ComObject.h"
#include "platform/Guarded.h"
#include "platform/Rects.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"

namespace snip {
namespace {

/// Asks the window to press the item that wParam counts.
UINT PressMessage() {
  static const UINT message = RegisterWindowMessageA("BnAccessibleListPress");
  return message;
}

LONG ChildId(int item) {
  return item + 1;
}

/// Whether mouse and keyboard reach the window: neither it nor a window around it is disabled, as the main
/// window is while a message box is open.
bool TakesInput(HWND window) {
  for (; window != nullptr; window = GetAncestor(window, GA_PARENT)) {
    if (IsWindowEnabled(window) == 0) return false;
  }
  return true;
}

LONG WindowState(HWND window) {
  LONG state = 0;
  if (IsWindowVisible(window) == 0) state |= STATE_SYSTEM_INVISIBLE;
  if (!TakesInput(window)) state |= STATE_SYSTEM_UNAVAILABLE;
  return state;
}

bool Contains(const Rect& area, Point point) {
  return point.x >= area.left && point.x < area.right() && point.y >= area.top && point.y < area.bottom();
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

Rect ClientArea(HWND window) {
  const Size size = ClientSize(window);
  return {0, 0, size.width, size.height};
}

LONG ItemState(HWND window, const AccessibleItems& items, int item) {
  const AccessibleItem description = items.DescribeItem(item);
  LONG state = description.state | WindowState(window);
  if (items.FocusedItem() == item) state |= STATE_SYSTEM_FOCUSED;
  if (!Overlap(description.place, ClientArea(window))) state |= STATE_SYSTEM_OFFSCREEN;
  return state;
}

bool CanPress(HWND window, const AccessibleItems& items, int item) {
  return item >= 0 && item < items.AccessibleCount() && !items.DescribeItem(item).defaultAction.empty() &&
         (ItemState(window, items, item) & STATE_SYSTEM_UNAVAILABLE) == 0;
}

/// The text for a client to free; an empty one is told as "has none".
HRESULT Give(const std::string& text, BSTR* result) {
  if (text.empty()) return S_FALSE;
  *result = Bstr(text).Detach();
  return S_OK;
}

HRESULT Give(LONG number, VARIANT* result) {
  *result = Variant(number).Detach();
  return S_OK;
}

bool Start(VARIANT* result) {
  if (result != nullptr) VariantInit(result);
  return result != nullptr;
}

template <class Pointer>
bool Start(Pointer* result) {
  if (result != nullptr) *result = {};
  return result != nullptr;
}

}  // namespace

// Interfaces of COM have no virtual destructor: their objects end themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// What clients hold. It outlives the window when they do, and knows by then that it has none.
class AccessibleList::Object final : public ComObject<IAccessible, IDispatch> {
 public:
  Object(HWND window, AccessibleItems& items) : window_(window), items_(&items) {}
  void Disconnect() { items_ = nullptr; }

  // IDispatch, by the platform's own description of IAccessible.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!Start(count)) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** typeInfo) override {
    if (!Start(typeInfo)) return E_POINTER;
    if (index != 0) return DISP_E_BADINDEX;
    ComPtr<ITypeLib> library;
    const HRESULT loaded = LoadRegTypeLib(LIBID_Accessibility, 1, 1, LOCALE_NEUTRAL, library.Put());
    return FAILED(loaded) ? loaded : library->GetTypeInfoOfGuid(__uuidof(IAccessible), typeInfo);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    ComPtr<ITypeInfo> typeInfo;
    const HRESULT loaded = GetTypeInfo(0, locale, typeInfo.Put());
    return FAILED(loaded) ? loaded : DispGetIDsOfNames(typeInfo.get(), names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID /*reserved*/, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrongArgument) override {
    ComPtr<ITypeInfo> typeInfo;
    const HRESULT loaded = GetTypeInfo(0, locale, typeInfo.Put());
    if (FAILED(loaded)) return loaded;
    return DispInvoke(static_cast<IAccessible*>(this), typeInfo.get(), id, flags, arguments, result,
                      exception, wrongArgument);
  }

  // IAccessible: the tree.
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    if (!Start(parent)) return E_POINTER;
    // A client area's parent is the window around it, with its frame.
    return Ask([&](AccessibleItems&) {
      static auto* const objectFromWindow =
          SystemFunction<decltype(AccessibleObjectFromWindow)>("oleacc.dll", "AccessibleObjectFromWindow");
      if (objectFromWindow == nullptr) return E_NOTIMPL;
      return objectFromWindow(window_, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                              reinterpret_cast<void**>(parent));
    });
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    if (!Start(count)) return E_POINTER;
    return Ask([&](AccessibleItems& items) {
      *count = items.AccessibleCount();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    if (!Start(object)) return E_POINTER;
    return AskAbout(
        child,
        [&](AccessibleItems&) {
          *object = ComPtr<IDispatch>::Share(this).Detach();
          return S_OK;
        },
        // Items are no objects of their own: they are asked for by their number.
        [](AccessibleItems&, int) { return S_FALSE; });
  }

  // Properties.
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    if (!Start(name)) return E_POINTER;
    return AskAbout(
        child, [&](AccessibleItems& items) { return Give(items.DescribeWhole().name, name); },
        [&](AccessibleItems& items, int item) { return Give(items.DescribeItem(item).name, name); });
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    if (!Start(role)) return E_POINTER;
    return AskAbout(
        child, [&](AccessibleItems& items) { return Give(items.DescribeWhole().role, role); },
        [&](AccessibleItems& items, int item) { return Give(items.DescribeItem(item).role, role); });
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    if (!Start(state)) return E_POINTER;
    return AskAbout(
        child,
        [&](AccessibleItems& items) {
          const LONG focused = GetFocus() == window_ ? STATE_SYSTEM_FOCUSED : 0;
          return Give(items.DescribeWhole().state | WindowState(window_) | focused, state);
        },
        [&](AccessibleItems& items, int item) { return Give(ItemState(window_, items, item), state); });
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
    if (!Start(shortcut)) return E_POINTER;
    return AskAbout(child, &HasNone, [&](AccessibleItems& items, int item) {
      return Give(items.DescribeItem(item).shortcut, shortcut);
    });
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    if (!Start(action)) return E_POINTER;
    return AskAbout(child, &HasNone, [&](AccessibleItems& items, int item) {
      return Give(items.DescribeItem(item).defaultAction, action);
    });
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    return NotSupported(child, value);
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override {
    return NotSupported(child, description);
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override {
    return NotSupported(child, help);
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override {
    if (!Start(topic)) return E_POINTER;
    return NotSupported(child, file);
  }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT child, BSTR /*name*/) override { return NotSupported(child); }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT child, BSTR /*value*/) override {
    return NotSupported(child);
  }

  // Focus and selection.
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
    if (!Start(child)) return E_POINTER;
    return Ask([&](AccessibleItems& items) {
      if (const std::optional<int> item = items.FocusedItem()) return Give(ChildId(*item), child);
      return GetFocus() == window_ ? Give(CHILDID_SELF, child) : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
    if (!Start(children)) return E_POINTER;
    return Ask([](AccessibleItems&) { return S_FALSE; });
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
    return AskAbout(
        child, [&](AccessibleItems&) { return WithoutSelection(flags); },
        [&](AccessibleItems& items, int item) {
          if (flags != SELFLAG_TAKEFOCUS) return WithoutSelection(flags);
          constexpr LONG kRelevant = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_UNAVAILABLE;
          const LONG state = ItemState(window_, items, item) & kRelevant;
          if (state != STATE_SYSTEM_FOCUSABLE) return DISP_E_MEMBERNOTFOUND;
          items.FocusItem(item);
          return S_OK;
        });
  }

  // Place.
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override {
    if (!Start(left) || !Start(top) || !Start(width) || !Start(height)) return E_POINTER;
    const auto give = [&](const Rect& place) {
      RECT screen = ToRECT(place);
      MapWindowPoints(window_, HWND_DESKTOP, reinterpret_cast<POINT*>(&screen), 2);
      *left = screen.left;
      *top = screen.top;
      *width = screen.right - screen.left;
      *height = screen.bottom - screen.top;
      return S_OK;
    };
    return AskAbout(
        child, [&](AccessibleItems&) { return give(ClientArea(window_)); },
        [&](AccessibleItems& items, int item) { return give(items.DescribeItem(item).place); });
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override {
    if (!Start(child)) return E_POINTER;
    return Ask([&](AccessibleItems& items) {
      POINT client{x, y};
      ScreenToClient(window_, &client);
      const Point at = ToPoint(client);
      if (!Contains(ClientArea(window_), at)) return S_FALSE;
      const int count = items.AccessibleCount();
      for (int item = 0; item < count; ++item) {
        if (Contains(items.DescribeItem(item).place, at)) return Give(ChildId(item), child);
      }
      return Give(CHILDID_SELF, child);
    });
  }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
    if (!Start(end)) return E_POINTER;
    const auto give = [&](int item, int count) {
      return item >= 0 && item < count ? Give(ChildId(item), end) : S_FALSE;
    };
    return AskAbout(
        start,
        [&](AccessibleItems& items) {
          const int count = items.AccessibleCount();
          switch (direction) {
            case NAVDIR_FIRSTCHILD:
              return give(0, count);
            case NAVDIR_LASTCHILD:
              return give(count - 1, count);
            default:
              // The windows beside this one are found through the parent.
              return IsDirection(direction) ? S_FALSE : E_INVALIDARG;
          }
        },
        [&](AccessibleItems& items, int item) {
          const int count = items.AccessibleCount();
          switch (direction) {
            case NAVDIR_NEXT:
              return give(item + 1, count);
            case NAVDIR_PREVIOUS:
              return give(item - 1, count);
            case NAVDIR_FIRSTCHILD:
            case NAVDIR_LASTCHILD:
              return E_INVALIDARG;
            default:
              // Whether the items are a row or a column only their places tell.
              return IsDirection(direction) ? DISP_E_MEMBERNOTFOUND : E_INVALIDARG;
          }
        });
  }

  // Action.
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    return AskAbout(
        child, [](AccessibleItems&) { return DISP_E_MEMBERNOTFOUND; },
        [&](AccessibleItems& items, int item) {
          if (!CanPress(window_, items, item)) return DISP_E_MEMBERNOTFOUND;
          // Not done within the call: an action may open a menu or a message box, and the client would hang
          // until a person closes it.
          return PostMessageA(window_, PressMessage(), static_cast<WPARAM>(item), 0) != 0 ? S_OK : E_FAIL;
        });
  }

 private:
  ~Object() override = default;

  static bool IsDirection(LONG direction) { return direction > NAVDIR_MIN && direction < NAVDIR_MAX; }

  static HRESULT HasNone(AccessibleItems& /*items*/) { return S_FALSE; }

  static HRESULT WithoutSelection(LONG flags) {
    if ((flags & ~SELFLAG_VALID) != 0) return E_INVALIDARG;
    return flags == SELFLAG_NONE ? S_OK : DISP_E_MEMBERNOTFOUND;
  }

  /// Has a question answered by the window, when there still is one. No exception gets out.
  template <class Query>
  HRESULT Ask(Query query) const noexcept {
    if (items_ == nullptr) return CO_E_OBJNOTCONNECTED;
    return GuardedMethod([&] { return query(*items_); });
  }

  /// The same for a question about the whole or about one item, whichever `child` names.
  template <class Whole, class Item>
  HRESULT AskAbout(const VARIANT& child, Whole whole, Item item) const noexcept {
    return Ask([&](AccessibleItems& items) -> HRESULT {
      if (child.vt != VT_I4) return E_INVALIDARG;
      if (child.lVal == CHILDID_SELF) return whole(items);
      if (child.lVal < ChildId(0) || child.lVal > items.AccessibleCount()) return E_INVALIDARG;
      return item(items, static_cast<int>(child.lVal) - ChildId(0));
    });
  }

  HRESULT NotSupported(const VARIANT& child) const {
    return AskAbout(
        child, [](AccessibleItems&) { return DISP_E_MEMBERNOTFOUND; },
        [](AccessibleItems&, int) { return DISP_E_MEMBERNOTFOUND; });
  }
  HRESULT NotSupported(const VARIANT& child, BSTR* text) const {
    return Start(text) ? NotSupported(child) : E_POINTER;
  }

  HWND window_;
  AccessibleItems* items_;  ///< Null once the window is gone.
};
#pragma GCC diagnostic pop

AccessibleList::AccessibleList(const Window& window, AccessibleItems& items)
    : window_(window), items_(items) {}

AccessibleList::~AccessibleList() {
  Disconnect();
}

std::optional<LRESULT> AccessibleList::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_GETOBJECT) {
    // Object numbers are 32 bits wide and negative, extended with zeros or with the sign.
    if (static_cast<LONG>(lParam) == OBJID_CLIENT) return HandOut(wParam);
  } else if (message == WM_NCDESTROY) {
    Disconnect();
  } else if (message == PressMessage()) {
    const auto item = static_cast<int>(wParam);
    // Nothing of this object is touched after an action, which may have ended it.
    if (CanPress(window_.hWnd(), items_, item)) items_.DoDefaultAction(item);
    return 0;
  }
  return std::nullopt;
}

LRESULT AccessibleList::HandOut(WPARAM wParam) {
  static auto* const resultFromObject =
      SystemFunction<decltype(LresultFromObject)>("oleacc.dll", "LresultFromObject");
  if (resultFromObject == nullptr) return 0;
  if (!object_) object_.Reset(new Object(window_.hWnd(), items_));
  return resultFromObject(__uuidof(IAccessible), wParam, object_.get());
}

void AccessibleList::Disconnect() {
  if (!object_) return;
  object_->Disconnect();
  // What other threads and processes still hold would keep the object for as long as they run.
  CoDisconnectObject(object_.get(), 0);
  object_.Reset();
}

void AccessibleList::Notify(DWORD event) const {
  if (window_.hWnd() != nullptr) NotifyWinEvent(event, window_.hWnd(), OBJID_CLIENT, CHILDID_SELF);
}

void AccessibleList::Notify(DWORD event, int item) const {
  if (window_.hWnd() != nullptr) NotifyWinEvent(event, window_.hWnd(), OBJID_CLIENT, ChildId(item));
}

AccessibleWhole AccessiblePart::DescribeWhole() const {
  return {.name = WindowText(window_.hWnd()), .role = role_};
}

}  // namespace snip
