#include "platform/registry.h"

#include "platform/settings.h"

void TellRegistryDirectory(std::string const &directory) {
    platform::Settings settings = platform::CurrentSettings();
    settings.registryDirectory = directory;
    platform::ApplySettings(settings);
}
