// The code page by which multi-byte texts are read, until the end of the scope.
#pragma once

#ifdef _WIN32

#include <mbctype.h>

class CodePageNow {
public:
    explicit CodePageNow(unsigned codePage) : m_kept(_getmbcp()) {
        m_set = _setmbcp(static_cast<int>(codePage)) == 0;
    }
    ~CodePageNow() { _setmbcp(m_kept); }
    CodePageNow(CodePageNow const &) = delete;
    CodePageNow &operator=(CodePageNow const &) = delete;

    bool Set() const { return m_set; }

private:
    int m_kept;
    bool m_set;
};

#else

#include "platform/settings.h"

class CodePageNow {
public:
    explicit CodePageNow(unsigned codePage) : m_kept(platform::CurrentSettings()) {
        platform::Settings settings = m_kept;
        settings.codePage = codePage;
        platform::ApplySettings(settings);
    }
    ~CodePageNow() { platform::ApplySettings(m_kept); }
    CodePageNow(CodePageNow const &) = delete;
    CodePageNow &operator=(CodePageNow const &) = delete;

    bool Set() const { return true; }

private:
    platform::Settings m_kept;
};

#endif
