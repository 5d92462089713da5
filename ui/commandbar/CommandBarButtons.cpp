#include "ui/commandbar/CommandBarButtons.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace snip {
namespace {

constexpr int kFirstLeft = 3;
constexpr int kFirstLeftDockable = 10;  // behind the grip
constexpr int kTop = 2;
constexpr int kBelow = 3;
constexpr int kSeparatorWidth = 5;
constexpr int kArrowPartWidth = 8;

/// Coordinates are 16-bit numbers: a place farther out than any screen stays at the end of their range.
std::int16_t Saturated(std::int64_t value) {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

int FirstLeft(const BarMetrics& metrics) {
  return metrics.dockable ? kFirstLeftDockable : kFirstLeft;
}

/// How far the right edge is from the left one.
std::int64_t Span(const BarButton& button, const BarMetrics& metrics) {
  if (button.Is(ButtonType::Separator)) return kSeparatorWidth;

  const std::int64_t height = metrics.scaleHeight;
  const auto textWidth = [&]() -> std::int64_t { return metrics.textWidth(MeasuringText(button.Caption)); };
  const std::int64_t arrowPart = button.Is(ButtonType::DropDown) ? kArrowPartWidth : 0;
  switch (button.DisplayType) {
    case DisplayType::Picture:
      return height - 5 + arrowPart;
    case DisplayType::Caption:
      return textWidth() + 6 + arrowPart;
    case DisplayType::PictureAndCaption:
      break;
  }
  return textWidth() + height - 3 + arrowPart;
}

}  // namespace

Rect BarButton::Area() const {
  return {Left, Top, std::max(Right - Left + 1, 0), std::max(Bottom - Top + 1, 0)};
}

ButtonPart BarButton::PartAt(int x) const {
  return Is(snip::ButtonType::DropDown) && x > Right - 9 ? ButtonPart::Arrow : ButtonPart::Push;
}

BarChange CommandBarButtons::Add(NewButton button, const BarMetrics& metrics) {
  if (buttons_.size() >= kMaxButtons) return {};

  lastId_ = ButtonId{static_cast<std::uint64_t>(lastId_) + 1};
  BarButton added;
  added.Id = lastId_;
  added.Index = static_cast<std::int16_t>(buttons_.size());
  const auto ampersand = button.Caption.find('&');
  if (ampersand != std::string::npos) {
    // Behind an "&" at the end is the string's zero: no key.
    added.AccessKey = static_cast<unsigned char>(letterCase_.toLower(button.Caption[ampersand + 1]));
  }
  if (button.Picture) {
    added.PicWidth = Saturated(button.PictureSize.width);
    added.PicHeight = Saturated(button.PictureSize.height);
  }
  added.Picture = std::move(button.Picture);
  added.Caption = std::move(button.Caption);
  added.ButtonType = button.ButtonType;
  added.DisplayType = button.DisplayType;
  added.Enabled = !button.GrayBtn;
  buttons_.push_back(std::move(added));

  Place(buttons_.size() - 1, metrics);
  BarChange change = OwnWidth(metrics);
  change.redrawButton = Count() - 1;
  return change;
}

BarChange CommandBarButtons::Remove(int index, const BarMetrics& metrics) {
  if (Find(index) == nullptr) return {};
  buttons_.erase(buttons_.begin() + index);
  return LayOut(metrics);
}

BarChange CommandBarButtons::Move(int index, int newIndex, const BarMetrics& metrics) {
  if (Find(index) == nullptr || Find(newIndex) == nullptr) return {};
  const auto from = buttons_.begin() + index;
  const auto to = buttons_.begin() + newIndex;
  if (from < to) {
    std::rotate(from, from + 1, to + 1);
  } else {
    std::rotate(to, from, from + 1);
  }
  BarChange change = LayOut(metrics);
  change.refresh = false;
  return change;
}

BarChange CommandBarButtons::LayOut(const BarMetrics& metrics) {
  for (std::size_t i = 0; i < buttons_.size(); ++i) Place(i, metrics);
  BarChange change = OwnWidth(metrics);
  change.refresh = true;
  return change;
}

void CommandBarButtons::Place(std::size_t index, const BarMetrics& metrics) {
  BarButton& button = buttons_[index];
  button.Left = Saturated(index == 0 ? FirstLeft(metrics) : buttons_[index - 1].Right + 1);
  button.Top = kTop;
  button.Right = Saturated(button.Left + Span(button, metrics));
  button.Bottom = Saturated(std::int64_t{metrics.scaleHeight} - kBelow);
}

BarChange CommandBarButtons::OwnWidth(const BarMetrics& metrics) const {
  BarChange change;
  // An emptied bar keeps the width it has: there is no button left for it to hug.
  if (metrics.dockable && !buttons_.empty()) change.ownWidth = buttons_.back().Right + 3;
  return change;
}

bool CommandBarButtons::Grayed(int index) const {
  const BarButton* button = Find(index);
  return button != nullptr && !button->Enabled;
}

BarChange CommandBarButtons::SetGrayed(int index, bool grayed) {
  BarButton* button = Modifiable(index);
  BarChange change;
  if (button == nullptr || button->Enabled == !grayed) return change;
  button->Enabled = !grayed;
  change.redrawButton = index;
  return change;
}

std::int32_t CommandBarButtons::State(int index) const {
  const BarButton* button = Find(index);
  return button != nullptr ? button->State : 0;
}

BarChange CommandBarButtons::SetState(int index, std::int32_t state) {
  BarButton* button = Modifiable(index);
  BarChange change;
  if (button == nullptr) return change;
  button->State = state;
  change.redrawButton = index;
  return change;
}

std::string CommandBarButtons::Caption(int index) const {
  const BarButton* button = Find(index);
  return button != nullptr ? button->Caption : std::string();
}

BarChange CommandBarButtons::SetCaption(int index, std::string caption, const BarMetrics& metrics) {
  BarButton* button = Modifiable(index);
  if (button == nullptr) return {};
  button->Caption = std::move(caption);
  return LayOut(metrics);
}

PictureRef CommandBarButtons::Picture(int index) const {
  const BarButton* button = Find(index);
  return button != nullptr ? button->Picture : nullptr;
}

void CommandBarButtons::SetPicture(int index, PictureRef picture) {
  if (BarButton* button = Modifiable(index)) button->Picture = std::move(picture);
}

int CommandBarButtons::IndexFromKey(std::string_view key) const {
  for (int i = 0; i < Count(); ++i) {
    if (letterCase_.sameText(Find(i)->Caption, key)) return i;
  }
  return -1;
}

int CommandBarButtons::NextButtonX(const BarMetrics& metrics, const TwipsPerPixel& twips) const {
  return twips.ToTwipsX(buttons_.empty() ? FirstLeft(metrics) : buttons_.back().Right + 1);
}

std::optional<Point> CommandBarButtons::GetMenuPos(int index) const {
  const BarButton* button = Find(index);
  if (button == nullptr) return std::nullopt;
  return Point{button->Left, button->Bottom + 2};
}

int CommandBarButtons::BtnFromPoint(int x, int y) {
  for (int i = 0; i < Count(); ++i) {
    BarButton& button = *Modifiable(i);
    const bool inside = x >= button.Left && x <= button.Right && y >= button.Top && y <= button.Bottom;
    if (!inside || button.Is(ButtonType::Separator)) continue;
    if (button.Is(ButtonType::DropDown)) button.State = static_cast<std::int32_t>(button.PartAt(x));
    return i;
  }
  return -1;
}

int CommandBarButtons::IndexFromAccessKey(std::int16_t characterCode) const {
  if (characterCode == 0) return -1;  // the code of a button without a key
  for (int i = 0; i < Count(); ++i) {
    if (Find(i)->AccessKey == characterCode) return i;
  }
  return -1;
}

int CommandBarButtons::IndexOf(ButtonId id) const {
  for (int i = 0; i < Count(); ++i) {
    if (Find(i)->Id == id) return i;
  }
  return -1;
}

ButtonId CommandBarButtons::IdOf(int index) const {
  const BarButton* button = Find(index);
  return button != nullptr ? button->Id : ButtonId::None;
}

const BarButton* CommandBarButtons::Find(int index) const {
  return index >= 0 && index < Count() ? &buttons_[static_cast<std::size_t>(index)] : nullptr;
}

BarButton* CommandBarButtons::Modifiable(int index) {
  return const_cast<BarButton*>(Find(index));
}

std::string MeasuringText(std::string_view caption) {
  std::string text(caption);
  const auto ampersand = text.find('&');
  if (ampersand != std::string::npos) text.erase(ampersand, 1);
  return text;
}

std::string DisplayName(std::string_view caption) {
  std::string name;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;  // what follows the "&" is shown, whatever it is
    name += caption[i];
  }
  return name;
}

}  // namespace snip
