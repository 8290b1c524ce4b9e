#include "output/value_text.h"

#include "platform/host.h"

#include <cstdio>

namespace qvlink {
namespace {

constexpr std::size_t ShownBytes = 64;

std::string BytesText(ValueData const &value) {
    std::string text;
    for (char const c : value.data.substr(0, ShownBytes)) {
        char byte[4];
        std::snprintf(byte, sizeof byte, "%02x ", static_cast<unsigned char>(c));
        text += byte;
    }
    return value.size > ShownBytes ? text + "..." : text.substr(0, text.size() - 1);
}

} // namespace

std::string ValueTypeText(std::uint32_t type) {
    return ValueTypeWord(type).value_or("type " + std::to_string(type));
}

std::vector<std::string> LinesOf(ValueData const &value) {
    if (std::optional<std::uint64_t> const number = NumberOf(value.type, value.data)) {
        char text[48];
        std::snprintf(text, sizeof text, "0x%llx (%llu)", static_cast<unsigned long long>(*number),
                      static_cast<unsigned long long>(*number));
        return {text};
    }
    std::vector<std::string> lines;
    for (std::string const &text : TextsOf(value.type, value.data)) {
        bool lossless = true;
        lines.push_back(FromUtf8(text, lossless));
    }
    if (!lines.empty() && value.size > value.data.size()) {
        lines.back() += "...";
    }
    if (lines.empty() && !value.data.empty()) {
        lines.push_back(BytesText(value));
    }
    return lines;
}

} // namespace qvlink
