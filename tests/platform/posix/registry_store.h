// The registry's store in a folder of the test's own.
#pragma once

#include "../registry_keys.h"

#include "settings_keeper.h"

class RegistryStore : public ::testing::Test {
protected:
    RegistryStore() { TellRegistryDirectory(Directory()); }

    std::filesystem::path const &Folder() const { return m_folder.Path(); }
    std::string Directory() const { return (m_folder.Path() / "prefix/registry").string(); }
    std::filesystem::path File() const { return std::filesystem::path(Directory()) / "store.db"; }

private:
    SettingsKeeper m_keeper;
    TempFolder m_folder;
};
