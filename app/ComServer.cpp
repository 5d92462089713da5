#include "app/ComServer.h"

#include <utility>

#include "platform/Com.h"
#include "platform/ComObject.h"
#include "platform/Guarded.h"

namespace snip {
namespace {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  ClassFactory(ServerLife& life, ComServer::Maker maker) : life_(life), maker_(std::move(maker)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return GuardedMethod([&] { return maker_(iid, object); });
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock != FALSE) {
      life_.Lock();
    } else {
      life_.Unlock();
    }
    return S_OK;
  }

 private:
  ServerLife& life_;
  ComServer::Maker maker_;
};

}  // namespace

ComServer::ComServer(const CLSID& id, ServerLife& life, Maker maker) : life_(life) {
  const ComPtr<IClassFactory> factory(new ClassFactory(life, std::move(maker)));
  // Suspended at first, so that no client comes in before everything is ready; one process serves them all.
  if (FAILED(CoRegisterClassObject(id, factory.get(), CLSCTX_LOCAL_SERVER,
                                   REGCLS_MULTIPLEUSE | REGCLS_SUSPENDED, &cookie_))) {
    return;
  }
  life_.SetWithdraw([this] { Revoke(); });
  CoResumeClassObjects();
}

ComServer::~ComServer() {
  life_.SetWithdraw(nullptr);
  Revoke();
}

void ComServer::Revoke() {
  if (started()) CoRevokeClassObject(std::exchange(cookie_, 0));
}

}  // namespace snip
