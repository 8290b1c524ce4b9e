#include "platform/winapi.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace win::host {
namespace {

constexpr std::size_t maxDrive = 3;
constexpr std::size_t maxPart = 256;

constexpr unsigned char Lower(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

// Where the parts of a path lie in it.
struct Parts {
    explicit Parts(const char *path) : drive(path) {
        directory = path[0] != '\0' && path[1] == ':' ? path + 2 : path;
        name = directory;
        for (const char *at = directory; *at; ++at)
            if (*at == '\\' || *at == '/')
                name = at + 1;
        end = name + std::strlen(name);
        const char *const dot = std::strrchr(name, '.');
        extension = dot ? dot : end;
    }

    const char *drive;
    const char *directory;
    const char *name;
    const char *extension;
    const char *end;
};

void CopyCut(char *to, std::size_t size, const char *from, const char *end) {
    if (!to)
        return;
    auto const length = static_cast<std::size_t>(end - from);
    std::size_t const kept = length < size ? length : size - 1;
    std::memcpy(to, from, kept);
    to[kept] = '\0';
}

// One output of _splitpath_s: a part that isn't wanted has neither buffer nor size.
struct Output {
    char *buffer;
    std::size_t size;
    const char *from;
    const char *end;

    bool WellFormed() const { return (buffer == nullptr) == (size == 0); }
    bool Fits() const { return !buffer || static_cast<std::size_t>(end - from) < size; }
};

} // namespace

void _splitpath(const char *path, char *drive, char *directory, char *name, char *extension) {
    Parts const parts(path);
    CopyCut(drive, maxDrive, parts.drive, parts.directory);
    CopyCut(directory, maxPart, parts.directory, parts.name);
    CopyCut(name, maxPart, parts.name, parts.extension);
    CopyCut(extension, maxPart, parts.extension, parts.end);
}

errno_t _splitpath_s(const char *path, char *drive, std::size_t driveSize, char *directory,
                     std::size_t directorySize, char *name, std::size_t nameSize, char *extension,
                     std::size_t extensionSize) {
    Parts const parts(path ? path : "");
    Output const outputs[] = {{drive, driveSize, parts.drive, parts.directory},
                              {directory, directorySize, parts.directory, parts.name},
                              {name, nameSize, parts.name, parts.extension},
                              {extension, extensionSize, parts.extension, parts.end}};
    errno_t result = path ? 0 : EINVAL;
    for (Output const &output : outputs)
        if (!output.WellFormed())
            result = EINVAL;
    for (Output const &output : outputs)
        if (result == 0 && !output.Fits())
            result = ERANGE;
    for (Output const &output : outputs)
        if (output.buffer && output.size)
            CopyCut(output.buffer, output.size, output.from, result ? output.from : output.end);
    return result;
}

int _stricmp(const char *left, const char *right) {
    if (!left || !right)
        return INT_MAX;
    for (;; ++left, ++right) {
        if (*left != *right && Lower(*left) != Lower(*right))
            return Lower(*left) < Lower(*right) ? -1 : 1;
        if (*left == '\0')
            return 0;
    }
}

int _memicmp(const void *left, const void *right, std::size_t size) {
    auto const *const a = static_cast<const char *>(left);
    auto const *const b = static_cast<const char *>(right);
    for (std::size_t i = 0; i < size; ++i)
        if (Lower(a[i]) != Lower(b[i]))
            return Lower(a[i]) < Lower(b[i]) ? -1 : 1;
    return 0;
}

// A text that doesn't fit ends the process, as the handler for invalid parameters does.
errno_t strcpy_s(char *to, std::size_t size, const char *from) {
    std::size_t const length = to && from ? strnlen(from, size) : size;
    if (length >= size)
        std::abort();
    std::memcpy(to, from, length + 1);
    return 0;
}

char *_strlwr(char *text) {
    for (char *at = text; at && *at; ++at)
        *at = static_cast<char>(Lower(*at));
    return text;
}

} // namespace win::host
