#include "ui/menu/MenuItems.h"

#include <algorithm>
#include <utility>

namespace snip {
namespace {

/// The margin right of the caption, in twips.
constexpr int kAfterText = 60;

}  // namespace

void MenuItems::Clear() {
  items_.clear();
  maxWidth_ = 0;
}

void MenuItems::Add(MenuItem item, const MenuMetrics& metrics, const TextWidth& textWidth) {
  if (items_.size() >= kMaxItems) return;
  if (item.ID == MenuItem::kOwnIndex) item.ID = static_cast<std::int32_t>(items_.size());
  const int width = metrics.twips.ToTwipsX(textWidth(item.Caption)) + metrics.TextLeft + kAfterText;
  maxWidth_ = std::max(maxWidth_, width);
  items_.push_back(std::move(item));
}

bool MenuItems::IEnabled(int index) const {
  const MenuItem* item = Find(index);
  return item != nullptr && item->Enabled;
}

void MenuItems::SetIEnabled(int index, bool enabled) {
  if (MenuItem* item = Modifiable(index)) item->Enabled = enabled;
}

bool MenuItems::IChecked(int index) const {
  const MenuItem* item = Find(index);
  return item != nullptr && item->Checked;
}

void MenuItems::SetIChecked(int index, bool isChecked) {
  if (MenuItem* item = Modifiable(index)) item->Checked = isChecked;
}

int MenuItems::SeparatorCount(int count) const {
  const auto first = All().first(static_cast<std::size_t>(std::clamp<int>(count, 0, iCount())));
  return static_cast<int>(
      std::count_if(first.begin(), first.end(), [](const MenuItem& item) { return item.IsSeparator(); }));
}

const MenuItem* MenuItems::Find(int index) const {
  return index >= 0 && index < iCount() ? &items_[static_cast<std::size_t>(index)] : nullptr;
}

MenuItem* MenuItems::Modifiable(int index) {
  return const_cast<MenuItem*>(Find(index));
}

}  // namespace snip
