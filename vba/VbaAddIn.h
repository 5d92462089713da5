#pragma once

#include <memory>

#include "app/ClickSubscription.h"
#include "app/IDTExtensibility.h"
#include "vba/MenuEntry.h"
#include "vba/SnipstoreProgram.h"

namespace snip::vba {

/// The add-in in the process of VBA's editor: an entry in its add-ins menu, which starts the program. All
/// calls report success, because after a failure the editor would not load the add-in again.
class VbaAddIn final : public WithoutTypeInfo<ComObject<IDTExtensibility2, IDispatch>>,
                       private MenuEntry::Owner {
 public:
  ~VbaAddIn() override;

  // IDTExtensibility2
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* editor, LONG mode, IDispatch* addIn,
                                         SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(LONG mode, SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) override;

  // IDispatch: the same functions
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 private:
  void AddEntry();
  void LetGo();
  // MenuEntry::Owner
  bool ConnectedTo(const IDispatch* editor) const override { return editor_.get() == editor; }
  void MenuHandler_Click() override;

  ComPtr<IDispatch> editor_;  ///< Null when not connected.
  std::unique_ptr<MenuEntry> entry_;
  SnipstoreProgram program_;
};

}  // namespace snip::vba
