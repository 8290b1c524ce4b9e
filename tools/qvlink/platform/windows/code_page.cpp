#include "registry/code_page.h"

#include <windows.h>

namespace qvlink {
namespace {

class SystemPage : public CodePage {
public:
    explicit SystemPage(UINT number) : m_number(number) {}

    std::optional<std::u16string> Units(std::string_view bytes) const override;
    std::optional<std::string> Bytes(std::u16string_view units) const override;

private:
    UINT m_number;
};

std::optional<std::u16string> SystemPage::Units(std::string_view bytes) const {
    int const size = static_cast<int>(bytes.size());
    std::u16string units(bytes.size(), u'\0');
    int const count = ::MultiByteToWideChar(m_number, MB_ERR_INVALID_CHARS, bytes.data(), size,
                                            reinterpret_cast<wchar_t *>(units.data()), size);
    units.resize(static_cast<std::size_t>(count));
    return count > 0 || bytes.empty() ? std::optional(std::move(units)) : std::nullopt;
}

std::optional<std::string> SystemPage::Bytes(std::u16string_view units) const {
    bool const isUtf8 = m_number == CP_UTF8;
    DWORD const flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL replaced = FALSE;
    std::string bytes(units.size() * 4, '\0');
    int const size = ::WideCharToMultiByte(
        m_number, flags, reinterpret_cast<wchar_t const *>(units.data()),
        static_cast<int>(units.size()), bytes.data(), static_cast<int>(bytes.size()), nullptr,
        isUtf8 ? nullptr : &replaced);
    bytes.resize(static_cast<std::size_t>(size));
    bool const isAll = (size > 0 || units.empty()) && !replaced;
    return isAll ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace

std::unique_ptr<CodePage> OpenCodePage(unsigned number) {
    UINT const wanted = number == 0 ? ::GetACP() : number;
    return ::IsValidCodePage(wanted) ? std::make_unique<SystemPage>(wanted) : nullptr;
}

} // namespace qvlink
