#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Twips.h"

namespace snip {

class Picture;  ///< The painter's. The buttons keep pictures alive and hand them back, no more.
using PictureRef = std::shared_ptr<const Picture>;

/// Containers pass these as numbers: any other number is a push button.
enum class ButtonType : std::int32_t {
  Push = 0,
  Menu = 1,      ///< A press anywhere on it raises `Dropdown`.
  Toggle = 2,    ///< Stays down while its State is 1.
  DropDown = 3,  ///< A push part, and right of it an arrow part whose press raises `Dropdown`.
  Separator = 4,
};

/// Any other number shows both.
enum class DisplayType : std::int32_t { Picture = 0, Caption = 1, PictureAndCaption = 2 };

/// The parts of a drop-down button; any other button is all push part. The numbers are those that the hit
/// test leaves in the State of a drop-down button.
enum class ButtonPart : std::int32_t { Push = 0, Arrow = 2 };

/// Names one button for as long as it is on the bar, wherever it moves.
enum class ButtonId : std::uint64_t { None = 0 };

/// One button. Coordinates are client pixels of the bar; the right and bottom edges belong to the button.
struct BarButton {
  std::int16_t Left = 0;
  std::int16_t Top = 0;
  std::int16_t Right = 0;
  std::int16_t Bottom = 0;
  std::int16_t Index = -1;     ///< Its place when it was added. Not renumbered: nothing reads it later.
  std::int16_t AccessKey = 0;  ///< Code of the lower-case character behind the first "&"; 0 for none.
  PictureRef Picture;
  std::int16_t PicWidth = 0;  ///< In pixels.
  std::int16_t PicHeight = 0;
  std::string Caption;  ///< As passed, "&" included.
  snip::ButtonType ButtonType = snip::ButtonType::Push;
  snip::DisplayType DisplayType = snip::DisplayType::Picture;
  std::int32_t State = 0;  ///< 0 up, 1 down; a drop-down button: the ButtonPart that was hit last.
  bool Enabled = true;

  ButtonId Id = ButtonId::None;

  bool Is(snip::ButtonType type) const { return ButtonType == type; }
  bool IsToggledOn() const { return Is(snip::ButtonType::Toggle) && State == 1; }
  bool ShowsPicture() const {
    return !Is(snip::ButtonType::Separator) && DisplayType != snip::DisplayType::Caption;
  }
  bool ShowsCaption() const {
    return !Is(snip::ButtonType::Separator) && DisplayType != snip::DisplayType::Picture;
  }

  Rect Area() const;
  /// The part of a drop-down button that a column of it belongs to; the push part of any other.
  ButtonPart PartAt(int x) const;
};

/// What `AddButton` is given.
struct NewButton {
  std::string Caption = {};
  PictureRef Picture = {};
  Size PictureSize = {};  ///< In pixels.
  snip::ButtonType ButtonType = snip::ButtonType::Push;
  snip::DisplayType DisplayType = snip::DisplayType::Picture;
  bool GrayBtn = false;
};

/// What the layout has to know of the bar as it is at the moment.
struct BarMetrics {
  int scaleHeight = 0;  ///< Inner height of the bar in pixels.
  bool dockable = false;
  /// Width in pixels of a text in the bar's font, every "&" in it counted.
  std::function<int(std::string_view text)> textWidth;
};

/// What a change of the buttons asks of the bar's window, in this order: the new width first.
struct BarChange {
  std::optional<int> ownWidth = {};      ///< In pixels: a dockable bar sizes itself to hug its buttons.
  std::optional<int> redrawButton = {};  ///< `RedrawButton` of this index.
  bool refresh = false;                  ///< Repaint the whole bar.
  friend bool operator==(const BarChange&, const BarChange&) = default;
};

/// The rules of the system's ANSI code page for letter case.
struct LetterCase {
  std::function<char(char)> toLower;
  std::function<bool(std::string_view, std::string_view)> sameText;
};

/// The buttons of a bar and their places along it.
///
/// Buttons are named by their 0-based place; -1 says "none". A place that does not exist is no error: what
/// is asked of it is answered empty, what is done to it does nothing.
class CommandBarButtons {
 public:
  static constexpr std::size_t kMaxButtons = 32768;  ///< The highest place is a 16-bit number.

  explicit CommandBarButtons(LetterCase letterCase) : letterCase_(std::move(letterCase)) {}

  /// Appends a button. In a full bar it does nothing.
  BarChange Add(NewButton button, const BarMetrics& metrics);
  BarChange Remove(int index, const BarMetrics& metrics);
  /// Takes a button out and puts it in at `newIndex`. It asks for no refresh: a caller that moves several
  /// buttons refreshes once, at the end.
  BarChange Move(int index, int newIndex, const BarMetrics& metrics);
  /// Lays all buttons out again: after a change of `Dockable` and whenever the bar was sized. Access keys and
  /// picture sizes stay what they were when the button was added.
  BarChange LayOut(const BarMetrics& metrics);

  bool Grayed(int index) const;
  BarChange SetGrayed(int index, bool grayed);
  std::int32_t State(int index) const;
  BarChange SetState(int index, std::int32_t state);
  std::string Caption(int index) const;
  /// The access key stays that of the caption the button was added with: a container that renames a button,
  /// as the output button is with every output mode, keeps the key that its users have learnt.
  BarChange SetCaption(int index, std::string caption, const BarMetrics& metrics);
  PictureRef Picture(int index) const;
  /// Neither lays out nor repaints; the caller repaints. A container that swaps several pictures repaints
  /// once.
  void SetPicture(int index, PictureRef picture);

  /// The first button whose caption is `key`, "&" included, whatever the case of the letters.
  int IndexFromKey(std::string_view key) const;
  /// Where the next button would start, in twips.
  int NextButtonX(const BarMetrics& metrics, const TwipsPerPixel& twips) const;
  /// Where the menu of a button is to open, in client pixels.
  std::optional<Point> GetMenuPos(int index) const;

  /// The first button at a point in client pixels. Separators are not hit; disabled buttons are. A drop-down
  /// button that is hit has the part under the point written to its State.
  int BtnFromPoint(int x, int y);

  /// The first button with this access key.
  int IndexFromAccessKey(std::int16_t characterCode) const;

  int IndexOf(ButtonId id) const;
  ButtonId IdOf(int index) const;

  int Count() const { return static_cast<int>(buttons_.size()); }
  std::span<const BarButton> All() const { return buttons_; }
  /// nullptr for a place that does not exist.
  const BarButton* Find(int index) const;

 private:
  BarButton* Modifiable(int index);
  void Place(std::size_t index, const BarMetrics& metrics);
  BarChange OwnWidth(const BarMetrics& metrics) const;

  LetterCase letterCase_;
  std::vector<BarButton> buttons_;
  ButtonId lastId_ = ButtonId::None;
};

/// The caption without its first "&": what the layout measures.
std::string MeasuringText(std::string_view caption);

/// The caption as it is read: without the "&" signs that underline the character behind them, "&&" being one
/// "&". What assistive programs are told as the button's name.
std::string DisplayName(std::string_view caption);

}  // namespace snip
