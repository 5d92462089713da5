#pragma once

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <map>
#include <memory>

#include "platform/Com.h"
#include "tests/host/ScriptObject.h"

namespace snip::test {

/// Those who are told of clicks, by their cookies.
using Sinks = std::map<DWORD, ComPtr<IDispatch>>;

/// Makes the source of an entry's events, which sinks have the interface `events` for. It has no late
/// binding, and tells its sinks only as long as a client keeps it.
ComPtr<IUnknown> MakeClickSource(CallWatch& watch, const IID& events, std::weak_ptr<Sinks>& sinks);

}  // namespace snip::test
