// The registry of a prefix.
#include "platform/posix/inifile.h"
#include "platform/posix/registry/tree.h"
#include "platform/posix/utf8.h"

namespace platform::registry {

std::vector<Mount> ReadMounts(std::string const &prefixName) {
    constexpr std::string_view beginning = "hive.";
    std::string const prefix = Resolved(prefixName);
    std::vector<Mount> mounts;
    for (auto const &[field, file] : ReadFields(prefix)) {
        if (field.compare(0, beginning.size(), beginning) != 0 || file.empty())
            continue;
        Mount mount;
        DecodeUtf8(std::string_view(field).substr(beginning.size()), mount.key);
        mount.file = file.front() == '/' ? file : std::string(prefix).append("/").append(file);
        mounts.push_back(std::move(mount));
    }
    return mounts;
}

std::shared_ptr<Tree> OpenTree(Settings const &settings) {
    return std::make_shared<Tree>(settings.registryDirectory, ReadMounts(PrefixDirectory()));
}

} // namespace platform::registry
