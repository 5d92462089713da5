#pragma once

#include "platform/Com.h"

namespace snip::vba {

/// The program, which works for the editor in a process of its own, of either width, from the first `Show` to
/// `LetGo`. All calls go by late binding, which crosses without any type library.
class SnipstoreProgram {
 public:
  SnipstoreProgram() = default;
  ~SnipstoreProgram() { LetGo(); }
  SnipstoreProgram(const SnipstoreProgram&) = delete;
  SnipstoreProgram& operator=(const SnipstoreProgram&) = delete;

  /// Has it show its window for `editor`, and starts it unless it is running. Other calls come in during
  /// that, `LetGo` among them.
  HRESULT Show(IDispatch* editor);
  /// Has it let go of the editor, which does not wait while its user is asked whether to save.
  void LetGo();

 private:
  HRESULT Start(IDispatch* editor);

  ComPtr<IDispatch> connect_;  ///< Its object for this editor.
  bool starting_ = false;
};

}  // namespace snip::vba
