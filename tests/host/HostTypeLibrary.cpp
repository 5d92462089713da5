#include "tests/host/HostTypeLibrary.h"

#include <windows.h>
#include <oleauto.h>

#include <array>
#include <cstdio>
#include <span>
#include <stdexcept>

#include "app/IDTExtensibility.h"
#include "platform/Com.h"

namespace snip::test {
namespace {

constexpr GUID kLibraryId{0xEF404E00, 0xEDA6, 0x101A, {0x8D, 0xAF, 0x00, 0xDD, 0x01, 0x0F, 0x7E, 0xBB}};
constexpr GUID kAddInId{0x0002E10B, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr WORD kMajor = 5;
constexpr WORD kMinor = 0;
constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;

void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  char text[100]{};
  std::snprintf(text, sizeof text, "%s failed: %08lx", what, static_cast<unsigned long>(result));
  throw std::runtime_error(text);
}

/// A text for functions that take it as writable and do not write.
LPOLESTR Name(const wchar_t* text) {
  return const_cast<wchar_t*>(text);
}

/// A dual interface, derived from IDispatch.
ComPtr<ICreateTypeInfo> AddInterface(ICreateTypeLib2* library, const wchar_t* name, const GUID& id,
                                     ITypeInfo* dispatch) {
  ComPtr<ICreateTypeInfo> info;
  Check(library->CreateTypeInfo(Name(name), TKIND_INTERFACE, info.Put()), "CreateTypeInfo");
  Check(info->SetGuid(id), "SetGuid");
  Check(info->SetTypeFlags(TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FOLEAUTOMATION),
        "SetTypeFlags");
  HREFTYPE base = 0;
  Check(info->AddRefTypeInfo(dispatch, &base), "AddRefTypeInfo");
  Check(info->AddImplType(0, base), "AddImplType");
  return info;
}

void AddMethod(ICreateTypeInfo* info, UINT index, const wchar_t* name, std::span<ELEMDESC> parameters) {
  constexpr int kDispatchFunctions = 7;
  FUNCDESC function{};
  function.memid = static_cast<MEMBERID>(index) + 1;
  function.funckind = FUNC_PUREVIRTUAL;
  function.invkind = INVOKE_FUNC;
  function.callconv = CC_STDCALL;
  function.cParams = static_cast<SHORT>(parameters.size());
  function.lprgelemdescParam = parameters.data();
  function.oVft = static_cast<SHORT>((kDispatchFunctions + index) * sizeof(void*));
  function.elemdescFunc.tdesc.vt = VT_HRESULT;
  Check(info->AddFuncDesc(index, &function), "AddFuncDesc");
  LPOLESTR names[] = {Name(name)};
  Check(info->SetFuncAndParamNames(index, names, 1), "SetFuncAndParamNames");
}

ELEMDESC In(TYPEDESC type) {
  ELEMDESC element{};
  element.tdesc = type;
  element.paramdesc.wParamFlags = PARAMFLAG_FIN;
  return element;
}

TYPEDESC Simple(VARTYPE type) {
  TYPEDESC description{};
  description.vt = type;
  return description;
}

TYPEDESC Of(VARTYPE type, TYPEDESC& inner) {
  TYPEDESC description = Simple(type);
  description.lptdesc = &inner;
  return description;
}

void MakeLibrary(const std::wstring& path) {
  ComPtr<ITypeLib> standard;
  constexpr GUID kStandardId{0x00020430, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  Check(LoadRegTypeLib(kStandardId, 2, 0, 0, standard.Put()), "loading the standard library");
  ComPtr<ITypeInfo> dispatch;
  Check(standard->GetTypeInfoOfGuid(__uuidof(IDispatch), dispatch.Put()), "GetTypeInfoOfGuid");

  ComPtr<ICreateTypeLib2> library;
  Check(CreateTypeLib2(kSystem, path.c_str(), library.Put()), "CreateTypeLib2");
  Check(library->SetGuid(kLibraryId), "SetGuid");
  Check(library->SetVersion(kMajor, kMinor), "SetVersion");
  Check(library->SetName(Name(L"VBIDE")), "SetName");

  const auto addIn = AddInterface(library.get(), L"AddIn", kAddInId, dispatch.get());
  Check(addIn->LayOut(), "LayOut");
  TYPEDESC addInType = Simple(VT_USERDEFINED);
  TYPEDESC variant = Simple(VT_VARIANT);
  TYPEDESC array = Of(VT_SAFEARRAY, variant);
  const ELEMDESC custom = In(Of(VT_PTR, array));
  std::array disconnection{In(Simple(VT_I4)), custom};
  std::array notice{custom};
  for (const bool newer : {false, true}) {
    const auto extensibility =
        AddInterface(library.get(), newer ? L"IDTExtensibility2" : L"IDTExtensibility",
                     newer ? __uuidof(IDTExtensibility2) : __uuidof(IDTExtensibility), dispatch.get());
    Check(extensibility->AddRefTypeInfo(addIn.As<ITypeInfo>().get(), &addInType.hreftype), "AddRefTypeInfo");
    std::array connection{In(Simple(VT_DISPATCH)), In(Simple(VT_I4)),
                          In(newer ? Simple(VT_DISPATCH) : Of(VT_PTR, addInType)), custom};
    AddMethod(extensibility.get(), 0, L"OnConnection", connection);
    AddMethod(extensibility.get(), 1, L"OnDisconnection", disconnection);
    AddMethod(extensibility.get(), 2, L"OnAddInsUpdate", notice);
    AddMethod(extensibility.get(), 3, L"OnStartupComplete", notice);
    if (newer) AddMethod(extensibility.get(), 4, L"OnBeginShutdown", notice);
    Check(extensibility->LayOut(), "LayOut");
  }
  Check(library->SaveAllChanges(), "SaveAllChanges");
}

}  // namespace

void RegisterHostTypeLibrary(const std::string& path) {
  const std::wstring wide(path.begin(), path.end());
  if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) MakeLibrary(wide);
  ComPtr<ITypeLib> library;
  Check(LoadTypeLibEx(wide.c_str(), REGKIND_REGISTER, library.Put()), "registering the library");
}

void UnregisterHostTypeLibrary() {
  UnRegisterTypeLib(kLibraryId, kMajor, kMinor, 0, kSystem);
}

}  // namespace snip::test
