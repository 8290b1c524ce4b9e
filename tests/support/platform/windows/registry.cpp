#include "platform/registry.h"

void TellRegistryDirectory(std::string const &) {}
