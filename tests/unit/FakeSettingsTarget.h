#pragma once

#include <string>
#include <vector>

#include "ui/dialogs/SettingsTarget.h"

namespace snip::test {

/// Settings of a program that does not run, and what was set in which order.
struct FakeSettingsTarget : SettingsTarget {
  Switches switches;
  FontProperty font{.Name = "Verdana", .Size = 12};
  std::vector<std::string> log;

  bool IsOn(Switch which) const override { return switches[which]; }
  void SetOn(Switch which, bool on) override {
    switches.Set(which, on);
    log.push_back("switch " + std::to_string(static_cast<int>(which)));
  }
  FontProperty CodeFont() const override { return font; }
  void SetCodeFont(const FontProperty& chosen) override {
    font = chosen;
    log.emplace_back("font");
  }
};

}  // namespace snip::test
