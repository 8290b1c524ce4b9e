// What stands between the exclamation marks of an insert: a part of printf's formats.
#pragma once

#include <string>
#include <string_view>

namespace platform {

struct InsertFormat {
    std::string flags;
    std::string width;     // digits, or a star
    std::string precision; // with its dot; digits or a star behind it
    std::string size;      // h, l, ll, w, I, I32, I64 or nothing
    char kind = 's';       // d i u x X o p c C s S
};

// False if the text is none of these formats.
bool ParseInsertFormat(std::string_view text, InsertFormat &format);

// The value of an argument, in the format; stars have been replaced.
std::string RenderInsert(InsertFormat const &format, std::uintptr_t value);

} // namespace platform
