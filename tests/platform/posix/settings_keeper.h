// Puts the settings back at the end of a test.
#pragma once

#include "platform/settings.h"

class SettingsKeeper {
public:
    SettingsKeeper() : m_kept(platform::CurrentSettings()) {}
    ~SettingsKeeper() { platform::ApplySettings(m_kept); }
    SettingsKeeper(SettingsKeeper const &) = delete;
    SettingsKeeper &operator=(SettingsKeeper const &) = delete;

    // The settings as they were, to be changed and applied.
    platform::Settings Copy() const { return m_kept; }

private:
    platform::Settings m_kept;
};
