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
  target.SetAllowMenuDrag(choices.allowMenuDrag);
  save("AllowMenuDrag", FlagText(choices.allowMenuDrag));
  target.SetPlaysSounds(choices.playsSounds);
  save("UseSounds", FlagText(choices.playsSounds));
  target.SetMinimizeOnView(choices.minimizeOnView);
  save("MinimizeOnView", FlagText(choices.minimizeOnView));
  target.SetSnippetTips(choices.snippetTips);
  save("SnippetTips", FlagText(choices.snippetTips));
}

}  // namespace snip
