// The functions that COM calls in the library.

#include <windows.h>
#include <objbase.h>

#include "platform/Com.h"
#include "platform/ComObject.h"
#include "vba/Identity.h"
#include "vba/ModuleLife.h"
#include "vba/VbaAddIn.h"

namespace snip::vba {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    const ComPtr<VbaAddIn> addIn(new VbaAddIn);
    return addIn ? addIn->QueryInterface(iid, object) : E_OUTOFMEMORY;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock != FALSE ? LockModule() : UnlockModule();
    return S_OK;
  }
};

}  // namespace
}  // namespace snip::vba

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object) {
  using namespace snip;
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id != vba::kThisLibrary.classId) return CLASS_E_CLASSNOTAVAILABLE;
  const ComPtr<IClassFactory> factory(new vba::ClassFactory);
  return factory ? factory->QueryInterface(iid, object) : E_OUTOFMEMORY;
}

STDAPI DllCanUnloadNow() {
  return snip::vba::ModuleUsed() ? S_FALSE : S_OK;
}
