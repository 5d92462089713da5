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

}  // namespace

HRESULT SnipstoreProgram::Show(IDispatch* editor) {
  if (starting_) return S_FALSE;
  if (connect_) {
    const auto connect = ComPtr<IDispatch>::Share(connect_.get());
    CoAllowSetForegroundWindow(connect.get(), nullptr);
    if (SUCCEEDED(Call(connect.get(), L"Show"))) return S_OK;
    // Another call may have disconnected it, or started a new one.
    if (connect_.get() != connect.get()) return S_FALSE;
    LetGo();  // it has ended, or cannot show its window
  }
  starting_ = true;
  HRESULT started = Start(editor);
  // A program that is just ending is still found, and refuses; by the next attempt it is gone. For one that
  // does not come up the system has waited long enough.
  const auto isEnding = [&] { return FAILED(started) && started != CO_E_SERVER_EXEC_FAILURE; };
  for (int attempts = 1; isEnding() && attempts < kMostAttempts; ++attempts) {
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
  if (FAILED(result)) LetGo();
  return result;
}

void SnipstoreProgram::LetGo() {
  const ComPtr<IDispatch> connect = std::move(connect_);
  if (!connect) return;
  CoAllowSetForegroundWindow(connect.get(), nullptr);  // so that its question can come to the front
  Call(connect.get(), L"Detach");
}

}  // namespace snip::vba
