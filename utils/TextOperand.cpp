#include <functional>

#include "UtilsString.h"

namespace UTILS {

TextOperand::TextOperand(char const *source)
    : m_text(source ? source : ""), m_size(static_cast<unsigned long>(std::strlen(m_text))) {}

TextOperand::TextOperand(std::string const &source)
    : m_text(source.c_str()), m_size(static_cast<unsigned long>(source.size())) {}

TextOperand::TextOperand(MemObject<char> const &source)
    : m_text(source.Retrieve()), m_size(source.RetrieveSize()) {}

TextOperand::TextOperand(UtilsString const &source)
    : m_text(source.Retrieve()), m_size(source.size()) {}

TextOperand::TextOperand(unsigned short const *source) : m_text(""), m_size(0) {
    UtilsString const converted = UtilsString::ReturnStringFromWideString(source);
    Own(std::string(converted.Retrieve(), converted.size()));
}

TextOperand::TextOperand(WideString const &source) : TextOperand(source.c_str()) {}

TextOperand::TextOperand(TextOperand const &other) : TextOperand("") { *this = other; }

TextOperand &TextOperand::operator=(TextOperand const &other) {
    if (this == &other) {
        return *this;
    }
    if (other.m_text == other.m_owned.c_str()) {
        Own(std::string(other.m_owned));
    } else {
        m_text = other.m_text;
        m_size = other.m_size;
    }
    return *this;
}

TextOperand::~TextOperand() = default;

void TextOperand::Own(std::string &&text) {
    m_owned = std::move(text);
    m_text = m_owned.c_str();
    m_size = static_cast<unsigned long>(m_owned.size());
}

void TextOperand::KeepFrom(MemObject<char> const &run) {
    std::less<> const below;
    char const *const begin = run.Retrieve();
    if (!below(m_text, begin) && !below(begin + run.RetrieveSize(), m_text)) {
        Own(std::string(m_text, m_size));
    }
}

} // namespace UTILS
