#pragma once

#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// What the settings dialog sees of the running main window.
class SettingsTarget {
 public:
  virtual ~SettingsTarget() = default;

  virtual bool AllowMenuDrag() const = 0;
  virtual void SetAllowMenuDrag(bool allow) = 0;
  /// Of the main command bar `cmd`; the edit bar follows at the next start.
  virtual bool PlaysSounds() const = 0;
  virtual void SetPlaysSounds(bool plays) = 0;
  virtual bool MinimizeOnView() const = 0;
  virtual void SetMinimizeOnView(bool minimize) = 0;
  virtual bool SnippetTips() const = 0;
  virtual void SetSnippetTips(bool tips) = 0;
  virtual FontProperty CodeFont() const = 0;
  /// Gives the font to `txtCode` first, then to `txtDesc`.
  virtual void SetCodeFont(const FontProperty& font) = 0;
};

}  // namespace snip
