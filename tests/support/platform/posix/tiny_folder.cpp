#include "platform/tiny_folder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <sys/mount.h>

TinyFolder::TinyFolder(std::size_t bytes) {
    std::string name = (std::filesystem::temp_directory_path() / "qvlinkdb-tiny-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        m_whyNot = std::string("no folder to mount on: ") + std::strerror(errno);
        return;
    }
    m_path = name;
    std::string const options = "size=" + std::to_string(bytes);
    if (mount("tmpfs", name.c_str(), "tmpfs", 0, options.c_str()) != 0)
        m_whyNot = std::string("a small file system can't be mounted: ") + std::strerror(errno);
}

TinyFolder::~TinyFolder() {
    if (Available())
        umount2(m_path.c_str(), MNT_DETACH);
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}
