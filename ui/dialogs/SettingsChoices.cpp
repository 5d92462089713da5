#include "ui/dialogs/SettingsChoices.h"

#include <algorithm>

#include "settings/SettingsText.h"

namespace snip {

FontNames FontNamesFor(const std::string& codeFont) {
  FontNames names{{"Arial", "Courier New", "System", "Tahoma", "Times New Roman", "Verdana"}};
  const auto found = std::find(names.entries.begin(), names.entries.end(), codeFont);
  if (found == names.entries.end()) {
    names.entries.push_back(codeFont);
  } else {
    names.selected = static_cast<int>(found - names.entries.begin());
  }
  return names;
}

bool IsFontSize(double points) {
  constexpr double largest = 2048;
  return points > 0 && points <= largest;
}

void ApplySettings(const SettingsChoices& choices, SettingsTarget& target, const SaveSettingFunction& save) {
  target.SetCodeFont(choices.font);
  save("FontName", choices.font.Name);
  save("FontSize", NumberText(choices.font.Size));
  for (std::size_t i = kSwitches.size(); i-- > 0;) {
    const auto which = static_cast<Switch>(i);
    target.SetOn(which, choices.switches[which]);
    save(kSwitches[i].name, FlagText(choices.switches[which]));
  }
}

}  // namespace snip
