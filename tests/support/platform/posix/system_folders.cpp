#include "system_folders.h"

#include "platform/settings.h"

SystemFolders CurrentSystemFolders() {
    platform::Settings const settings = platform::CurrentSettings();
    return {settings.systemDirectory, settings.windowsDirectory};
}

bool TellSystemFolders(SystemFolders const &folders) {
    platform::Settings settings = platform::CurrentSettings();
    settings.systemDirectory = folders.system;
    settings.windowsDirectory = folders.windows;
    platform::ApplySettings(settings);
    return true;
}
