#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/AddInWindow.h"
#include "app/ClickSubscription.h"
#include "app/ComHostEnvironment.h"
#include "app/ConnectionWindow.h"
#include "app/HostObjects.h"
#include "app/IDTExtensibility.h"
#include "app/ServerLife.h"

namespace snip {

/// The add-in as the development environment sees it. The environment makes one object for each of its
/// instances; they share the main window.
class Connect final : public WithoutTypeInfo<ServerObject<IDTExtensibility2, IDTExtensibility, IDispatch>>,
                      private WindowUser,
                      private ClickListener,
                      private ConnectionWindow::Owner {
 public:
  Connect(ServerLife& life, AddInWindow& window);
  ~Connect() override;

  /// Shows the main window, with the environment that is connected, if any.
  void Show();
  void Hide();
  /// Disconnects without having the environment wait for the user, who is asked afterwards whether to save.
  void Detach();

  // IDTExtensibility and IDTExtensibility2
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* VBInst, LONG ConnectMode, IDispatch* AddInInst,
                                         SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(LONG RemoveMode, SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) override;

  // IDispatch: Show, Hide and Detach by name, and the functions of IDTExtensibility2 by their numbers
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 private:
  using MenuHandler = ClickSubscription<CommandBarControlEvents>;

  /// What there is as long as an environment is connected.
  struct Session {
    Session(Connect& connect, IDispatch* root);

    bool over() const { return !*connected; }

    const std::shared_ptr<bool> connected = std::make_shared<bool>(true);
    host::VBE root;
    ComHostEnvironment environment;
    host::CommandBarControl menuEntry;
    std::unique_ptr<MenuHandler> menuHandler;
  };

  void AddMenuEntry(Session& session);
  static host::CommandBarControl AddToAddInCommandBar(const host::VBE& root, const std::string& caption);
  // ClickListener
  void MenuHandler_Click() override;
  void Disconnect();
  /// Lets go of the environment. What the session was, which the window may still refer to.
  std::shared_ptr<Session> EndSession();
  /// Has the main window keep this, and the process, until it is hidden.
  void KeepForWindow();
  bool FindHostGone();

  // WindowUser
  void OnHidden() override;
  // ConnectionWindow::Owner
  void ShowMainWindow() override;
  void UnloadMainWindow() override;
  void WatchHost() override;
  void HostIsGone() override;
  void PingHost() override;

  ServerLife& life_;
  AddInWindow& window_;
  std::shared_ptr<Session> session_;         ///< Null when no environment is connected.
  std::shared_ptr<Session> detached_;        ///< The last one, until the window is unloaded.
  std::unique_ptr<ConnectionWindow> watch_;  ///< Of the environment that was connected last.
  /// From the first connection on: an environment may come back to its object after any time.
  std::optional<ServerLife::Connection> connection_;
  /// The main window's reference, while it is shown for this environment or waits for an answer.
  ComPtr<IUnknown> displayed_;
};

}  // namespace snip
