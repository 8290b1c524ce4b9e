#include "registry/reasons.h"

#include <algorithm>
#include <iterator>

namespace qvlink {
namespace {

struct Reason {
    std::uint32_t code;
    const char *text;
};

constexpr Reason reasons[] = {
    {2, "there is no such key or value"},
    {5, "access is denied"},
    {8, "not enough memory"},
    {87, "there can be no such key or value"},
    {112, "the disk is full"},
    {161, "there can be no such key"},
    {170, "another process writes the registry"},
    {1011, "the registry can't be opened"},
    {1015, "the registry is damaged"},
    {1016, "the registry can't be read or written"},
    {1018, "the key was removed meanwhile"},
};

} // namespace

std::string ReasonOf(std::uint32_t code) {
    auto const *const known =
        std::find_if(std::begin(reasons), std::end(reasons),
                     [code](Reason const &reason) { return reason.code == code; });
    return known == std::end(reasons) ? "error " + std::to_string(code) : known->text;
}

} // namespace qvlink
