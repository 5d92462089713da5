#include "ui/commandbar/OleDragDrop.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/ComObject.h"
#include "platform/Handle.h"

namespace snip {
namespace {

constexpr DWORD kMouseButtons = MK_LBUTTON | MK_RBUTTON | MK_MBUTTON;

struct GlobalBlockTraits {
  using Type = HGLOBAL;
  static Type Empty() { return nullptr; }
  static void Close(Type block) { GlobalFree(block); }
};
using UniqueGlobal = UniqueHandle<GlobalBlockTraits>;

/// A global block's bytes, in place while this lives.
class LockedGlobal {
 public:
  explicit LockedGlobal(HGLOBAL block) : block_(block), data_(static_cast<char*>(GlobalLock(block))) {}
  ~LockedGlobal() {
    if (data_ != nullptr) GlobalUnlock(block_);
  }
  LockedGlobal(const LockedGlobal&) = delete;
  LockedGlobal& operator=(const LockedGlobal&) = delete;

  char* data() const { return data_; }
  std::string_view bytes() const {
    return data_ == nullptr ? std::string_view() : std::string_view(data_, GlobalSize(block_));
  }

 private:
  HGLOBAL block_;
  char* data_;
};

UniqueGlobal MakeBlock(const std::string& bytes) {
  UniqueGlobal block(GlobalAlloc(GMEM_MOVEABLE, std::max<std::size_t>(bytes.size(), 1)));
  if (!block) throw std::bad_alloc();
  const LockedGlobal locked(block.get());
  if (locked.data() == nullptr) throw std::bad_alloc();
  std::memcpy(locked.data(), bytes.data(), bytes.size());
  return block;
}

/// Owns what a data object handed out.
class StorageMedium {
 public:
  StorageMedium() = default;
  ~StorageMedium() { ReleaseStgMedium(&medium_); }
  StorageMedium(const StorageMedium&) = delete;
  StorageMedium& operator=(const StorageMedium&) = delete;

  STGMEDIUM* Put() { return &medium_; }
  HGLOBAL block() const { return medium_.tymed == TYMED_HGLOBAL ? medium_.hGlobal : nullptr; }

 private:
  STGMEDIUM medium_{};
};

FORMATETC InMemory(CLIPFORMAT format) {
  return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

/// A copy of an object's data in that format; nothing when it has none.
std::optional<std::string> BytesOf(IDataObject* object, CLIPFORMAT format) {
  FORMATETC wanted = InMemory(format);
  StorageMedium medium;
  if (object == nullptr || FAILED(object->GetData(&wanted, medium.Put())) || medium.block() == nullptr) {
    return std::nullopt;
  }
  return std::string(LockedGlobal(medium.block()).bytes());
}

std::string FromUtf16(std::string_view bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  text.resize(std::min(text.find(L'\0'), text.size()));
  Bstr wide;
  wide.Reset(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
  return wide.Text();
}

/// With the zero that ends it.
std::string ToUtf16(const std::string& text) {
  const Bstr wide(text);
  return {reinterpret_cast<const char*>(wide.get()), (SysStringLen(wide.get()) + 1) * sizeof(wchar_t)};
}

/// No exception may leave a method that COM calls.
template <class Action>
HRESULT Guarded(const Action& action) noexcept {
  try {
    return action();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

// Interfaces of COM have no virtual destructor: their objects end themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

BarMouse MouseOf(HWND window, DWORD keys, POINTL screen) {
  int button = 0;
  if ((keys & MK_LBUTTON) != 0) button |= 1;
  if ((keys & MK_RBUTTON) != 0) button |= 2;
  if ((keys & MK_MBUTTON) != 0) button |= 4;
  int shift = 0;
  if ((keys & MK_SHIFT) != 0) shift |= 1;
  if ((keys & MK_CONTROL) != 0) shift |= 2;
  if ((keys & MK_ALT) != 0) shift |= 4;
  POINT place{screen.x, screen.y};
  ScreenToClient(window, &place);
  return {static_cast<std::int16_t>(button),
          static_cast<std::int16_t>(shift),
          {static_cast<int>(place.x), static_cast<int>(place.y)}};
}

/// The one effect that becomes of those a listener left.
DWORD ChosenEffect(DWORD left, DWORD allowed, DWORD keys) {
  const bool control = (keys & MK_CONTROL) != 0;
  const bool shift = (keys & MK_SHIFT) != 0;
  const DWORD byKeys = control && shift ? DROPEFFECT_LINK
                       : control        ? DROPEFFECT_COPY
                       : shift          ? DROPEFFECT_MOVE
                                        : DROPEFFECT_NONE;
  const DWORD scroll = left & DROPEFFECT_SCROLL;
  // Without keys a copy: the source loses nothing by it.
  for (const DWORD effect :
       {byKeys, DWORD{DROPEFFECT_COPY}, DWORD{DROPEFFECT_MOVE}, DWORD{DROPEFFECT_LINK}}) {
    if ((effect & left & allowed) != 0) return effect | scroll;
  }
  return DROPEFFECT_NONE | scroll;
}

}  // namespace

/// The data that this program drags.
class OleData::Store final : public ComObject<IDataObject> {
 public:
  explicit Store(std::weak_ptr<const OleDragEvents> events) : events_(std::move(events)) {}

  /// Formats that are only offered have no data yet.
  void Set(CLIPFORMAT format, std::optional<std::string> bytes) { formats_[format] = std::move(bytes); }
  void Remove(CLIPFORMAT format) { formats_.erase(format); }
  void Clear() { formats_.clear(); }
  void Disconnect() { events_.reset(); }

  HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
    if (format == nullptr || medium == nullptr) return E_POINTER;
    *medium = {};
    const HRESULT known = QueryGetData(format);
    if (known != S_OK) return known;
    return Guarded([&]() -> HRESULT {
      AskFor(format->cfFormat);
      const auto found = formats_.find(format->cfFormat);
      if (found == formats_.end() || !found->second) return DV_E_FORMATETC;
      medium->hGlobal = MakeBlock(*found->second).Release();
      medium->tymed = TYMED_HGLOBAL;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
    if (format == nullptr) return E_POINTER;
    if (!formats_.contains(format->cfFormat)) return DV_E_FORMATETC;
    if ((format->tymed & TYMED_HGLOBAL) == 0) return DV_E_TYMED;
    return format->dwAspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
  }
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* canonical) override {
    if (canonical == nullptr) return E_POINTER;
    canonical->ptd = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** result) override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (direction != DATADIR_GET) return E_NOTIMPL;
    return Guarded([&] {
      std::vector<FORMATETC> all;
      for (const auto& [format, bytes] : formats_) all.push_back(InMemory(format));
      return SHCreateStdEnumFmtEtc(static_cast<UINT>(all.size()), all.data(), result);
    });
  }
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
    return OLE_E_ADVISENOTSUPPORTED;
  }
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

 private:
  /// Has data that are only offered brought, unless that is under way: who brings them may look at them.
  void AskFor(CLIPFORMAT format) {
    if (formats_.at(format) || asking_) return;
    const auto events = events_.lock();
    if (!events || !events->OLESetData) return;
    struct Asking {
      explicit Asking(bool& flag) : asking(flag) { asking = true; }
      ~Asking() { asking = false; }
      Asking(const Asking&) = delete;
      Asking& operator=(const Asking&) = delete;
      bool& asking;
    };
    // Before the flag's owner, which writes to this object last.
    const auto self = ComPtr<Store>::Share(this);
    const Asking asking(asking_);
    OleData data(ComPtr<Store>::Share(this));
    events->OLESetData(data, format);
  }

  std::weak_ptr<const OleDragEvents> events_;
  std::map<CLIPFORMAT, std::optional<std::string>> formats_;
  bool asking_ = false;
};

OleData::OleData(ComPtr<IDataObject> object) : object_(std::move(object)) {}

OleData::OleData(ComPtr<Store> store)
    : object_(ComPtr<IDataObject>::Share(store.get())), store_(std::move(store)) {}

OleData::OleData(OleData&&) noexcept = default;
OleData& OleData::operator=(OleData&&) noexcept = default;
OleData::~OleData() = default;

bool OleData::GetFormat(CLIPFORMAT format) const {
  FORMATETC wanted = InMemory(format);
  return object_ && object_->QueryGetData(&wanted) == S_OK;
}

std::string OleData::GetText(CLIPFORMAT format) const {
  std::string bytes = BytesOf(object_.get(), format).value_or(std::string());
  if (format == CF_UNICODETEXT) return FromUtf16(bytes);
  bytes.resize(std::min(bytes.find('\0'), bytes.size()));
  return bytes;
}

std::vector<std::string> OleData::Files() const {
  std::vector<std::string> names;
  FORMATETC wanted = InMemory(CF_HDROP);
  StorageMedium medium;
  if (!object_ || FAILED(object_->GetData(&wanted, medium.Put())) || medium.block() == nullptr) return names;
  const auto drop = static_cast<HDROP>(medium.block());
  const UINT count = DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::string name(DragQueryFileA(drop, i, nullptr, 0), '\0');
    DragQueryFileA(drop, i, name.data(), static_cast<UINT>(name.size()) + 1);
    names.push_back(std::move(name));
  }
  return names;
}

bool OleData::SetText(const std::string& text, CLIPFORMAT format) {
  if (!store_) return false;
  store_->Set(format, format == CF_UNICODETEXT ? ToUtf16(text) : text + '\0');
  return true;
}

bool OleData::SetFiles(const std::vector<std::string>& names) {
  if (!store_) return false;
  if (names.empty()) {
    // Readers of a list take its first name for granted.
    store_->Remove(CF_HDROP);
    return true;
  }
  DROPFILES header{};
  header.pFiles = sizeof header;
  std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
  for (const std::string& name : names) bytes += name + '\0';
  store_->Set(CF_HDROP, bytes + '\0');
  return true;
}

bool OleData::Offer(CLIPFORMAT format) {
  if (!store_) return false;
  store_->Set(format, std::nullopt);
  return true;
}

bool OleData::Clear() {
  if (!store_) return false;
  store_->Clear();
  return true;
}

/// Tells how the drag goes on and what it looks like.
class OleDragSource::Feedback final : public ComObject<IDropSource> {
 public:
  explicit Feedback(std::weak_ptr<const OleDragEvents> events) : events_(std::move(events)) {}

  void Disconnect() { events_.reset(); }

  HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escapePressed, DWORD keys) override {
    if (escapePressed != FALSE || events_.expired()) return DRAGDROP_S_CANCEL;
    return (keys & kMouseButtons) == 0 ? DRAGDROP_S_DROP : S_OK;
  }
  HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD effect) override {
    return Guarded([&]() -> HRESULT {
      bool defaultCursors = true;
      const auto events = events_.lock();
      if (events && events->OLEGiveFeedback) events->OLEGiveFeedback(effect, defaultCursors);
      return defaultCursors ? DRAGDROP_S_USEDEFAULTCURSORS : S_OK;
    });
  }

 private:
  std::weak_ptr<const OleDragEvents> events_;
};

OleDragSource::OleDragSource(std::weak_ptr<const OleDragEvents> events)
    : store_(new OleData::Store(events)), feedback_(new Feedback(std::move(events))) {}

OleDragSource::~OleDragSource() {
  store_->Disconnect();
  feedback_->Disconnect();
}

OleData OleDragSource::Data() const {
  return OleData(ComPtr<OleData::Store>::Share(store_.get()));
}

IDataObject* OleDragSource::dataObject() const {
  return store_.get();
}

IDropSource* OleDragSource::dropSource() const {
  return feedback_.get();
}

void OleDrag(const std::weak_ptr<const OleDragEvents>& events) {
  const OleDragSource source(events);
  DWORD allowed = DROPEFFECT_NONE;
  if (const auto raised = events.lock(); raised && raised->OLEStartDrag) {
    OleData data = source.Data();
    raised->OLEStartDrag(data, allowed);
  }
  if (events.expired()) return;
  DWORD effect = DROPEFFECT_NONE;
  const HRESULT ended = DoDragDrop(source.dataObject(), source.dropSource(), allowed, &effect);
  if (ended != DRAGDROP_S_DROP) effect = DROPEFFECT_NONE;
  if (const auto raised = events.lock(); raised && raised->OLECompleteDrag) raised->OLECompleteDrag(effect);
}

/// What the platform tells of a drag over the window. It may be kept longer than the target and is deaf then.
class OleDropTarget::Object final : public ComObject<IDropTarget> {
 public:
  Object(HWND window, Listener listener)
      : window_(window), listener_(std::make_shared<const Listener>(std::move(listener))) {}

  void Disconnect() { listener_.reset(); }

  HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    data_ = ComPtr<IDataObject>::Share(data);
    buttons_ = 0;
    return TellDragOver(keys, screen, effect, OleDragState::Enter);
  }
  HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    return TellDragOver(keys, screen, effect, OleDragState::Over);
  }
  HRESULT STDMETHODCALLTYPE DragLeave() override {
    DWORD none = DROPEFFECT_NONE;
    const HRESULT told = TellDragOver(keys_, place_, &none, OleDragState::Leave);
    data_.Reset();
    return told;
  }
  HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL screen, DWORD* effect) override {
    if (effect == nullptr) return E_POINTER;
    data_ = ComPtr<IDataObject>::Share(data);
    // The button that was held is up by now.
    const HRESULT told =
        Tell(keys | buttons_, screen, effect,
             [](const Listener& listener, OleData& dropped, DWORD& chosen, const BarMouse& mouse) {
               if (!listener.dragDrop) return false;
               listener.dragDrop(dropped, chosen, mouse);
               return true;
             });
    data_.Reset();
    return told;
  }

 private:
  HRESULT TellDragOver(DWORD keys, POINTL screen, DWORD* effect, OleDragState state) {
    if ((keys & kMouseButtons) != 0) buttons_ = keys & kMouseButtons;
    keys_ = keys;
    place_ = screen;
    return Tell(keys, screen, effect,
                [state](const Listener& listener, OleData& data, DWORD& chosen, const BarMouse& mouse) {
                  if (!listener.dragOver) return false;
                  listener.dragOver(data, chosen, mouse, state);
                  return true;
                });
  }

  /// `raise` tells whether there is somebody who heard it.
  template <class Raise>
  HRESULT Tell(DWORD keys, POINTL screen, DWORD* effect, const Raise& raise) {
    const DWORD allowed = std::exchange(*effect, DROPEFFECT_NONE);
    // The listener may end the target, and the data it holds with it.
    const auto self = ComPtr<Object>::Share(this);
    const auto listener = listener_;
    if (!listener) return S_OK;
    return Guarded([&]() -> HRESULT {
      OleData data(ComPtr<IDataObject>::Share(data_.get()));
      DWORD left = allowed;
      if (raise(*listener, data, left, MouseOf(window_, keys, screen)))
        *effect = ChosenEffect(left, allowed, keys);
      return S_OK;
    });
  }

  HWND window_;
  std::shared_ptr<const Listener> listener_;
  ComPtr<IDataObject> data_;
  DWORD buttons_ = 0;  ///< Last held over the window.
  DWORD keys_ = 0;
  POINTL place_{};
};
#pragma GCC diagnostic pop

OleDropTarget::OleDropTarget() = default;

OleDropTarget::~OleDropTarget() {
  Revoke();
}

bool OleDropTarget::Register(HWND window, Listener listener) {
  Revoke();
  object_.Reset(new Object(window, std::move(listener)));
  // Told when the window goes: the system does not let go of a dead window's target.
  const auto self = reinterpret_cast<DWORD_PTR>(this);
  if (SetWindowSubclass(window, &SubclassProc, self, self) != 0) {
    if (RegisterDragDrop(window, object_.get()) == S_OK) {
      window_ = window;
      return true;
    }
    RemoveWindowSubclass(window, &SubclassProc, self);
  }
  object_.Reset();
  return false;
}

void OleDropTarget::Revoke() {
  if (window_ == nullptr) return;
  const HWND window = std::exchange(window_, nullptr);
  RevokeDragDrop(window);
  RemoveWindowSubclass(window, &SubclassProc, reinterpret_cast<UINT_PTR>(this));
  object_->Disconnect();
  object_.Reset();
}

LRESULT CALLBACK OleDropTarget::SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR /*id*/, DWORD_PTR self) {
  if (message == WM_DESTROY) reinterpret_cast<OleDropTarget*>(self)->Revoke();
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace snip
