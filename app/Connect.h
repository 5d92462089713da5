#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/AddInWindow.h"
#include "app/ComHostEnvironment.h"
#include "app/ConnectionWindow.h"
#include "app/HostObjects.h"
#include "app/IDTExtensibility.h"
#include "app/MenuHandler.h"
#include "app/ServerLife.h"

namespace snip {

/// The add-in as the development environment sees it. The environment makes one object for each of its
/// instances; they share the main window.
class Connect final : public ServerObject<IDTExtensibility, IDispatch>,
                      private WindowUser,
                      private ConnectionWindow::Owner {
 public:
  Connect(ServerLife& life, AddInWindow& window);
  ~Connect() override;

  /// Shows the main window with the connected environment; without one, nothing.
  void Show();
  void Hide();

  // IDTExtensibility
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* VBInst, LONG ConnectMode, IDispatch* AddInInst,
                                         SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(LONG RemoveMode, SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) override;

  // IDispatch: Show and Hide
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 private:
  /// What there is as long as an environment is connected.
  struct Session {
    Session(Connect& connect, IDispatch* root);

    ServerLife::Connection connection;
    host::VBE root;
    ComHostEnvironment environment{root, [this] { window.PostGone(); }};
    ConnectionWindow window;
    host::CommandBarControl menuEntry;
    std::unique_ptr<MenuHandler> menuHandler;
    bool over = false;
  };

  /// Keeps this and the process going without an environment.
  struct Stay {
    explicit Stay(Connect& connect);

    ComPtr<IUnknown> self;
    ServerLife::Connection connection;
  };

  void AddMenuEntry(Session& session);
  static void WatchHost(Session& session);
  static host::CommandBarControl AddToAddInCommandBar(const host::VBE& root, const std::string& caption);
  void MenuHandler_Click();
  /// False when the main window stays, for an answer that it waits for.
  bool Disconnect();
  void DisconnectOrStay();

  // WindowUser
  void OnHidden() override;
  // ConnectionWindow::Owner
  void ShowMainWindow() override { Show(); }
  void HostIsGone() override;
  void PingHost() override;

  ServerLife& life_;
  AddInWindow& window_;
  std::shared_ptr<Session> session_;  ///< Null when no environment is connected.
  std::unique_ptr<Stay> stay_;        ///< While the window waits for an answer after the disconnection.
  bool displayed_ = false;            ///< Whether the main window is shown for this environment.
};

}  // namespace snip
