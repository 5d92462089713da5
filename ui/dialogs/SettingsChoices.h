#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/dialogs/SettingsTarget.h"

namespace snip {

/// What is chosen in the settings dialog.
struct SettingsChoices {
  /// The sample's font. Never bold or italic.
  FontProperty font{.Name = "Courier New", .Size = 9.75};
  Switches switches;
};

/// The entries of `lstFontName` and which of them is selected, from 0; -1 for none.
struct FontNames {
  std::vector<std::string> entries;
  int selected = -1;
};

/// Six fixed names. A code font that is not one of them, letter case included, is added after them but not
/// selected, so that the sample keeps its design-time font until a name is chosen.
FontNames FontNamesFor(const std::string& codeFont);

/// Whether a font can have that size in points: above 0, up to 2048.
bool IsFontSize(double points);

using SaveSettingFunction = std::function<void(const char* valueName, const std::string& text)>;

/// Applies what was chosen to the running program and saves it, one value after the other.
void ApplySettings(const SettingsChoices& choices, SettingsTarget& target, const SaveSettingFunction& save);

}  // namespace snip
