#pragma once

#include <windows.h>
#include <objbase.h>

#include <cstddef>
#include <vector>

#include "platform/Window.h"

namespace snip {

/// Decides how long a process that COM has started lives: as long as a client has an object of it or has
/// locked it, and never without a connected environment for longer than `idleMs`, for clients need not come,
/// or come to an end without a word. The thread's message loop is quit when it is over.
class ServerLife : public Window {
 public:
  explicit ServerLife(UINT idleMs);
  ~ServerLife() override;

  /// An object that a client has, for as long as this lives.
  class Use {
   public:
    Use(ServerLife& life, IUnknown* object);
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

   private:
    ServerLife& life_;
    IUnknown* object_;
  };

  /// One connected environment, for as long as this lives.
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

  /// After the loop was quit: false when a client came at the last moment, for whom it has to go on.
  bool Over() const { return abandoned_ || uses_ == 0; }

  /// Takes the objects that are left from their clients.
  void DisconnectObjects();

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void AwaitConnection();

  UINT idleMs_;
  std::vector<IUnknown*> objects_;
  std::size_t uses_ = 0;
  std::size_t connections_ = 0;
  bool abandoned_ = false;
};

}  // namespace snip
