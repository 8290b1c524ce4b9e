// What the graph keeps of a registry value, and how its data read.
#pragma once

#include "linkdb.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

// Types of data, as the registry numbers them.
constexpr std::uint32_t REGISTRY_TEXT = 1;
constexpr std::uint32_t REGISTRY_TEXT_TO_EXPAND = 2;
constexpr std::uint32_t REGISTRY_NUMBER = 4;
constexpr std::uint32_t REGISTRY_NUMBER_BIG_ENDIAN = 5;
constexpr std::uint32_t REGISTRY_TEXTS = 7;
constexpr std::uint32_t REGISTRY_LONG_NUMBER = 11;

struct ValueData {
    std::uint32_t type = 0;
    std::uint32_t size = 0; // of all the data
    std::string data;       // as the registry stores them; their beginning if `size` is more
};
// Nothing unless the object is a value with a block that makes sense.
std::optional<ValueData> ValueDataOf(CQVUObject &object);
// The block that the graph keeps.
std::string BlockOf(std::uint32_t type, std::string_view data);

// The texts of a value of a text's type in UTF-8, without the zeros behind them; none for
// other types. Half a pair of units comes as U+FFFD.
std::vector<std::string> TextsOf(std::uint32_t type, std::string_view data);
// The number of a value of a number's type and size.
std::optional<std::uint64_t> NumberOf(std::uint32_t type, std::string_view data);
// "REG_SZ"; nothing for a type without a name.
std::optional<std::string> ValueTypeWord(std::uint32_t type);

} // namespace qvlink
