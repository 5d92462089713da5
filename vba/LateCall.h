#pragma once

#include <windows.h>
#include <oleauto.h>

#include <initializer_list>

#include "platform/Com.h"

namespace snip::vba {

// Members of late-bound objects, called by their names. Nothing here throws: what could not be had is empty.

using Arguments = std::initializer_list<VARIANT>;  ///< In the order of the declaration; the caller's own.

/// An argument that is left out.
VARIANT Missing();

/// Calls a member by its number.
HRESULT Invoke(IDispatch* object, DISPID member, Arguments arguments);
/// Reads a property or calls a method.
HRESULT Call(IDispatch* object, const wchar_t* member, Arguments arguments = {}, VARIANT* answer = nullptr);
/// The object that a member answers with; null when it has none.
ComPtr<IDispatch> Get(IDispatch* object, const wchar_t* member, Arguments arguments = {});
HRESULT Put(IDispatch* object, const wchar_t* property, const wchar_t* text);

/// A text as an argument; empty when memory runs out.
Variant TextVariant(const wchar_t* text);

}  // namespace snip::vba
