#pragma once

#include <windows.h>
#include <oleauto.h>

#include <initializer_list>

#include "platform/Com.h"

namespace snip::vba {

// Calls members of late-bound objects by name. Nothing here throws: a failed call gives an empty result.

using Arguments = std::initializer_list<VARIANT>;  ///< In the order of the declaration; owned by the caller.

/// An argument that is left out.
VARIANT Missing();

/// Calls a member by its number.
HRESULT Invoke(IDispatch* object, DISPID member, Arguments arguments);
/// Reads a property or calls a method.
HRESULT Call(IDispatch* object, const wchar_t* member, Arguments arguments = {}, VARIANT* answer = nullptr);
/// The object that a member returns; null if it returns none.
ComPtr<IDispatch> Get(IDispatch* object, const wchar_t* member, Arguments arguments = {});
HRESULT Put(IDispatch* object, const wchar_t* property, const wchar_t* text);

/// A text as an argument; empty if memory runs out.
Variant TextVariant(const wchar_t* text);

}  // namespace snip::vba
