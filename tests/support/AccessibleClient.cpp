#include "tests/support/AccessibleClient.h"

#include <stdexcept>

#include "tests/support/TestDesktop.h"

namespace snip::test {
namespace {

LONG NumberIn(const Variant& value) {
  return value.get().vt == VT_I4 ? value.get().lVal : -1;
}

std::string listenedTo;
WinEvents heard;

void CALLBACK Hear(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG object, LONG child,
                   DWORD /*thread*/, DWORD /*time*/) {
  if (object == OBJID_CLIENT && ClassOf(window) == listenedTo) heard.emplace_back(event, child);
}

}  // namespace

AccessibleClient::AccessibleClient(HWND window) {
  const HRESULT asked = AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                                   __uuidof(IAccessible), object_.PutVoid());
  if (FAILED(asked)) throw std::runtime_error("the window cannot be reached");
}

AccessibleChild AccessibleClient::Child(LONG id) const {
  const Variant child(id);
  AccessibleChild result;
  result.id = id;
  Bstr text;
  if (object_->get_accName(child.get(), text.Put()) == S_OK) result.name = text.Text();
  if (object_->get_accKeyboardShortcut(child.get(), text.Put()) == S_OK) result.shortcut = text.Text();
  if (object_->get_accDefaultAction(child.get(), text.Put()) == S_OK) result.defaultAction = text.Text();
  Variant number;
  object_->get_accRole(child.get(), number.Put());
  result.role = NumberIn(number);
  object_->get_accState(child.get(), number.Put());
  result.state = NumberIn(number);
  LONG left = 0;
  LONG top = 0;
  LONG width = 0;
  LONG height = 0;
  object_->accLocation(&left, &top, &width, &height, child.get());
  result.place = {left, top, width, height};
  return result;
}

std::vector<AccessibleChild> AccessibleClient::Children() const {
  LONG count = 0;
  object_->get_accChildCount(&count);
  std::vector<VARIANT> ids(static_cast<std::size_t>(count));
  LONG obtained = 0;
  if (FAILED(AccessibleChildren(object_.get(), 0, count, ids.data(), &obtained))) return {};
  std::vector<AccessibleChild> children;
  for (LONG i = 0; i < obtained; ++i) {
    VARIANT& id = ids[static_cast<std::size_t>(i)];
    if (id.vt == VT_I4) children.push_back(Child(id.lVal));
    VariantClear(&id);
  }
  return children;
}

bool AccessibleClient::Press(const std::string& name) const {
  for (const AccessibleChild& child : Children()) {
    if (child.name == name) return object_->accDoDefaultAction(Variant(child.id).get()) == S_OK;
  }
  return false;
}

std::vector<std::tuple<std::string, LONG, LONG>> Told(const std::vector<AccessibleChild>& children) {
  std::vector<std::tuple<std::string, LONG, LONG>> told;
  for (const AccessibleChild& child : children)
    told.emplace_back(child.name + ", " + child.shortcut + ", " + child.defaultAction, child.role,
                      child.state);
  return told;
}

WinEventRecorder::WinEventRecorder(const std::string& className)
    : hook_(SetWinEventHook(EVENT_MIN, EVENT_MAX, GetModuleHandleA(nullptr), &Hear, GetCurrentProcessId(),
                            GetCurrentThreadId(), WINEVENT_INCONTEXT)) {
  if (hook_ == nullptr) throw std::runtime_error("events cannot be heard");
  listenedTo = className;
  heard.clear();
}

const WinEvents& WinEventRecorder::Heard() const {
  return heard;
}

}  // namespace snip::test
