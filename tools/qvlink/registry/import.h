// Bringing registration files into a registry.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "registry/registration.h"

namespace qvlink {

struct ImportFault {
    std::size_t line = 0;
    std::string message;
    bool isRefusal = false; // the registry refused what the file says rightly
};

struct Imported {
    RegistrationForm form = RegistrationForm::none;
    std::string root; // of a prefix's file: the key that its keys went below
    std::size_t keys = 0;
    std::size_t values = 0;
    std::size_t removedKeys = 0;
    std::size_t removedValues = 0;
    std::size_t links = 0;           // links whose targets were copied into their place
    std::vector<ImportFault> faults; // in order of their lines; the rest was brought in
    std::string failure;             // why nothing at all was brought in
};

// All of a file in one transaction. With `into` that key takes the place of the roots.
Imported ImportRegistration(Registry &registry, std::string_view bytes, CodePage const &page,
                            std::string const &into);

} // namespace qvlink
