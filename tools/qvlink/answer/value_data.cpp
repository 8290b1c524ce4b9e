#include "answer/value_data.h"

#include "answer/graph.h"
#include "model.h"
#include "registry/text.h"

#include <algorithm>
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

constexpr char16_t Replacement = 0xfffd;

bool IsHighHalf(char16_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
bool IsLowHalf(char16_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

// In UTF-8, with a replacement for each half of a pair that stands alone.
std::string Utf8OfAny(std::u16string units) {
    for (std::size_t i = 0; i < units.size(); ++i) {
        bool const isPair = IsHighHalf(units[i]) && i + 1 < units.size() && IsLowHalf(units[i + 1]);
        if (isPair) {
            ++i;
        } else if (IsHighHalf(units[i]) || IsLowHalf(units[i])) {
            units[i] = Replacement;
        }
    }
    return Utf8Of(units).value_or("");
}

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
    std::u16string const units = UnitsOfStored(data.substr(0, data.size() / 2 * 2));
    for (std::size_t start = 0; start < units.size();) {
        std::size_t const end = std::min(units.find(u'\0', start), units.size());
        if (end == start) {
            break;
        }
        texts.push_back(Utf8OfAny(units.substr(start, end - start)));
        start = isList ? end + 1 : units.size();
    }
    if (texts.empty() && !isList) {
        texts.emplace_back();
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
