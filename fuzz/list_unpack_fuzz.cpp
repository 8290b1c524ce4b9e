// Any bytes as a stored list, and its text, or the bytes themselves, as that of a list.
#include "list_text.h"
#include "stored_list.h"

#include <cstdint>
#include <cstdlib>

namespace {

// The most that a small input may unpack to and still be looked at line by line.
constexpr std::size_t mostText = std::size_t{1} << 20;

void CheckText(std::string_view text) {
    for (lists::Kind const kind : {lists::Kind::files, lists::Kind::keys}) {
        std::size_t line = 1;
        for (lists::Finding const &finding : lists::Check(text, kind)) {
            if (finding.line < line || finding.message.empty()) {
                std::abort();
            }
            line = finding.line;
        }
    }
    lists::Difference const none = lists::Compare(text, text);
    if (!none.onlyInFirst.empty() || !none.onlyInSecond.empty()) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string_view const bytes(reinterpret_cast<const char *>(data), size);
    CheckText(bytes);
    if (lists::Unpack(lists::Pack(bytes)) != bytes) {
        std::abort();
    }
    try {
        std::string const text = lists::Unpack(bytes);
        if (text.size() <= mostText) {
            CheckText(text);
        }
    } catch (lists::ListError const &) {
        // Most are none.
    }
    return 0;
}
