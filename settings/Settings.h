#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace snip {

/// The groups of the stored values.
namespace SettingsSection {
constexpr const char* kSettings = "Settings";
constexpr const char* kPosition = "Position";
constexpr const char* kMore = "More";  ///< Other windows than the main window, and the system-wide key.
}  // namespace SettingsSection

/// The names of the stored values.
namespace SettingName {
constexpr const char* kKeepOnTop = "KeepOnTop";
constexpr const char* kFontName = "FontName";
constexpr const char* kFontSize = "FontSize";
constexpr const char* kColorSyntax = "ColorSyntax";
constexpr const char* kTop = "Top";
constexpr const char* kLeft = "Left";
constexpr const char* kWidth = "Width";
constexpr const char* kHeight = "Height";
constexpr const char* kLeftPane = "LeftPane";
constexpr const char* kDescription = "Description";
}  // namespace SettingName

/// The settings that are on or off, in the order of the dialog's check boxes; by default all are on.
enum class Switch : std::size_t { SnippetTips, MinimizeOnView, UseSounds, AllowMenuDrag };

struct SwitchSetting {
  const char* name;     ///< Of the stored value.
  const char* caption;  ///< Of the check box.
};

inline constexpr std::array kSwitches{
    SwitchSetting{"SnippetTips", "Show &tips on snippet list"},
    SwitchSetting{"MinimizeOnView", "&Minimize Snipstore when viewing attachments"},
    SwitchSetting{"UseSounds", "&Use sound effects for CommandBar buttons"},
    SwitchSetting{"AllowMenuDrag", "&Allow dragging of dropdown menus"},
};

class Switches {
 public:
  bool operator[](Switch which) const { return on_[static_cast<std::size_t>(which)]; }
  void Set(Switch which, bool on) { on_[static_cast<std::size_t>(which)] = on; }
  friend bool operator==(const Switches&, const Switches&) = default;

 private:
  std::array<bool, kSwitches.size()> on_ = [] {
    std::array<bool, kSwitches.size()> all{};
    all.fill(true);
    return all;
  }();
};

/// Reads a value's text without blanks around it, empty when it is missing; writes one.
using ReadSetting = std::function<std::string(const char* section, const char* name)>;
using SaveSetting = std::function<void(const char* section, const char* name, const std::string& text)>;

/// The stored settings. The defaults are what an empty store gives.
struct Settings {
  bool KeepOnTop = false;
  Switches switches;
  std::optional<std::string> FontName{};  ///< Without one the window's own font stays.
  std::optional<double> FontSize{};       ///< In points; may be a size that no font has.
  std::int32_t ColorSyntax = 1;           ///< State of the toggle button: 0 is off.
  double Top = 0;                         ///< In twips, as are the others; may be off the screen.
  double Left = 0;
  std::optional<std::int32_t> Width{};  ///< Without them the window's own size stays.
  std::optional<std::int32_t> Height{};
  std::optional<std::int32_t> LeftPaneWidth{};
  std::optional<std::int32_t> DescriptionHeight{};
  friend bool operator==(const Settings&, const Settings&) = default;
};

Settings ReadSettings(const ReadSetting& read);

/// Stored only when the window is destroyed. States are those of the toggle buttons; places are in twips.
struct WindowSettings {
  std::int32_t KeepOnTop = 0;
  std::int32_t ColorSyntax = 0;
  double Top = 0;
  double Left = 0;
  double Width = 0;
  double Height = 0;
  double LeftPaneWidth = 0;
  double DescriptionHeight = 0;
};

void SaveWindowSettings(const WindowSettings& settings, const SaveSetting& save);

}  // namespace snip
