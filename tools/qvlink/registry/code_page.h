// Texts of 8 bits, as files of the older form have them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

class CodePage {
public:
    CodePage() = default;
    virtual ~CodePage() = default;
    CodePage(CodePage const &) = delete;
    CodePage &operator=(CodePage const &) = delete;

    // Nothing if the bytes have no meaning in the page.
    virtual std::optional<std::u16string> Units(std::string_view bytes) const = 0;
    // Nothing if the page hasn't all of the characters.
    virtual std::optional<std::string> Bytes(std::u16string_view units) const = 0;
};

// A page by its number; 0 is the page in use. Null if the system has no such page.
std::unique_ptr<CodePage> OpenCodePage(unsigned number);

} // namespace qvlink
