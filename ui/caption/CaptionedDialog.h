#pragma once

#include "platform/Dialog.h"
#include "ui/caption/CaptionHook.h"

namespace snip {

/// A dialog with a painted title bar, whose close box does what Cancel does.
class CaptionedDialog : public Dialog {
 protected:
  explicit CaptionedDialog(CaptionPainter& painter) : painter_(painter) {}

  /// To be called in `OnInit`.
  void PaintCaption() { hook_.Install(hWnd(), painter_); }
  void OnClose() override { End(IDCANCEL); }
  void OnDestroy() override { hook_.Remove(); }

 private:
  CaptionPainter& painter_;
  CaptionHook hook_;
};

}  // namespace snip
