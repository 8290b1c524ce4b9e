// What the tests of messages share.
#pragma once

#include "services.h"

#include <cstdarg>
#include <cstring>

constexpr DWORD fromString = 1280; // and into a block of the system's
constexpr DWORD fromSystem = 4352;
constexpr DWORD usersLanguage = 1024;

struct Message {
    DWORD count;
    DWORD error;
    bool kept; // the pointer for the block is as it was
    bool null; // it is null
    std::string text;
};

inline Message AskMessage(DWORD flags, const void *source, DWORD code, va_list *arguments,
                          DWORD language = usersLanguage) {
    char untouched = 0;
    char *block = &untouched;
    win::SetLastError(0);
    DWORD const count = win::FormatMessageA(flags, source, code, language,
                                            reinterpret_cast<char *>(&block), 0, arguments);
    Message message{count, win::GetLastError(), block == &untouched, block == nullptr, {}};
    if (count == 0)
        return message;
    message.text = block;
    EXPECT_EQ(nullptr, win::LocalFree(block));
    return message;
}

inline Message Format(const char *text, ...) {
    va_list arguments;
    va_start(arguments, text);
    Message const message = AskMessage(fromString, text, 0, &arguments);
    va_end(arguments);
    EXPECT_EQ(message.count, message.text.size()) << text;
    return message;
}
