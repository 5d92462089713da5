#include "settings/Settings.h"

#include <algorithm>

#include "settings/SettingsText.h"

namespace snip {
namespace {

/// A window this small or smaller was stored by accident, twips.
constexpr std::int32_t kLeastSize = 150;

/// No screen reaches farther, in twips; windows cannot be put beyond 32,767 pixels.
constexpr double kFarthest = 32767.0 * 15;

double Coordinate(const std::string& text) {
  return std::clamp(Val(text), -kFarthest, kFarthest);
}

std::optional<std::int32_t> Extent(const std::string& text) {
  const std::int32_t size = RoundHalfToEven(Coordinate(text));
  return size > kLeastSize ? std::optional(size) : std::nullopt;
}

}  // namespace

Settings ReadSettings(const ReadSetting& read) {
  using namespace SettingName;
  const auto setting = [&](const char* name) { return read(SettingsSection::kSettings, name); };
  const auto position = [&](const char* name) { return read(SettingsSection::kPosition, name); };

  Settings settings;
  // Unlike the other flags this one is written as "1", and is off for any other text.
  settings.KeepOnTop = setting(kKeepOnTop) == "1";
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    settings.switches.Set(static_cast<Switch>(i), FlagFromText(setting(kSwitches[i].name)));
  }
  if (const std::string name = setting(kFontName); !name.empty()) settings.FontName = name;
  if (const std::string size = setting(kFontSize); !size.empty()) settings.FontSize = Val(size);
  if (const std::string state = setting(kColorSyntax); !state.empty()) {
    settings.ColorSyntax = RoundHalfToEven(Val(state));
  }
  settings.Top = Coordinate(position(kTop));
  settings.Left = Coordinate(position(kLeft));
  settings.Width = Extent(position(kWidth));
  settings.Height = Extent(position(kHeight));
  settings.LeftPaneWidth = Extent(position(kLeftPane));
  settings.DescriptionHeight = Extent(position(kDescription));
  return settings;
}

void SaveWindowSettings(const WindowSettings& settings, const SaveSetting& save) {
  using namespace SettingName;
  save(SettingsSection::kSettings, kKeepOnTop, std::to_string(settings.KeepOnTop));
  save(SettingsSection::kSettings, kColorSyntax, std::to_string(settings.ColorSyntax));
  save(SettingsSection::kPosition, kTop, NumberText(settings.Top));
  save(SettingsSection::kPosition, kLeft, NumberText(settings.Left));
  save(SettingsSection::kPosition, kWidth, NumberText(settings.Width));
  save(SettingsSection::kPosition, kHeight, NumberText(settings.Height));
  save(SettingsSection::kPosition, kLeftPane, NumberText(settings.LeftPaneWidth));
  save(SettingsSection::kPosition, kDescription, NumberText(settings.DescriptionHeight));
}

}  // namespace snip
