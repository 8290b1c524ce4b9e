#include "UtilsAllocator.h"

#include <cstdio>

#include "Diag.h"

namespace UTILS {

// NOLINTNEXTLINE(bugprone-throw-keyword-missing): it keeps the text, and is a member
AllocationError::AllocationError(std::string const &text) : m_text(text) {}

AllocationError::~AllocationError() = default;

const char *AllocationError::what() const noexcept { return m_text.what(); }

void ThrowAllocationError(const char *message, const char *detail, const char *file,
                          unsigned long line) {
    throw AllocationError(FormatThrowText(message, detail, file, line));
}

void ThrowAllocationError(const char *message, unsigned long value, const char *file,
                          unsigned long line) {
    char detail[25];
    std::snprintf(detail, sizeof detail, "%ld", static_cast<long>(value));
    ThrowAllocationError(message, detail, file, line);
}

void ThrowOutOfRange(unsigned long index, unsigned long limit, const char *file,
                     unsigned long line) {
    char detail[50];
    std::snprintf(detail, sizeof detail, "%lu:%lu", index, limit);
    throw std::out_of_range(FormatThrowText("Out Of Range Error", detail, file, line));
}

void ThrowInvalidArgument(long value, const char *file, unsigned long line) {
    char detail[25];
    std::snprintf(detail, sizeof detail, "%ld", value);
    throw std::invalid_argument(FormatThrowText(messages::INVALID_ARGUMENT, detail, file, line));
}

template class UtilsAllocator<char>;
template class UtilsAllocator<unsigned char>;
template class UtilsAllocator<unsigned short>;
template class UtilsAllocator<int>;
template class UtilsAllocator<_TOKEN_GROUPS>;

} // namespace UTILS
