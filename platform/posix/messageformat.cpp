#include "platform/posix/messageformat.h"

#include "platform/posix/insertformat.h"

#include <array>

namespace platform {
namespace {

constexpr std::string_view lineBreak = "\r\n";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The caller's arguments by number. The list goes one way only: what was taken is kept, and
// nothing is taken before it is asked for.
class Arguments {
public:
    explicit Arguments(va_list *list) : m_list(list) {}

    // Numbers begin at 1; an insert of 99 with two stars asks for 101.
    bool Get(std::size_t number, std::uintptr_t &value) {
        if (!m_list)
            return false;
        while (m_taken < number)
            // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller has begun it
            m_values[m_taken++] = va_arg(*m_list, std::uintptr_t);
        value = m_values[number - 1];
        return true;
    }

private:
    va_list *m_list;
    std::size_t m_taken = 0;
    std::array<std::uintptr_t, 101> m_values{};
};

class Expansion {
public:
    Expansion(std::string_view text, va_list *arguments, std::string &message)
        : m_text(text), m_arguments(arguments), m_message(message) {}

    bool Run() {
        while (!m_text.empty()) {
            char const c = Take();
            if (c == '\r' || c == '\n')
                BreakLine(c);
            else if (c != '%')
                m_message += c;
            else if (m_text.empty())
                return false;
            else if (m_text.front() == '0')
                return true;
            else if (!IsDigit(m_text.front()))
                Escape(Take());
            else if (!Insert())
                return false;
        }
        return true;
    }

private:
    char Take() {
        char const c = m_text.front();
        m_text.remove_prefix(1);
        return c;
    }

    void BreakLine(char c) {
        if (c == '\r' && !m_text.empty() && m_text.front() == '\n')
            m_text.remove_prefix(1);
        m_message += lineBreak;
    }

    void Escape(char c) {
        if (c == 'n')
            m_message += lineBreak;
        else
            m_message += c == 'r' ? '\r' : c == 't' ? '\t' : c == 'b' ? ' ' : c;
    }

    bool Insert() {
        auto number = static_cast<std::size_t>(Take() - '0');
        if (!m_text.empty() && IsDigit(m_text.front()))
            number = number * 10 + static_cast<std::size_t>(Take() - '0');
        InsertFormat format;
        std::uintptr_t value = 0;
        if (!TakeFormat(format) || !FillStar(number, format.flags, format.width) ||
            !FillPrecision(number, format.precision) || !m_arguments.Get(number, value))
            return false;
        m_message += RenderInsert(format, value);
        return true;
    }

    // What lies between exclamation marks, if any does.
    bool TakeFormat(InsertFormat &format) {
        if (m_text.empty() || m_text.front() != '!')
            return true;
        std::size_t const end = m_text.find('!', 1);
        if (end == std::string_view::npos || !ParseInsertFormat(m_text.substr(1, end - 1), format))
            return false;
        m_text.remove_prefix(end + 1);
        return true;
    }

    // A star takes the argument that the number names, and the next is the value's.
    bool FillStar(std::size_t &number, std::string &flags, std::string &width) {
        std::uintptr_t value = 0;
        if (width != "*")
            return true;
        if (!m_arguments.Get(number++, value))
            return false;
        auto const size = static_cast<std::int32_t>(value);
        if (size < 0)
            flags += '-';
        width = std::to_string(size < 0 ? -std::int64_t{size} : std::int64_t{size});
        return true;
    }

    bool FillPrecision(std::size_t &number, std::string &precision) {
        std::uintptr_t value = 0;
        if (precision != ".*")
            return true;
        if (!m_arguments.Get(number++, value))
            return false;
        auto const size = static_cast<std::int32_t>(value);
        precision = size < 0 ? std::string() : "." + std::to_string(size);
        return true;
    }

    std::string_view m_text;
    Arguments m_arguments;
    std::string &m_message;
};

} // namespace

bool ExpandMessage(std::string_view text, va_list *arguments, std::string &message) {
    return Expansion(text, arguments, message).Run();
}

} // namespace platform
