// Messages, from a text of the caller's and from the texts of error numbers.
#include "platform/winapi.h"

#include "platform/posix/errors.h"
#include "platform/posix/localmemory.h"
#include "platform/posix/messageformat.h"
#include "platform/posix/messagetexts.h"

#include <algorithm>
#include <cstring>

namespace platform {
namespace {

constexpr DWORD fromString = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING;
constexpr DWORD fromSystem = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
constexpr DWORD usersLanguage = 1024;

DWORD Refuse(DWORD code) {
    Fail(code);
    return 0;
}

// Into a block of the caller's, of so many bytes at least.
DWORD HandOver(std::string const &message, std::size_t least, char *&slot) {
    if (message.empty()) {
        slot = nullptr;
        return Refuse(ERROR_NO_WORK_DONE);
    }
    slot = static_cast<char *>(AllocateLocal(std::max(message.size() + 1, least)));
    std::memcpy(slot, message.c_str(), message.size() + 1);
    return static_cast<DWORD>(message.size());
}

} // namespace
} // namespace platform

namespace win::host {

DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD language, char *buffer,
                     DWORD size, va_list *arguments) {
    using namespace platform;
    return OutOfMemoryAs(DWORD{0}, [=] {
        bool const ownText = flags == fromString;
        if ((!ownText && flags != fromSystem) || language != usersLanguage || (ownText && !source))
            return Refuse(ERROR_INVALID_PARAMETER);
        if (!buffer)
            return Refuse(ERROR_NOT_ENOUGH_MEMORY);
        const char *const text = ownText ? static_cast<const char *>(source) : ErrorText(messageId);
        if (!text)
            return Refuse(ERROR_MR_MID_NOT_FOUND);
        std::string message;
        if (!ExpandMessage(text, arguments, message))
            return Refuse(ERROR_INVALID_PARAMETER);
        if (!ownText)
            message += "\r\n";
        return HandOver(message, size, *reinterpret_cast<char **>(buffer));
    });
}

} // namespace win::host
