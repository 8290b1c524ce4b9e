#include "answer/value_data.h"

#include "answer/graph.h"
#include "model.h"

#include <cstring>

namespace qvlink {
namespace {

constexpr const char *TypeWords[] = {"REG_NONE",
                                     "REG_SZ",
                                     "REG_EXPAND_SZ",
                                     "REG_BINARY",
                                     "REG_DWORD",
                                     "REG_DWORD_BIG_ENDIAN",
                                     "REG_LINK",
                                     "REG_MULTI_SZ",
                                     "REG_RESOURCE_LIST",
                                     "REG_FULL_RESOURCE_DESCRIPTOR",
                                     "REG_RESOURCE_REQUIREMENTS_LIST",
                                     "REG_QWORD"};

constexpr char32_t Replacement = 0xfffd;

bool IsHighHalf(char32_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
bool IsLowHalf(char32_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

void AppendUtf8(std::string &text, char32_t c) {
    auto const more = [&](unsigned shift) {
        text += static_cast<char>(0x80 | ((c >> shift) & 0x3f));
    };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xc0 | (c >> 6));
        more(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xe0 | (c >> 12));
        more(6);
        more(0);
    } else {
        text += static_cast<char>(0xf0 | (c >> 18));
        more(12);
        more(6);
        more(0);
    }
}

// 16-bit units, little-endian; an odd byte at the end is none.
class Units {
public:
    explicit Units(std::string_view data) : m_data(data) {}

    bool AtEnd() const { return m_at + 1 >= m_data.size(); }

    char32_t Next() {
        char32_t const unit = Peek();
        m_at += 2;
        if (IsHighHalf(unit) && !AtEnd() && IsLowHalf(Peek())) {
            char32_t const low = Peek();
            m_at += 2;
            return 0x10000 + ((unit - 0xd800) << 10) + (low - 0xdc00);
        }
        return IsHighHalf(unit) || IsLowHalf(unit) ? Replacement : unit;
    }

private:
    char32_t Peek() const {
        auto const byte = [&](std::size_t at) {
            return static_cast<char32_t>(static_cast<unsigned char>(m_data[at]));
        };
        return byte(m_at) | byte(m_at + 1) << 8;
    }

    std::string_view m_data;
    std::size_t m_at = 0;
};

} // namespace

std::optional<ValueData> ValueDataOf(CQVUObject &object) {
    if (TypeOf(object) != OBJ_VALUE || !object.pData || object.dwDataSize < sizeof(ValueHead)) {
        return std::nullopt;
    }
    ValueHead head{};
    std::memcpy(&head, object.pData, sizeof head);
    ValueData value{head.type, head.size, {}};
    value.data.assign(reinterpret_cast<const char *>(object.pData) + sizeof head,
                      object.dwDataSize - sizeof head);
    return value.data.size() > value.size ? std::nullopt : std::optional(value);
}

std::string BlockOf(std::uint32_t type, std::string_view data) {
    ValueHead const head{type, static_cast<std::uint32_t>(data.size())};
    std::string block(sizeof head, '\0');
    std::memcpy(block.data(), &head, sizeof head);
    return block.append(data.substr(0, LONGEST_VALUE_DATA));
}

std::vector<std::string> TextsOf(std::uint32_t type, std::string_view data) {
    std::vector<std::string> texts;
    bool const isList = type == REGISTRY_TEXTS;
    if (type != REGISTRY_TEXT && type != REGISTRY_TEXT_TO_EXPAND && !isList) {
        return texts;
    }
    std::string text;
    for (Units units(data); !units.AtEnd();) {
        char32_t const c = units.Next();
        if (c != 0) {
            AppendUtf8(text, c);
        } else if (text.empty() || !isList) {
            break;
        } else {
            texts.push_back(std::move(text));
            text.clear();
        }
    }
    if (!text.empty() || !isList) {
        texts.push_back(std::move(text));
    }
    return texts;
}

std::optional<std::uint64_t> NumberOf(std::uint32_t type, std::string_view data) {
    bool const isLong = type == REGISTRY_LONG_NUMBER;
    bool const isTurned = type == REGISTRY_NUMBER_BIG_ENDIAN;
    bool const isNumber = isLong || isTurned || type == REGISTRY_NUMBER;
    if (!isNumber || data.size() != (isLong ? 8U : 4U)) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        std::size_t const at = isTurned ? i : data.size() - 1 - i;
        number = number << 8 | static_cast<unsigned char>(data[at]);
    }
    return number;
}

std::optional<std::string> ValueTypeWord(std::uint32_t type) {
    return type < std::size(TypeWords) ? std::optional<std::string>(TypeWords[type]) : std::nullopt;
}

} // namespace qvlink
