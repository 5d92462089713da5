#pragma once

#include <windows.h>

#include <string>

#include "platform/Handle.h"

namespace snip::test {

/// A stand-in development environment in a process of its own; HostMain.cpp names its commands.
class HostProcess {
 public:
  /// `trait` is a command that makes it another environment.
  explicit HostProcess(const std::string& trait = "");
  ~HostProcess();
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  /// Runs a command; its answer, or a note that none came.
  std::string Ask(const std::string& command);
  /// The two halves of it, for commands during which something else has to happen.
  void Send(const std::string& command);
  std::string Answer();

  /// The process ends at once, as after a crash.
  void Kill();
  bool Running() const;
  DWORD Id() const { return GetProcessId(process_.get()); }

 private:
  UniqueFile process_;
  UniqueFile commands_;
  UniqueFile answers_;
  std::string unread_;
};

}  // namespace snip::test
