#include "vba/MenuEntry.h"

#include "vba/Identity.h"
#include "vba/LateCall.h"

namespace snip::vba {
namespace {

/// The number of the menu of add-ins, which is the same in every language.
constexpr LONG kAddInsMenuId = 30038;
constexpr LONG kButtonControl = 1;

/// The controls of the menu of add-ins; null when there is none. A translated editor knows it by another
/// name.
ComPtr<IDispatch> AddInsControls(IDispatch* editor) {
  const ComPtr<IDispatch> bars = Get(editor, L"CommandBars");
  ComPtr<IDispatch> bar = Get(bars.get(), L"Item", {TextVariant(L"Add-Ins").get()});
  if (!bar) {
    const ComPtr<IDispatch> menus = Get(bars.get(), L"ActiveMenuBar");
    const ComPtr<IDispatch> menu =
        Get(menus.get(), L"FindControl", {Missing(), Variant(kAddInsMenuId).get()});
    bar = Get(menu.get(), L"CommandBar");
  }
  return Get(bar.get(), L"Controls");
}

bool HasOurCaption(IDispatch* control) {
  Variant caption;
  Call(control, L"Caption", {}, caption.Put());
  return caption.get().vt == VT_BSTR && lstrcmpW(caption.get().bstrVal, kEntryCaption) == 0;
}

void RemoveOurEntries(IDispatch* controls) {
  Variant count;
  Call(controls, L"Count", {}, count.Put());
  for (LONG i = count.get().vt == VT_I4 ? count.get().lVal : 0; i >= 1; --i) {
    const ComPtr<IDispatch> control = Get(controls, L"Item", {Variant(i).get()});
    if (HasOurCaption(control.get())) Call(control.get(), L"Delete");
  }
}

VARIANT True() {
  VARIANT value{};
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  return value;
}

}  // namespace

bool MenuEntry::Add(IDispatch* editor, ClickListener& listener) {
  const ComPtr<IDispatch> controls = AddInsControls(editor);
  RemoveOurEntries(controls.get());
  const VARIANT temporary = True();
  button_ = Get(controls.get(), L"Add",
                {Variant(kButtonControl).get(), Missing(), Missing(), Missing(), temporary});
  // Clicks are told to the sinks of all buttons with the same tag, those without one among them.
  return SUCCEEDED(Put(button_.get(), L"Caption", kEntryCaption)) &&
         SUCCEEDED(Put(button_.get(), L"Tag", kEntryCaption)) &&
         SUCCEEDED(clicks_.Start(button_.get(), listener));
}

/// The button still tells its events while it is deleted: the sink goes first.
MenuEntry::~MenuEntry() {
  clicks_.Stop();
  Call(button_.get(), L"Delete");
}

}  // namespace snip::vba
