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

/// Asks the window to press the child whose number is wParam.
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

/// What is told of a child, with CHILDID_SELF of the window as a whole. Its state is complete.
AccessibleItem Describe(HWND window, const AccessibleItems& items, LONG child) {
  AccessibleItem told;
  if (child == CHILDID_SELF) {
    told.name = WindowText(window);
    told.role = items.WholeRole();
    told.place = ClientArea(window);
    if (GetFocus() == window) told.state |= STATE_SYSTEM_FOCUSED;
  } else {
    told = items.DescribeItem(child - ChildId(0));
    if (items.FocusedItem() == child - ChildId(0)) told.state |= STATE_SYSTEM_FOCUSED;
    if (!Overlap(told.place, ClientArea(window))) told.state |= STATE_SYSTEM_OFFSCREEN;
  }
  if (IsWindowVisible(window) == 0) told.state |= STATE_SYSTEM_INVISIBLE;
  if (!TakesInput(window)) told.state |= STATE_SYSTEM_UNAVAILABLE;
  return told;
}

bool CanPress(HWND window, const AccessibleItems& items, LONG child) {
  if (child < ChildId(0) || child > items.AccessibleCount()) return false;
  const AccessibleItem item = Describe(window, items, child);
  return !item.defaultAction.empty() && (item.state & STATE_SYSTEM_UNAVAILABLE) == 0;
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
    return AskAbout(child, [&](AccessibleItems&, LONG asked) {
      // Items are no objects of their own: they are asked for by their number.
      if (asked != CHILDID_SELF) return S_FALSE;
      *object = ComPtr<IDispatch>::Share(this).Detach();
      return S_OK;
    });
  }

  // Properties.
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    return Tell(child, &AccessibleItem::name, name);
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    return Tell(child, &AccessibleItem::role, role);
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    return Tell(child, &AccessibleItem::state, state);
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
    return Tell(child, &AccessibleItem::shortcut, shortcut);
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    return Tell(child, &AccessibleItem::defaultAction, action);
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
    return Ask([&](AccessibleItems& items) {
      const std::optional<int> item = items.SelectedItem();
      return item ? Give(ChildId(*item), children) : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
    return AskAbout(child, [&](AccessibleItems&, LONG) {
      if ((flags & ~SELFLAG_VALID) != 0) return E_INVALIDARG;
      return flags == SELFLAG_NONE ? S_OK : DISP_E_MEMBERNOTFOUND;
    });
  }

  // Place.
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override {
    if (!Start(left) || !Start(top) || !Start(width) || !Start(height)) return E_POINTER;
    return AskAbout(child, [&](AccessibleItems& items, LONG asked) {
      RECT screen = ToRECT(Describe(window_, items, asked).place);
      MapWindowPoints(window_, HWND_DESKTOP, reinterpret_cast<POINT*>(&screen), 2);
      *left = screen.left;
      *top = screen.top;
      *width = screen.right - screen.left;
      *height = screen.bottom - screen.top;
      return S_OK;
    });
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
    return AskAbout(start, [&](AccessibleItems& items, LONG from) {
      const LONG count = items.AccessibleCount();
      const bool whole = from == CHILDID_SELF;
      const auto give = [&](LONG child) {
        return child >= ChildId(0) && child <= count ? Give(child, end) : S_FALSE;
      };
      switch (direction) {
        case NAVDIR_FIRSTCHILD:
          return whole ? give(ChildId(0)) : E_INVALIDARG;
        case NAVDIR_LASTCHILD:
          return whole ? give(count) : E_INVALIDARG;
        case NAVDIR_NEXT:
          return whole ? S_FALSE : give(from + 1);
        case NAVDIR_PREVIOUS:
          return whole ? S_FALSE : give(from - 1);
        default:
          if (direction <= NAVDIR_MIN || direction >= NAVDIR_MAX) return E_INVALIDARG;
          // A client finds the windows beside this one through the parent, and what is above an item by the
          // items' places.
          return whole ? S_FALSE : DISP_E_MEMBERNOTFOUND;
      }
    });
  }

  // Action.
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    return AskAbout(child, [&](AccessibleItems& items, LONG asked) {
      if (!CanPress(window_, items, asked)) return DISP_E_MEMBERNOTFOUND;
      // Posted, because an action may open a menu or a message box: the client would hang until a person
      // closes it.
      return PostMessageA(window_, PressMessage(), static_cast<WPARAM>(asked), 0) != 0 ? S_OK : E_FAIL;
    });
  }

 private:
  ~Object() override = default;

  /// Has a question answered by the window, when there still is one. No exception gets out.
  template <class Query>
  HRESULT Ask(Query query) const noexcept {
    if (items_ == nullptr) return CO_E_OBJNOTCONNECTED;
    return GuardedMethod([&] { return query(*items_); });
  }

  /// The same for a question about the whole or about one item, whichever `child` names.
  template <class Query>
  HRESULT AskAbout(const VARIANT& child, Query query) const noexcept {
    return Ask([&](AccessibleItems& items) -> HRESULT {
      const bool isChild =
          child.vt == VT_I4 && child.lVal >= CHILDID_SELF && child.lVal <= items.AccessibleCount();
      return isChild ? query(items, child.lVal) : E_INVALIDARG;
    });
  }

  template <class Part, class Result>
  HRESULT Tell(const VARIANT& child, Part AccessibleItem::*part, Result* result) const noexcept {
    if (!Start(result)) return E_POINTER;
    return AskAbout(child, [&](AccessibleItems& items, LONG asked) {
      return Give(Describe(window_, items, asked).*part, result);
    });
  }

  HRESULT NotSupported(const VARIANT& child) const {
    return AskAbout(child, [](AccessibleItems&, LONG) { return DISP_E_MEMBERNOTFOUND; });
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
    const auto child = static_cast<LONG>(wParam);
    // Nothing of this object is touched after an action, which may have ended it.
    if (CanPress(window_.hWnd(), items_, child)) items_.DoDefaultAction(child - ChildId(0));
    return 0;
  }
  return std::nullopt;
}

LRESULT AccessibleList::HandOut(WPARAM wParam) {
  static auto* const resultFromObject =
      SystemFunction<decltype(LresultFromObject)>("oleacc.dll", "LresultFromObject");
  if (resultFromObject == nullptr) return 0;
  static const KeptInterfaces kept{__uuidof(IAccessible), __uuidof(IDispatch), __uuidof(IOleWindow),
                                   __uuidof(IEnumVARIANT)};
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

}  // namespace snip
