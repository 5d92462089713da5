#include "ui/dialogs/MessageBoxLayout.h"

#include <algorithm>

#include "ui/commandbar/SystemSounds.h"

namespace snip {
namespace {

constexpr bool HasBits(int style, int bits) {
  return (style & bits) == bits;
}

struct IconAndSound {
  MessageIcon icon;
  std::int16_t sound;
};

IconAndSound IconAndSoundOf(int style) {
  if (HasBits(style, 32)) return {MessageIcon::Question, SystemSound::kQuestion};
  if (HasBits(style, 16)) return {MessageIcon::Critical, SystemSound::kHand};
  if (HasBits(style, 48)) return {MessageIcon::Exclamation, SystemSound::kExclamation};
  return {MessageIcon::Information, SystemSound::kAsterisk};
}

}  // namespace

MessageBoxStyle MessageBoxStyleFromNumber(int style) {
  const auto [icon, sound] = IconAndSoundOf(style);
  if (HasBits(style, 4)) return {{MessageResult::Yes, MessageResult::No}, icon, sound};
  if (HasBits(style, 1)) return {{MessageResult::Ok, MessageResult::Cancel}, icon, sound};
  return {{MessageResult::Ok}, icon, sound};
}

std::string MessageButtonCaption(MessageResult button) {
  switch (button) {
    case MessageResult::Ok:
      return "OK";
    case MessageResult::Cancel:
      return "Cancel";
    case MessageResult::Yes:
      return "Yes";
    case MessageResult::No:
      return "No";
  }
  return {};
}

MessageResult const* EscapeButton(const MessageBoxStyle& style) {
  const auto cancel = std::find(style.buttons.begin(), style.buttons.end(), MessageResult::Cancel);
  if (cancel != style.buttons.end()) return &*cancel;
  return style.buttons.size() == 1 ? &style.buttons.front() : nullptr;
}

MessageBoxLayout LayOutMessageBox(const MessageBoxStyle& style, const MessageBoxMetrics& metrics) {
  // Distances in quarters of a character's width and eighths of its height, the platform's dialog units: a
  // margin of 7, a button of 50 by 14, 4 between neighbours.
  const auto across = [&](int units) { return units * metrics.dialogUnit.width / 4; };
  const auto down = [&](int units) { return units * metrics.dialogUnit.height / 8; };
  const int marginX = across(7);
  const int marginY = down(7);
  const Size button{across(50), down(14)};
  const int buttonGap = across(4);
  const auto buttonCount = static_cast<int>(style.buttons.size());
  const int buttonsWidth = buttonCount * button.width + (buttonCount - 1) * buttonGap;

  // Lines of about 60 characters read well; a narrow screen makes them shorter.
  const int promptLeft = marginX + metrics.icon.width + across(8);
  const int widestLine = std::min(across(4 * 60), metrics.screenWidth * 9 / 10 - promptLeft - marginX);
  const Size prompt = metrics.measurePrompt(std::max(widestLine, 1));

  MessageBoxLayout layout;
  const int highestPrompt = metrics.screenHeight * 8 / 10 - 3 * marginY - button.height;
  layout.promptOverflows = prompt.height > highestPrompt;
  const int promptHeight = std::clamp(prompt.height, metrics.dialogUnit.height,
                                      std::max(highestPrompt, metrics.dialogUnit.height));
  const int bodyHeight = std::max(promptHeight, metrics.icon.height);
  const int promptWidth = layout.promptOverflows ? widestLine : prompt.width;

  const int contentWidth = std::max({promptLeft + promptWidth, marginX + buttonsWidth, across(110)});
  layout.client = {contentWidth + marginX, bodyHeight + 3 * marginY + button.height};
  layout.icon = {marginX, marginY, metrics.icon.width, metrics.icon.height};
  // A prompt lower than the icon is centred beside it, a higher one starts at its top.
  layout.prompt = {promptLeft, marginY + (bodyHeight - promptHeight) / 2, contentWidth - promptLeft,
                   promptHeight};

  int left = (layout.client.width - buttonsWidth) / 2;
  for (int i = 0; i < buttonCount; ++i) {
    layout.buttons.push_back({left, 2 * marginY + bodyHeight, button.width, button.height});
    left += button.width + buttonGap;
  }
  return layout;
}

}  // namespace snip
