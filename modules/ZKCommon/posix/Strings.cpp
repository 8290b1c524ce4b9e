// Strings are in the notes of a module; see StringTable.h.
#include "modules/ZKCommon/Strings.h"

#include "platform/posix/notes.h"

#include <algorithm>
#include <charconv>

namespace ZK {
namespace {

bool FindInTable(std::string_view table, unsigned sought, std::string_view &found) {
    while (!table.empty()) {
        std::string_view const entry = table.substr(0, table.find('\0'));
        unsigned id = 0;
        auto const number = std::from_chars(entry.data(), entry.data() + entry.size(), id);
        auto const digits = static_cast<std::size_t>(number.ptr - entry.data());
        if (number.ec == std::errc() && id == sought && entry.substr(digits, 1) == "=") {
            found = entry.substr(digits + 1);
            return true;
        }
        table.remove_prefix(std::min(entry.size() + 1, table.size()));
    }
    return false;
}

} // namespace

int CopyString(HINSTANCE instance, unsigned id, char *buffer, int capacity) {
    std::string_view found;
    platform::VisitNotes(instance, platform::stringTableNote,
                         [&](std::string_view table) { return FindInTable(table, id, found); });
    std::size_t const length = std::min(found.size(), static_cast<std::size_t>(capacity) - 1);
    std::copy_n(found.data(), length, buffer);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

} // namespace ZK
