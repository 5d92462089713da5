#include "ui/commandbar/SoundEffects.h"

#include <windows.h>
#include <mmsystem.h>
#undef PlaySound  // a macro of the header, which would rename the operation below

#include <utility>

#include "platform/SystemLibrary.h"
#include "ui/commandbar/SystemSounds.h"

namespace snip {

SoundEffects::SoundEffects(const Registry32& registry)
    : SoundEffects(registry, [](const std::string& fileName) {
        static auto* const play = SystemFunction<decltype(sndPlaySoundA)>("winmm.dll", "sndPlaySoundA");
        if (play != nullptr) play(fileName.c_str(), SND_ASYNC | SND_NODEFAULT);
      }) {}

SoundEffects::SoundEffects(const Registry32& registry, Player player)
    : registry_(registry), player_(std::move(player)) {}

void SoundEffects::PlaySystemSound(std::int16_t index) const {
  PlayEvent(DefaultSchemeSoundKey(SystemSoundEventName(index)));
}

void SoundEffects::PlayOfficeSound(std::string_view eventName) const {
  PlayEvent(OfficeSchemeSoundKey(eventName));
}

void SoundEffects::PlaySound(std::string_view eventName, std::int16_t office) const {
  PlayEvent(office == -1 ? OfficeSchemeSoundKey(eventName) : DefaultSchemeSoundKey(eventName));
}

void SoundEffects::PlayEvent(const std::string& registryKey) const {
  player_(registry_.QueryRegString(HKEY_CURRENT_USER, registryKey, "", ""));
}

}  // namespace snip
