// What the platform layer keeps of the settings beside their public interface.
#pragma once

#include "platform/settings.h"

#include <memory>

namespace platform {

// What holds now; stays as it is while the caller has it.
std::shared_ptr<Settings const> SettingsNow();

// The code page that was known last, for those who ask often and read no settings for it.
unsigned LastCodePage();

// Reads the prefix again when it is next needed, unless settings were applied.
void ForgetPrefix();

// Frees the settings, before the library is unloaded.
void ReleaseSettings();

} // namespace platform
