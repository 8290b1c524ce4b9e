// Masks for names, as Windows compares them.
#pragma once

#include <string>

namespace platform {

// Compares names with a mask, ASCII letters without regard to case. `*` is any text, and
// `?` a character; before a dot and at the end of a name `?` may be nothing. "*.*" is every
// name, "*." those without a dot, and a dot before `*` or `?` may be missing at the end of a
// name.
class NameMask {
public:
    explicit NameMask(std::string const &mask);

    bool Matches(std::string const &text) const;
    // False for a mask that is one plain name.
    static bool HasWildcards(std::string const &mask);

private:
    std::u16string m_signs;
};

} // namespace platform
