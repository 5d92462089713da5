#include "app/Connect.h"

#include <algorithm>
#include <utility>

#include "app/AddInIdentity.h"
#include "platform/Guarded.h"

namespace snip {
namespace {

constexpr const char* kAddInsBar = "Add-Ins";

// The dispatch ids of the members that Connect offers by name.
constexpr DISPID kShowMember = 0x60030000;
constexpr DISPID kHideMember = 0x60030001;
constexpr DISPID kDetachMember = 0x60030002;

/// Entries that an environment has kept from an earlier time, when it ended before they could be taken away.
void RemoveStaleEntries(const host::CommandBarControls& controls, const std::string& caption) {
  try {
    for (LONG i = controls.Count(); i >= 1; --i) {
      const host::CommandBarControl control = controls.Item(i);
      if (control.Caption() == caption) control.Delete();
    }
  } catch (const HostGone&) {
    throw;
  } catch (const HostError&) {
    // An entry too many does less harm than none.
    return;
  }
}

}  // namespace

Connect::Session::Session(Connect& connect, IDispatch* vbInst)
    : root(ComPtr<IDispatch>::Share(vbInst), connected),
      environment(root, [&connect] { return connect.FindHostGone(); }) {}

Connect::Connect(ServerLife& life, AddInWindow& window)
    : WithoutTypeInfo(life), life_(life), window_(window) {
  // Environments let go of the add-in right after its last call.
  static const KeptInterfaces kept{__uuidof(IDTExtensibility), __uuidof(IDTExtensibility2),
                                   __uuidof(IDispatch)};
}

Connect::~Connect() {
  // While the window asks whether to save, nothing may refer to this again: it would end a second time.
  watch_.reset();
  Disconnect();
  window_.Forget(*this);
}

void Connect::Show() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  const std::shared_ptr<Session> session = session_;
  KeepForWindow();
  if (!window_.Show(*this, session ? &session->environment : nullptr)) displayed_.Reset();
}

void Connect::Hide() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  if (!displayed_) return;
  displayed_.Reset();
  window_.Hide(*this);
}

void Connect::Detach() {
  if (!session_) return;
  const std::shared_ptr<Session> session = EndSession();
  if (!watch_) return;  // the environment was found gone during that, and the window has been unloaded
  detached_ = session;
  KeepForWindow();
  watch_->PostUnload();
}

void Connect::UnloadMainWindow() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  Disconnect();
}

void Connect::KeepForWindow() {
  if (!connection_) connection_.emplace(life_);
  displayed_ = ComPtr<IUnknown>::Share(this);
}

HRESULT Connect::OnConnection(IDispatch* VBInst, LONG ConnectMode, IDispatch* /*AddInInst*/,
                              SAFEARRAY** /*custom*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  return GuardedMethod([&] {
    Disconnect();
    if (VBInst == nullptr) return;
    if (!connection_) connection_.emplace(life_);
    watch_.reset(new ConnectionWindow(*this));  // every session has one
    const auto session = std::make_shared<Session>(*this, VBInst);
    session_ = session;
    if (ConnectMode == kExternal) {
      // Who has started the add-in may let go of it before the window is there. It waits now: its environment
      // is asked for the process afterwards, for it may be busy.
      KeepForWindow();
      watch_->PostShow();
      watch_->PostWatch();
    } else {
      WatchHost();
      if (!session->over()) AddMenuEntry(*session);
    }
  });
}

HRESULT Connect::OnDisconnection(LONG /*RemoveMode*/, SAFEARRAY** /*custom*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  return GuardedMethod([this] { Disconnect(); });
}

HRESULT Connect::OnAddInsUpdate(SAFEARRAY** /*custom*/) {
  return S_OK;
}

HRESULT Connect::OnStartupComplete(SAFEARRAY** /*custom*/) {
  return S_OK;
}

/// The shutdown may still be cancelled: what is to be let go of waits for the disconnection.
HRESULT Connect::OnBeginShutdown(SAFEARRAY** /*custom*/) {
  return S_OK;
}

/// The environment may disconnect whenever it is waited for.
void Connect::AddMenuEntry(Session& session) {
  try {
    const host::VBE root = session.root.Share();
    const host::CommandBarControl entry = AddToAddInCommandBar(root, kAddInName);
    if (!entry.exists()) return;
    if (session.over()) return entry.Delete();
    session.menuEntry = entry.Share();
    const ComPtr<IUnknown> events = root.Events().CommandBarEvents(entry);
    if (session.over()) return;
    auto handler = std::make_unique<MenuHandler>();
    ThrowIfFailed(handler->Start(events.get(), *this));
    if (!session.over()) session.menuHandler = std::move(handler);
  } catch (const HostGone&) {
    if (!session.over()) watch_->FindGone();
  } catch (const HostError&) {
    // The environment goes on without the entry, or with one that does nothing.
    return;
  }
}

/// The new entry; none when the environment has no such bar. Throws `HostError`, and then leaves no entry.
host::CommandBarControl Connect::AddToAddInCommandBar(const host::VBE& root, const std::string& caption) {
  host::CommandBarControl entry;
  try {
    const host::CommandBar bar = root.CommandBars().Item(kAddInsBar);
    if (!bar.exists()) return {};
    const host::CommandBarControls controls = bar.Controls();
    RemoveStaleEntries(controls, caption);
    entry = controls.Add(kButtonControl);
    entry.SetCaption(caption);
    return entry;
  } catch (const HostError&) {
    if (entry.exists()) entry.Delete();
    throw;
  }
}

/// The environment waits until its click has been handled, and may not paint until then.
void Connect::MenuHandler_Click() {
  if (session_) watch_->PostShow();
}

void Connect::ShowMainWindow() {
  if (session_) Show();
}

/// An environment that ends without a word is noticed by its process.
void Connect::WatchHost() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  const std::shared_ptr<Session> session = session_;
  if (!session) return;
  HWND window = nullptr;
  try {
    window = session->root.MainWindow().HWnd();
  } catch (const HostError&) {
    window = nullptr;
  }
  if (session->over()) return;
  session->environment.SetMainWindow(window);
  watch_->WatchProcessOf(window);
}

bool Connect::FindHostGone() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  return !session_ || watch_->FindGone();
}

void Connect::PingHost() {
  const std::shared_ptr<Session> session = session_;
  if (session) session->root.Ping();
}

void Connect::Disconnect() {
  const std::shared_ptr<Session> session = session_ ? EndSession() : std::exchange(detached_, nullptr);
  // At the end of the user's session the environment goes without waiting for the question of the window.
  if (window_.Unload(*this)) displayed_.Reset();
}

std::shared_ptr<Connect::Session> Connect::EndSession() {
  std::shared_ptr<Session> session = std::exchange(session_, nullptr);
  *session->connected = false;
  // All of the environment's objects are let go before it is answered: later they are not valid any more.
  session->menuHandler.reset();
  const host::CommandBarControl entry = std::move(session->menuEntry);
  try {
    if (entry.exists()) entry.Delete();
  } catch (const HostError&) {
    // The environment has taken it away itself, or has gone.
  }
  session->root = {};
  return session;
}

void Connect::OnHidden() {
  const ComPtr<IUnknown> ended = std::move(displayed_);  // and this with it, unless another reference is left
}

void Connect::HostIsGone() {
  const auto alive = ComPtr<IUnknown>::Share(this);
  Disconnect();
  watch_.reset();
  // No client is left that could release this object.
  CoDisconnectObject(this, 0);
}

HRESULT Connect::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count, LCID /*locale*/,
                               DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  // Arguments, whose names would follow that of their member, have none here.
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (lstrcmpiW(names[0], L"Show") == 0) ids[0] = kShowMember;
  if (lstrcmpiW(names[0], L"Hide") == 0) ids[0] = kHideMember;
  if (lstrcmpiW(names[0], L"Detach") == 0) ids[0] = kDetachMember;
  return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT Connect::Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD kind,
                        DISPPARAMS* parameters, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                        UINT* /*badArgument*/) {
  const auto alive = ComPtr<IUnknown>::Share(this);
  if ((kind & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  const UINT arguments = parameters != nullptr ? parameters->cArgs : 0;
  switch (member) {
    case kOnConnectionMember: {
      if (arguments != 4) return DISP_E_BADPARAMCOUNT;
      Variant root;
      Variant mode;
      UINT badArgument = 0;  // the caller may ask for none, which DispGetParam does not allow for
      HRESULT read = DispGetParam(parameters, 0, VT_DISPATCH, root.Put(), &badArgument);
      if (SUCCEEDED(read)) read = DispGetParam(parameters, 1, VT_I4, mode.Put(), &badArgument);
      return FAILED(read) ? read : OnConnection(root.get().pdispVal, mode.get().lVal, nullptr, nullptr);
    }
    case kOnDisconnectionMember:
      return arguments == 2 ? OnDisconnection(0, nullptr) : DISP_E_BADPARAMCOUNT;
    case kOnAddInsUpdateMember:
    case kOnStartupCompleteMember:
    case kOnBeginShutdownMember:
      return arguments == 1 ? S_OK : DISP_E_BADPARAMCOUNT;
    case kShowMember:
      // For an environment it may be a click, too.
      return GuardedMethod([this] { session_ ? MenuHandler_Click() : Show(); });
    case kHideMember:
      return GuardedMethod([this] { Hide(); });
    case kDetachMember:
      return GuardedMethod([this] { Detach(); });
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace snip
