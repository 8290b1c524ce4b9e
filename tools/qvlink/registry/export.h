// Writing a part of a registry as a registration file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "registry/registration.h"

namespace qvlink {

struct Exported {
    std::string bytes;
    std::size_t keys = 0;
    std::size_t values = 0;
    std::vector<std::string> leftOut; // keys and values, and why
    std::uint32_t code = 0;           // of reading the key itself; 0 if there is a file
};

// `key` has the short name of its root.
Exported ExportRegistration(Registry &registry, std::string const &key, RegistrationForm form,
                            CodePage const &page);

} // namespace qvlink
