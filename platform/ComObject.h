#pragma once

#include <windows.h>
#include <objbase.h>
#include <oaidl.h>

namespace snip {

// Interfaces of COM have no virtual destructor: their objects end themselves.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object with one interface besides IUnknown, and those of `Bases` that the interface is derived from. It
/// is made with its first reference and deletes itself with the last.
template <class Interface, class... Bases>
class ComObject : public Interface {
 public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const bool known =
        iid == __uuidof(IUnknown) || iid == __uuidof(Interface) || (... || (iid == __uuidof(Bases)));
    if (!known) return E_NOINTERFACE;
    *object = static_cast<Interface*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  ComObject() = default;
  virtual ~ComObject() = default;

 private:
  LONG references_ = 1;
};

/// The object `Base` for late binding alone: of its members there is nothing to know but their names.
template <class Base>
class WithoutTypeInfo : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) override {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
  }
};

#pragma GCC diagnostic pop

}  // namespace snip
