#pragma once

#include "settings/Settings.h"
#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// What the settings dialog sees of the running main window.
class SettingsTarget {
 public:
  virtual ~SettingsTarget() = default;

  /// `Switch::UseSounds` changes the main command bar `cmd`; the edit bar follows at the next start.
  virtual bool IsOn(Switch which) const = 0;
  virtual void SetOn(Switch which, bool on) = 0;
  virtual FontProperty CodeFont() const = 0;
  /// Gives the font to `txtCode` first, then to `txtDesc`.
  virtual void SetCodeFont(const FontProperty& font) = 0;
};

}  // namespace snip
