#include "tests/host/ScriptObject.h"

#include <ocidl.h>

#include <algorithm>
#include <utility>

namespace snip::test {

HRESULT CallWatch::RunHook(const std::string& member) {
  const auto hook = hooks.find(member);
  if (hook == hooks.end()) return S_OK;
  ++hooked;
  const Hook run = hook->second;  // which may take itself away
  return run();
}

std::string Arguments::Text(std::size_t index) const {
  Bstr text;
  text.Reset(SysAllocStringLen((*this)[index].bstrVal, SysStringLen((*this)[index].bstrVal)));
  return text.Text();
}

ScriptObject::ScriptObject(CallWatch& watch, std::string name, std::vector<Member> members)
    : watch_(watch), name_(std::move(name)), members_(std::move(members)) {
  ++watch_.references;
}

HRESULT ScriptObject::QueryInterface(REFIID iid, void** object) {
  if (source && iid == __uuidof(IConnectionPointContainer)) return source->QueryInterface(iid, object);
  return WithoutTypeInfo::QueryInterface(iid, object);
}

ULONG ScriptObject::AddRef() {
  ++watch_.references;
  return WithoutTypeInfo::AddRef();
}

ULONG ScriptObject::Release() {
  --watch_.references;
  return WithoutTypeInfo::Release();
}

HRESULT ScriptObject::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID locale,
                                    DISPID* ids) {
  if (locale != LOCALE_NEUTRAL) return DISP_E_UNKNOWNLCID;
  if (count != 1) return DISP_E_UNKNOWNNAME;
  const auto named = std::ranges::find_if(
      members_, [&](const Member& member) { return lstrcmpiW(member.name.c_str(), names[0]) == 0; });
  ids[0] = named == members_.end() ? DISPID_UNKNOWN : static_cast<DISPID>(named - members_.begin());
  return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT ScriptObject::Invoke(DISPID id, REFIID /*reserved*/, LCID locale, WORD kind, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO* exception, UINT* /*badArgument*/) {
  if (locale != LOCALE_NEUTRAL) return DISP_E_UNKNOWNLCID;
  const auto alive = ComPtr<IUnknown>::Share(this);
  const auto member = std::find_if(members_.begin(), members_.end(), [&](const Member& candidate) {
    return static_cast<std::size_t>(id) < members_.size() &&
           candidate.name == members_[static_cast<std::size_t>(id)].name && (candidate.kind & kind) != 0;
  });
  if (member == members_.end()) return DISP_E_MEMBERNOTFOUND;
  const bool put = (member->kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  if (parameters->cNamedArgs != (put ? 1U : 0U) ||
      (put && parameters->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)) {
    return DISP_E_NONAMEDARGS;
  }
  const Arguments arguments(*parameters);
  if (arguments.size() != member->arguments.size()) return DISP_E_BADPARAMCOUNT;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].vt != member->arguments[i]) return DISP_E_TYPEMISMATCH;
  }
  VARIANT unused{};
  VARIANT& answer = result != nullptr ? *result : unused;
  VariantInit(&answer);
  const std::string name = name_ + "." + std::string(member->name.begin(), member->name.end());
  watch_.description.clear();
  if (watch_.depth++ == 0 && watch_.hooked > 0) watch_.after += name + " ";
  HRESULT done = watch_.RunHook(name);
  if (done == S_OK) done = member->function(arguments, answer);
  --watch_.depth;
  if (done == kAnswerNothing) return Answer(answer, static_cast<IDispatch*>(nullptr));
  if (FAILED(done) && !watch_.description.empty() && exception != nullptr) {
    exception->scode = done;
    exception->bstrDescription = Bstr(watch_.description).Detach();
    return DISP_E_EXCEPTION;
  }
  return done;
}

HRESULT Answer(VARIANT& result, IDispatch* object) {
  result.vt = VT_DISPATCH;
  result.pdispVal = object;
  return S_OK;
}

HRESULT Answer(VARIANT& result, LONG number) {
  result.vt = VT_I4;
  result.lVal = number;
  return S_OK;
}

HRESULT Answer(VARIANT& result, const std::string& text) {
  result.vt = VT_BSTR;
  result.bstrVal = Bstr(text).Detach();
  return S_OK;
}

}  // namespace snip::test
