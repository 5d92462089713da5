#pragma once

#include <windows.h>
#include <ole2.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace snip {

/// Makes the thread a single-threaded apartment for as long as it lives: what is called from other threads
/// and processes then comes in with the thread's messages.
class ComApartment {
 public:
  ComApartment() : entered_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~ComApartment() {
    if (SUCCEEDED(entered_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  HRESULT entered_;
};

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

/// Keeps interfaces registered with COM from now on until the thread's apartment ends. When another process
/// lets go of the last object with an interface, Wine 8 takes the interface back and waits for calls through
/// it to end: for ever, if one ends at that moment. The program hung so after some 2,000 calls and releases
/// on a busy machine.
struct KeptInterfaces {
  explicit KeptInterfaces(std::initializer_list<IID> interfaces);
};

/// Owns one reference to a COM object.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  /// Takes over a reference that the caller has.
  explicit ComPtr(Interface* owned) : object_(owned) {}
  ComPtr(ComPtr&& other) noexcept : object_(other.Detach()) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    if (this != &other) Reset(other.Detach());
    return *this;
  }
  ComPtr(const ComPtr&) = delete;
  ComPtr& operator=(const ComPtr&) = delete;
  ~ComPtr() { Reset(); }

  /// A further reference to an object that somebody else keeps.
  static ComPtr Share(Interface* object) {
    if (object != nullptr) object->AddRef();
    return ComPtr(object);
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

  /// Another interface of the object; null when it has none.
  template <class Other>
  ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (object_ != nullptr) object_->QueryInterface(__uuidof(Other), other.PutVoid());
    return other;
  }

  void Reset(Interface* owned = nullptr) {
    Interface* const previous = std::exchange(object_, owned);
    if (previous != nullptr) previous->Release();
  }
  /// Leaves the reference to the caller.
  Interface* Detach() { return std::exchange(object_, nullptr); }

  /// Where a function of the platform writes a reference; the present one is let go.
  Interface** Put() {
    Reset();
    return &object_;
  }
  void** PutVoid() { return reinterpret_cast<void**>(Put()); }

 private:
  Interface* object_ = nullptr;
};

/// Owns a string of COM. Null is an empty text.
class Bstr {
 public:
  Bstr() = default;
  /// Converts a text in the system's ANSI code page; throws std::bad_alloc.
  explicit Bstr(const std::string& text);
  explicit Bstr(std::u16string_view text);
  Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
  Bstr& operator=(Bstr&& other) noexcept {
    if (this != &other) Reset(other.Detach());
    return *this;
  }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { Reset(); }

  BSTR get() const { return text_; }
  /// In the system's ANSI code page.
  std::string Text() const;

  void Reset(BSTR owned = nullptr) { SysFreeString(std::exchange(text_, owned)); }
  BSTR Detach() { return std::exchange(text_, nullptr); }
  BSTR* Put() {
    Reset();
    return &text_;
  }

 private:
  BSTR text_ = nullptr;
};

/// Owns a value of COM, with the string or object it may hold.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(LONG number) : Variant() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  Variant(Variant&& other) noexcept : value_(other.Detach()) {}
  Variant& operator=(Variant&& other) noexcept {
    if (this != &other) {
      VariantClear(&value_);
      value_ = other.Detach();
    }
    return *this;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&value_); }

  /// By value, as COM passes arguments; what it holds stays this owner's.
  const VARIANT& get() const { return value_; }
  bool empty() const { return value_.vt == VT_EMPTY; }
  bool Is(LONG number) const { return value_.vt == VT_I4 && value_.lVal == number; }

  VARIANT Detach() {
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }
  VARIANT* Put() {
    VariantClear(&value_);
    return &value_;
  }

 private:
  VARIANT value_;
};

/// A further reference to the object in a value; null when there is none.
inline ComPtr<IUnknown> ObjectIn(const VARIANT& value) {
  // The two kinds of object keep their pointer in the same place.
  const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
  return ComPtr<IUnknown>::Share(isObject ? value.punkVal : nullptr);
}

/// An object as an argument; it stays the caller's.
inline VARIANT ByValue(IDispatch* object) {
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

}  // namespace snip
