#include "output/standard_output.h"

#include <cerrno>
#include <cstdio>
#include <iostream>

namespace qvlink {

StandardOutput::StandardOutput() : m_buffer(1 << 16), m_replaced(std::cout.rdbuf(this)) {
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
}

StandardOutput::~StandardOutput() { std::cout.rdbuf(m_replaced); }

int StandardOutput::Finish() {
    sync();
    return m_error;
}

StandardOutput::int_type StandardOutput::overflow(int_type character) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

int StandardOutput::sync() {
    auto const size = static_cast<std::size_t>(pptr() - pbase());
    setp(m_buffer.data(), m_buffer.data() + m_buffer.size());
    errno = 0;
    bool const isWritten = m_error == 0 && std::fwrite(m_buffer.data(), 1, size, stdout) == size &&
                           std::fflush(stdout) == 0;
    if (!isWritten && m_error == 0) {
        m_error = errno != 0 ? errno : EIO;
    }
    return isWritten ? 0 : -1;
}

} // namespace qvlink
