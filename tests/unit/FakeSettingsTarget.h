#pragma once

#include <string>
#include <vector>

#include "ui/dialogs/SettingsTarget.h"

namespace snip::test {

/// Settings of a program that does not run, and what was set in which order.
struct FakeSettingsTarget : SettingsTarget {
  bool menuDrag = false, sounds = false, minimize = false, tips = false;
  FontProperty font{.Name = "Verdana", .Size = 12};
  std::vector<std::string> log;

  bool AllowMenuDrag() const override { return menuDrag; }
  void SetAllowMenuDrag(bool allow) override { Set(menuDrag, allow, "drag"); }
  bool PlaysSounds() const override { return sounds; }
  void SetPlaysSounds(bool plays) override { Set(sounds, plays, "sounds"); }
  bool MinimizeOnView() const override { return minimize; }
  void SetMinimizeOnView(bool on) override { Set(minimize, on, "minimize"); }
  bool SnippetTips() const override { return tips; }
  void SetSnippetTips(bool show) override { Set(tips, show, "tips"); }
  FontProperty CodeFont() const override { return font; }
  void SetCodeFont(const FontProperty& chosen) override {
    font = chosen;
    log.emplace_back("font");
  }

 private:
  void Set(bool& flag, bool value, const char* name) {
    flag = value;
    log.emplace_back(name);
  }
};

}  // namespace snip::test
