#include "vba/LateCall.h"

#include <algorithm>
#include <iterator>

namespace snip::vba {
namespace {

constexpr std::size_t kMostArguments = 5;

/// Reverses the arguments, because `IDispatch` takes the last one first.
HRESULT InvokeWith(IDispatch* object, DISPID member, WORD kind, Arguments arguments, VARIANT* answer) {
  VARIANT reversed[kMostArguments];
  if (arguments.size() > std::size(reversed)) return DISP_E_BADPARAMCOUNT;
  std::reverse_copy(arguments.begin(), arguments.end(), reversed);
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{reversed, nullptr, static_cast<UINT>(arguments.size()), 0};
  if (kind == DISPATCH_PROPERTYPUT) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  return object->Invoke(member, IID_NULL, LOCALE_NEUTRAL, kind, &parameters, answer, nullptr, nullptr);
}

/// The call holds a reference, because the object may be released during it.
HRESULT InvokeByName(IDispatch* object, const wchar_t* member, WORD kind, Arguments arguments,
                     VARIANT* answer) {
  if (object == nullptr) return E_POINTER;
  const auto alive = ComPtr<IDispatch>::Share(object);
  auto* name = const_cast<wchar_t*>(member);  // which is not written to
  DISPID id = DISPID_UNKNOWN;
  const HRESULT known = object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id);
  return FAILED(known) ? known : InvokeWith(object, id, kind, arguments, answer);
}

}  // namespace

VARIANT Missing() {
  VARIANT value{};
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

HRESULT Invoke(IDispatch* object, DISPID member, Arguments arguments) {
  return InvokeWith(object, member, DISPATCH_METHOD, arguments, nullptr);
}

HRESULT Call(IDispatch* object, const wchar_t* member, Arguments arguments, VARIANT* answer) {
  Variant unused;
  return InvokeByName(object, member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments,
                      answer != nullptr ? answer : unused.Put());
}

ComPtr<IDispatch> Get(IDispatch* object, const wchar_t* member, Arguments arguments) {
  Variant answer;
  if (FAILED(Call(object, member, arguments, answer.Put()))) return {};
  return ObjectIn(answer.get()).As<IDispatch>();
}

HRESULT Put(IDispatch* object, const wchar_t* property, const wchar_t* text) {
  return InvokeByName(object, property, DISPATCH_PROPERTYPUT, {TextVariant(text).get()}, nullptr);
}

Variant TextVariant(const wchar_t* text) {
  Variant value;
  const BSTR string = SysAllocString(text);
  if (string == nullptr) return value;
  VARIANT* const raw = value.Put();
  raw->vt = VT_BSTR;
  raw->bstrVal = string;
  return value;
}

}  // namespace snip::vba
