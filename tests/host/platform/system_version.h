// The system's version, where tests can tell it to the library as the system would.
#pragma once

#ifdef _WIN32

constexpr bool versionCanBeTold = false; // Windows knows its own

struct ToldVersion {
    ToldVersion(unsigned long, unsigned long, unsigned long) {}
};

inline void UsePrefixFromNowOn(const char *) {}

#else

#include <cstdlib>

#include "platform/settings.h"

constexpr bool versionCanBeTold = true;

// By settings, until the end of the scope.
class ToldVersion {
public:
    ToldVersion(unsigned long platform, unsigned long major, unsigned long minor)
        : m_kept(platform::CurrentSettings()) {
        platform::Settings settings = m_kept;
        settings.platformId = platform;
        settings.majorVersion = major;
        settings.minorVersion = minor;
        platform::ApplySettings(settings);
    }
    ~ToldVersion() { platform::ApplySettings(m_kept); }
    ToldVersion(ToldVersion const &) = delete;
    ToldVersion &operator=(ToldVersion const &) = delete;

private:
    platform::Settings m_kept;
};

// For the processes that are started from now on.
inline void UsePrefixFromNowOn(const char *directory) { setenv("QVPREFIX", directory, 1); }

#endif
