#include "registry/code_page.h"

#include "platform/posix/iconvpage.h"
#include "platform/settings.h"
#include "registry/text.h"

namespace qvlink {
namespace {

constexpr unsigned utf8Number = 65001;

class Utf8Page : public CodePage {
public:
    std::optional<std::u16string> Units(std::string_view bytes) const override {
        return UnitsOf(bytes);
    }
    std::optional<std::string> Bytes(std::u16string_view units) const override {
        return Utf8Of(units);
    }
};

bool IsHigh(char16_t unit) { return (unit & 0xfc00) == 0xd800; }

class OtherPage : public CodePage {
public:
    explicit OtherPage(unsigned number) : m_page(number) {}

    bool IsKnown() const { return m_page.Known(); }
    std::optional<std::u16string> Units(std::string_view bytes) const override {
        std::u16string units;
        while (!bytes.empty()) {
            std::size_t const taken = m_page.Decode(bytes, units);
            if (taken == 0) {
                return std::nullopt;
            }
            bytes.remove_prefix(taken);
        }
        return units;
    }
    std::optional<std::string> Bytes(std::u16string_view units) const override {
        std::string bytes;
        while (!units.empty()) {
            std::size_t const count = IsHigh(units.front()) && units.size() > 1 ? 2 : 1;
            if (!m_page.Encode(units.substr(0, count), bytes)) {
                return std::nullopt;
            }
            units.remove_prefix(count);
        }
        return bytes;
    }

private:
    platform::IconvPage m_page;
};

} // namespace

std::unique_ptr<CodePage> OpenCodePage(unsigned number) {
    unsigned const wanted = number == 0 ? platform::CurrentSettings().codePage : number;
    if (wanted == utf8Number) {
        return std::make_unique<Utf8Page>();
    }
    auto page = std::make_unique<OtherPage>(wanted);
    return page->IsKnown() ? std::move(page) : nullptr;
}

} // namespace qvlink
