#pragma once

#include <windows.h>
#include <objbase.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "platform/ComObject.h"
#include "platform/Window.h"

namespace snip {

/// Decides how long a process that COM has started lives: as long as a client has an object of it or has
/// locked it, and never without a connection for longer than `idleMs`, for clients need not come, or come to
/// an end without a word. With the last object the class is withdrawn, so that new clients get a new process;
/// who has been given the class before is still served for `lateMs`. Then the thread's message loop is quit.
class ServerLife : public Window {
 public:
  ServerLife(UINT idleMs, UINT lateMs);
  ~ServerLife() override;

  /// An object that a client has, for as long as this lives.
  class Use {
   public:
    Use(ServerLife& life, IUnknown* object);
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    /// Gives up a reference to the object on the thread of the ServerLife, later. False when that is the
    /// calling one, which can do so itself.
    bool PassRelease() const;

   private:
    ServerLife& life_;
    IUnknown* object_;
  };

  /// Somebody whose end will not be missed: an environment that was connected, or the user who sees the
  /// window.
  class Connection {
   public:
    explicit Connection(ServerLife& life);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

   private:
    ServerLife& life_;
  };

  void Lock();
  void Unlock();

  /// Sets what takes the class back from COM.
  void SetWithdraw(std::function<void()> withdraw) { withdraw_ = std::move(withdraw); }

  /// After the loop was quit: false when a client came at the last moment, for whom it has to go on.
  bool Over() const { return abandoned_ || uses_ == 0; }

  /// Takes the objects that are left from their clients.
  void DisconnectObjects();

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void AwaitConnection();
  void AwaitLateClients();
  void Withdraw() const;

  UINT idleMs_;
  UINT lateMs_;
  std::function<void()> withdraw_;
  const DWORD thread_ = GetCurrentThreadId();
  std::vector<IUnknown*> objects_;
  std::size_t uses_ = 0;
  std::size_t connections_ = 0;
  bool abandoned_ = false;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object that clients get. It ends on the thread that made it, where its windows are and whose loop is to
/// be quit: COM may give up a reference on a thread of its own, as Wine 8's does with that of the last call.
template <class Interface, class... Bases>
class ServerObject : public ComObject<Interface, Bases...> {
 public:
  ULONG STDMETHODCALLTYPE Release() override {
    constexpr ULONG kStillReferred = 1;
    return use_.PassRelease() ? kStillReferred : ComObject<Interface, Bases...>::Release();
  }

 protected:
  explicit ServerObject(ServerLife& life) : use_(life, this) {}

 private:
  ServerLife::Use use_;
};

#pragma GCC diagnostic pop

}  // namespace snip
