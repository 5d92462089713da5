#pragma once

#include "platform/Com.h"

namespace snip::vba {

/// The program, which serves the editor from a process of its own, 32 or 64 bits wide, from the first `Show`
/// to `LetGo`. All calls are late-bound, because these need no type library between processes.
class SnipstoreProgram {
 public:
  SnipstoreProgram() = default;
  ~SnipstoreProgram() { LetGo(); }
  SnipstoreProgram(const SnipstoreProgram&) = delete;
  SnipstoreProgram& operator=(const SnipstoreProgram&) = delete;

  /// Makes the program show its window for `editor`, and starts it if need be. Other calls may come in during
  /// that, even `LetGo`.
  HRESULT Show(IDispatch* editor);
  /// Disconnects the program from the editor. The editor does not wait while the user is asked whether to
  /// save.
  void LetGo();

 private:
  HRESULT Start(IDispatch* editor);
  void Detach();

  ComPtr<IDispatch> connect_;  ///< The program's object for this editor.
  bool starting_ = false;
  bool letGo_ = false;  ///< `LetGo` was called since the start began, which then makes no further attempt.
};

}  // namespace snip::vba
