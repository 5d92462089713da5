#include "vba/SnipstoreProgram.h"

#include <objbase.h>

#include <utility>

#include "app/AddInIdentity.h"
#include "app/IDTExtensibility.h"
#include "vba/LateCall.h"

namespace snip::vba {
namespace {

constexpr int kMostAttempts = 3;
constexpr DWORD kPauseMs = 100;

/// A program that is just ending may still be found, and is gone a moment later.
bool MayBeEnding(HRESULT result) {
  for (const HRESULT known :
       {CO_E_SERVER_STOPPING, CO_E_OBJNOTCONNECTED, RPC_E_DISCONNECTED, RPC_E_SERVER_DIED,
        RPC_E_SERVER_DIED_DNE, HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE),
        HRESULT_FROM_WIN32(RPC_S_CALL_FAILED), E_FAIL /* of Wine 8.0 */}) {
    if (result == known) return true;
  }
  return false;
}

}  // namespace

HRESULT SnipstoreProgram::Show(IDispatch* editor) {
  if (starting_) return S_FALSE;
  if (connect_) {
    const auto connect = ComPtr<IDispatch>::Share(connect_.get());
    CoAllowSetForegroundWindow(connect.get(), nullptr);
    if (SUCCEEDED(Call(connect.get(), L"Show"))) return S_OK;
    // Another call may have disconnected it, or started a new one.
    if (connect_.get() != connect.get()) return S_FALSE;
    Detach();  // it has ended, or cannot show its window
  }
  starting_ = true;
  letGo_ = false;
  HRESULT started = Start(editor);
  for (int attempts = 1; MayBeEnding(started) && !letGo_ && attempts < kMostAttempts; ++attempts) {
    Sleep(kPauseMs);
    started = Start(editor);
  }
  starting_ = false;
  return started;
}

HRESULT SnipstoreProgram::Start(IDispatch* editor) {
  ComPtr<IDispatch> connect;
  HRESULT result =
      CoCreateInstance(kConnectClassId, nullptr, CLSCTX_LOCAL_SERVER, __uuidof(IDispatch), connect.PutVoid());
  if (FAILED(result)) return result;
  CoAllowSetForegroundWindow(connect.get(), nullptr);
  // With this connect mode it shows its window at once and does not change the menus.
  result = Invoke(connect.get(), kOnConnectionMember,
                  {ByValue(editor), Variant(kExternal).get(), ByValue(nullptr), Missing()});
  connect_ = std::move(connect);
  if (FAILED(result)) Detach();
  return result;
}

void SnipstoreProgram::LetGo() {
  letGo_ = true;
  Detach();
}

void SnipstoreProgram::Detach() {
  const ComPtr<IDispatch> connect = std::move(connect_);
  if (!connect) return;
  CoAllowSetForegroundWindow(connect.get(), nullptr);  // so that its question can come to the front
  Call(connect.get(), L"Detach");
}

}  // namespace snip::vba
