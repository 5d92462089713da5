#include "app/LateBound.h"

#include <algorithm>
#include <array>
#include <vector>

#include "app/MessageFilter.h"
#include "platform/Handle.h"

namespace snip {
namespace {

/// Owns what an environment says about a call that failed.
class ExceptionInfo {
 public:
  ExceptionInfo() = default;
  ~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
  }
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;

  EXCEPINFO* Put() { return &info_; }
  HRESULT code() const { return FAILED(info_.scode) ? info_.scode : DISP_E_EXCEPTION; }
  std::string Description() {
    if (info_.bstrDescription == nullptr && info_.pfnDeferredFillIn != nullptr) {
      info_.pfnDeferredFillIn(&info_);
    }
    Bstr description;
    description.Reset(std::exchange(info_.bstrDescription, nullptr));
    return description.Text();
  }

 private:
  EXCEPINFO info_{};
};

bool MeansGone(HRESULT result) {
  constexpr std::array kGone{RPC_E_DISCONNECTED,
                             RPC_E_SERVER_DIED,
                             RPC_E_SERVER_DIED_DNE,
                             RPC_E_CONNECTION_TERMINATED,
                             CO_E_OBJNOTCONNECTED,
                             HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE),
                             HRESULT_FROM_WIN32(RPC_S_CALL_FAILED),
                             HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE)};
  return std::find(kGone.begin(), kGone.end(), result) != kGone.end();
}

bool MeansBusy(HRESULT result) {
  return result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER ||
         result == RPC_E_SERVERCALL_REJECTED;
}

/// Makes a call, and makes it again for a while when the environment is busy. COM does so by the message
/// filter; the environment's own refusals, and those of a COM that does not ask the filter, come here. `call`
/// must not use what a disconnection can take away.
template <class Function>
HRESULT CallPatiently(const Function& call) {
  const DWORD start = GetTickCount();
  for (;;) {
    const HRESULT result = call();
    if (!MeansBusy(result) || GetTickCount() - start >= kBusyPatienceMs) return result;
    // Nothing signals it: this only waits, while other calls come in.
    const UniqueKernelObject never(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    HANDLE handles[] = {never.get()};
    DWORD index = 0;
    CoWaitForMultipleHandles(0, kBusyPauseMs, 1, handles, &index);
  }
}

/// What the system says about a result; its number when it says nothing.
std::string SystemText(HRESULT result) {
  std::array<char, 512> text{};
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(result), 0, text.data(), text.size(), nullptr);
  while (length > 0 && static_cast<unsigned char>(text[length - 1]) <= ' ') --length;
  if (length == 0) {
    length = static_cast<DWORD>(wsprintfA(text.data(), "Error &H%08lX.", static_cast<unsigned long>(result)));
  }
  return {text.data(), length};
}

[[noreturn]] void Throw(HRESULT result, const std::string& description) {
  if (MeansBusy(result)) throw HostBusy("The development environment is busy. Please try again later.");
  const std::string text =
      "The development environment answered: " + (description.empty() ? SystemText(result) : description);
  if (MeansGone(result)) throw HostGone(text);
  throw HostRefused(text);
}

void ThrowIfOver(const HostLink& link) {
  if (link && !*link) throw HostGone("The development environment is not connected any more.");
}

Variant ConvertedTo(VARTYPE type, const Variant& value) {
  VARIANT source = value.get();
  Variant converted;
  ThrowIfFailed(VariantChangeType(converted.Put(), &source, 0, type));
  return converted;
}

}  // namespace

LateBound::LateBound(const Variant& result, HostLink link) : link_(std::move(link)) {
  const ComPtr<IUnknown> object = ObjectIn(result.get());
  object_ = object.As<IDispatch>();
  if (object && !object_) throw HostBusy("The development environment is busy. Please try again later.");
}

void LateBound::Ping() const {
  const auto object = ComPtr<IDispatch>::Share(get());
  if (!object) return;
  UINT count = 0;
  // Of all functions of a late-bound object the one that does not concern its members.
  ThrowIfFailed(object->GetTypeInfoCount(&count));
}

Variant LateBound::Call(const wchar_t* member, Arguments arguments) const {
  std::vector<VARIANT> reversed(arguments);
  std::reverse(reversed.begin(), reversed.end());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  return Invoke(ComPtr<IDispatch>::Share(get()), link_, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                parameters);
}

void LateBound::CallAtTheEnd(const wchar_t* member) const {
  DISPPARAMS none{};
  Invoke(ComPtr<IDispatch>::Share(get()), nullptr, member, DISPATCH_METHOD, none);
}

void LateBound::Put(const wchar_t* member, const Variant& value) const {
  Set(DISPATCH_PROPERTYPUT, member, value.get());
}

void LateBound::PutReference(const wchar_t* member, IDispatch* object) const {
  Set(DISPATCH_PROPERTYPUTREF, member, ByValue(object));
}

void LateBound::Set(WORD kind, const wchar_t* member, VARIANT argument) const {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&argument, &put, 1, 1};
  Invoke(ComPtr<IDispatch>::Share(get()), link_, member, kind, parameters);
}

LONG LateBound::Number(const wchar_t* member, Arguments arguments) const {
  return ConvertedTo(VT_I4, Call(member, arguments)).get().lVal;
}

std::string LateBound::Text(const wchar_t* member, Arguments arguments) const {
  Bstr text;
  text.Reset(ConvertedTo(VT_BSTR, Call(member, arguments)).Detach().bstrVal);
  return text.Text();
}

/// Copies of the object and the link, for the caller's own may go while the environment is waited for.
Variant LateBound::Invoke(ComPtr<IDispatch> object, HostLink link, const wchar_t* member, WORD kind,
                          DISPPARAMS& parameters) {
  ThrowIfOver(link);
  if (!object) throw HostError("The development environment does not have what is needed for this.");
  std::wstring name = member;
  wchar_t* names = name.data();
  DISPID id = DISPID_UNKNOWN;
  ThrowIfFailed(CallPatiently([&] {
    ThrowIfOver(link);
    return object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &id);
  }));
  Variant result;
  ExceptionInfo exception;
  const HRESULT invoked = CallPatiently([&] {
    ThrowIfOver(link);
    // A property that is set has no result.
    VARIANT* const answer = parameters.cNamedArgs != 0 ? nullptr : result.Put();
    return object->Invoke(id, IID_NULL, LOCALE_NEUTRAL, kind, &parameters, answer, exception.Put(), nullptr);
  });
  if (invoked == DISP_E_EXCEPTION) Throw(exception.code(), exception.Description());
  ThrowIfFailed(invoked);
  return result;
}

Variant TextVariant(const std::string& text) {
  Bstr string(text);
  Variant value;
  VARIANT* const raw = value.Put();
  raw->bstrVal = string.Detach();
  raw->vt = VT_BSTR;
  return value;
}

void ThrowIfFailed(HRESULT result) {
  if (FAILED(result)) Throw(result, "");
}

}  // namespace snip
