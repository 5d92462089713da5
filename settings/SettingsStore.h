#pragma once

#include <string>

#include "platform/Registry32.h"
#include "settings/Settings.h"

namespace snip {

/// The user's settings in the registry, under HKEY_CURRENT_USER\Software\Brennic\BnSnipstore\2.0.
/// `Registry32` tells the user about errors; reading then returns the defaults.
class SettingsStore {
 public:
  explicit SettingsStore(const Registry32& registry) : registry_(registry) {}

  Settings Load() const;
  /// One of the values that the settings dialog edits, in the section "Settings".
  void Save(const char* valueName, const std::string& text) const;
  /// A value of the section "More", empty when it is missing.
  std::string LoadMore(const char* valueName) const;
  void SaveMore(const char* valueName, const std::string& text) const;
  void SaveWindow(const WindowSettings& settings) const;

 private:
  void SaveIn(const char* section, const char* valueName, const std::string& text) const;

  const Registry32& registry_;
};

}  // namespace snip
