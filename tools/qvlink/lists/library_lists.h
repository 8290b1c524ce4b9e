// The protected lists in a built library, a Windows DLL or a Linux shared library; either is
// read on either system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "list_text.h"

namespace qvlink {

struct LibraryList {
    lists::Kind kind = lists::Kind::files;
    std::uint32_t id = 0;
    std::string_view stored; // a part of the library's bytes, as lists::Unpack takes it
};

// The type that lists of a kind have as resources: WIN_FILES or WIN_REGS.
const char *ResourceType(lists::Kind kind);

struct LibraryLists {
    std::vector<LibraryList> lists; // files first, then by id; of several of one id the first
    std::string malformed;          // what made no sense; `lists` has what was found before
};

// Whether the bytes begin as those of a library, or program, of either system.
bool IsLibrary(std::string_view bytes);
// Any bytes will do.
LibraryLists FindLists(std::string_view bytes);

} // namespace qvlink
