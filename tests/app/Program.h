#pragma once

#include <windows.h>

#include <string>

#include "platform/Handle.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {

/// What a process holds. The working set and the private bytes are in bytes; Wine counts no GDI or USER
/// objects.
struct ProcessUse {
  DWORD handles = 0;
  DWORD gdiObjects = 0;
  DWORD userObjects = 0;
  std::size_t workingSet = 0;
  std::size_t privateBytes = 0;
};
ProcessUse UseOf(DWORD process);

/// The real executable in a folder of its own, with the registry and the add-in list as on a machine that has
/// never seen it.
class Program {
 public:
  Program();
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  const TemporaryFolder& folder() const { return folder_; }

  /// Makes the next start one that opens the window.
  void MarkAsRunBefore(const std::string& marker = "Yes") const;
  /// The text of the first-run marker; empty when there is none.
  static std::string Marker();
  /// The program's entry in "vbaddin.ini"; empty when there is none.
  static std::string AddInEntry();
  /// What COM starts for the add-in's class; empty when the class is not registered.
  static std::string ServerCommand();
  static void SetServerCommand(const std::string& command);
  /// What an environment's list in the registry says of the add-in, "NAME LOADED"; empty when it has none.
  static std::string ListEntry(const std::string& key);
  /// Whether the program has made any key of its own.
  static bool HasRegistryKey();

  void Start(const std::string& arguments = "") { process_ = StartAnother(arguments); }
  /// One more process beside the one that `Start` started.
  UniqueFile StartAnother(const std::string& arguments = "");
  /// Waits until the process has ended; false when it goes on.
  bool WaitForEnd();
  /// Waits until the process has nothing to do but to wait for messages; false when it ends or goes on.
  bool WaitUntilIdle() const;
  DWORD ExitCode() const;
  bool Running() const;
  DWORD Id() const { return GetProcessId(process_.get()); }
  void Kill();
  /// Has the process end its message loop. A killed server would stay known to Wine's COM.
  void Quit() const;

  /// The main window, once it is up; null when it does not come.
  HWND MainWindow() const;
  HANDLE process() const { return process_.get(); }

 private:
  TemporaryFolder folder_;
  UniqueFile process_;
  DWORD thread_ = 0;
};

}  // namespace snip::test
