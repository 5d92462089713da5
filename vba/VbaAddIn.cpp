#include "vba/VbaAddIn.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "vba/Identity.h"

namespace snip::vba {
namespace {

/// In the order of their numbers, which start at 1.
constexpr const wchar_t* kMembers[] = {L"OnConnection", L"OnDisconnection", L"OnAddInsUpdate",
                                       L"OnStartupComplete", L"OnBeginShutdown"};

}  // namespace

VbaAddIn::~VbaAddIn() {
  LetGo();
}

HRESULT VbaAddIn::OnConnection(IDispatch* editor, LONG /*mode*/, IDispatch* /*addIn*/,
                               SAFEARRAY** /*custom*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  LetGo();  // some editors connect twice
  editor_ = ComPtr<IDispatch>::Share(editor);
  AddEntry();
  return S_OK;
}

HRESULT VbaAddIn::OnDisconnection(LONG /*mode*/, SAFEARRAY** /*custom*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  LetGo();
  return S_OK;
}

HRESULT VbaAddIn::OnAddInsUpdate(SAFEARRAY** /*custom*/) {
  return S_OK;
}

/// Tries again, because an editor that was still starting when it connected may have refused the entry.
HRESULT VbaAddIn::OnStartupComplete(SAFEARRAY** /*custom*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  AddEntry();
  return S_OK;
}

/// Nothing is released yet, because the shutdown may still be cancelled; a disconnection follows otherwise.
HRESULT VbaAddIn::OnBeginShutdown(SAFEARRAY** /*custom*/) {
  return S_OK;
}

void VbaAddIn::AddEntry() {
  if (!editor_ || entry_) return;
  const auto editor = ComPtr<IDispatch>::Share(editor_.get());
  std::unique_ptr<MenuEntry> entry(new MenuEntry);
  // The editor may disconnect during the call.
  if (entry && entry->Add(editor.get(), *this) && ConnectedTo(editor.get())) entry_ = std::move(entry);
}

/// In this order: what calls this object, what the editor shows, the program, and at last the editor's
/// object.
void VbaAddIn::LetGo() {
  const auto editor = std::move(editor_);
  entry_.reset();
  program_.LetGo();
}

void VbaAddIn::MenuHandler_Click() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  const auto editor = ComPtr<IDispatch>::Share(editor_.get());
  if (!editor) return;
  const HRESULT shown = program_.Show(editor.get());
  // The editor may have disconnected while the program started.
  if (!editor_) return program_.LetGo();
  if (FAILED(shown)) {
    MessageBoxA(GetActiveWindow(),
                "The program does not start. Run BnSnipstore2.exe once from its folder, then try again.",
                kAddInName, MB_OK | MB_ICONEXCLAMATION);
  }
}

HRESULT VbaAddIn::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                                DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  // Names of arguments, which follow that of the member, are not supported.
  std::fill_n(ids, count, DISPID_UNKNOWN);
  const auto* const found = std::find_if(std::begin(kMembers), std::end(kMembers),
                                         [&](const wchar_t* name) { return lstrcmpiW(names[0], name) == 0; });
  if (count > 1 || found == std::end(kMembers)) return DISP_E_UNKNOWNNAME;
  ids[0] = static_cast<DISPID>(found - std::begin(kMembers)) + kOnConnectionMember;
  return S_OK;
}

HRESULT VbaAddIn::Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD kind,
                         DISPPARAMS* parameters, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                         UINT* /*badArgument*/) {
  if ((kind & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  switch (member) {
    case kOnConnectionMember: {
      Variant editor;
      UINT badArgument = 0;
      const HRESULT read = parameters == nullptr
                               ? E_POINTER
                               : DispGetParam(parameters, 0, VT_DISPATCH, editor.Put(), &badArgument);
      return SUCCEEDED(read) ? OnConnection(editor.get().pdispVal, 0, nullptr, nullptr) : S_OK;
    }
    case kOnDisconnectionMember:
      return OnDisconnection(0, nullptr);
    case kOnStartupCompleteMember:
      return OnStartupComplete(nullptr);
    case kOnAddInsUpdateMember:
    case kOnBeginShutdownMember:
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace snip::vba
