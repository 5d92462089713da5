#include "settings/SettingsStore.h"

namespace snip {
namespace {

constexpr const char* kCompany = "Brennic";
constexpr const char* kApplication = "BnSnipstore\\2.0";

}  // namespace

Settings SettingsStore::Load() const {
  return ReadSettings([this](const char* section, const char* name) {
    return registry_.GetRegSetting(kCompany, kApplication, section, name);
  });
}

void SettingsStore::Save(const char* valueName, const std::string& text) const {
  SaveIn(SettingsSection::kSettings, valueName, text);
}

std::string SettingsStore::LoadMore(const char* valueName) const {
  return registry_.GetRegSetting(kCompany, kApplication, SettingsSection::kMore, valueName);
}

void SettingsStore::SaveMore(const char* valueName, const std::string& text) const {
  SaveIn(SettingsSection::kMore, valueName, text);
}

void SettingsStore::SaveWindow(const WindowSettings& settings) const {
  SaveWindowSettings(settings, [this](const char* section, const char* name, const std::string& text) {
    SaveIn(section, name, text);
  });
}

void SettingsStore::SaveIn(const char* section, const char* valueName, const std::string& text) const {
  registry_.SaveRegSetting(kCompany, kApplication, section, valueName, text);
}

}  // namespace snip
