#include "vba/MenuEntry.h"

#include "vba/Identity.h"
#include "vba/LateCall.h"

namespace snip::vba {
namespace {

/// The number of the add-ins menu, which is the same in every language.
constexpr LONG kAddInsMenuId = 30038;

/// An object of the editor that is called only as long as the editor is connected.
class Connected {
 public:
  Connected(const MenuEntry::Owner& owner, const IDispatch* editor) : owner_(owner), editor_(editor) {}

  /// Null after the disconnection, so that no member is called.
  IDispatch* operator()(IDispatch* object) const { return owner_.ConnectedTo(editor_) ? object : nullptr; }
  IDispatch* operator()(const ComPtr<IDispatch>& object) const { return operator()(object.get()); }

 private:
  const MenuEntry::Owner& owner_;
  const IDispatch* editor_;
};

/// The controls of the add-ins menu; null if there is none. A translated editor calls it otherwise, so there
/// it is found by number.
ComPtr<IDispatch> AddInsControls(IDispatch* editor, const Connected& connected) {
  const ComPtr<IDispatch> bars = Get(editor, L"CommandBars");
  ComPtr<IDispatch> bar = Get(connected(bars), L"Item", {TextVariant(L"Add-Ins").get()});
  if (!bar) {
    const ComPtr<IDispatch> menus = Get(connected(bars), L"ActiveMenuBar");
    const ComPtr<IDispatch> menu =
        Get(connected(menus), L"FindControl", {Missing(), Variant(kAddInsMenuId).get()});
    bar = Get(connected(menu), L"CommandBar");
  }
  return Get(connected(bar), L"Controls");
}

bool HasOurCaption(IDispatch* control) {
  Variant caption;
  Call(control, L"Caption", {}, caption.Put());
  return caption.get().vt == VT_BSTR && lstrcmpW(caption.get().bstrVal, kEntryCaption) == 0;
}

void RemoveOurEntries(IDispatch* controls, const Connected& connected) {
  Variant count;
  Call(connected(controls), L"Count", {}, count.Put());
  for (LONG i = count.get().vt == VT_I4 ? count.get().lVal : 0; i >= 1; --i) {
    const ComPtr<IDispatch> control = Get(connected(controls), L"Item", {Variant(i).get()});
    if (HasOurCaption(connected(control))) Call(connected(control), L"Delete");
  }
}

VARIANT True() {
  VARIANT value{};
  value.vt = VT_BOOL;
  value.boolVal = VARIANT_TRUE;
  return value;
}

}  // namespace

bool MenuEntry::Add(IDispatch* editor, Owner& owner) {
  const Connected connected(owner, editor);
  const ComPtr<IDispatch> controls = AddInsControls(editor, connected);
  RemoveOurEntries(controls.get(), connected);
  const VARIANT temporary = True();
  button_ = Get(connected(controls), L"Add",
                {Variant(kButtonControl).get(), Missing(), Missing(), Missing(), temporary});
  // Buttons with equal tags share click events, and so do all buttons without a tag.
  return SUCCEEDED(Put(connected(button_), L"Caption", kEntryCaption)) &&
         SUCCEEDED(Put(connected(button_), L"Tag", kEntryCaption)) &&
         SUCCEEDED(clicks_.Start(connected(button_), owner));
}

/// The event sink is removed first, because the button still raises events while it is deleted.
MenuEntry::~MenuEntry() {
  clicks_.Stop();
  Call(button_.get(), L"Delete");
}

}  // namespace snip::vba
