#include "commands/registry_arguments.h"

#include "commands/session.h"
#include "platform/host.h"
#include "registry/key_path.h"

namespace qvlink {

std::string KeyArgument(std::string const &text) {
    auto key = WithShortRoot(ToUtf8(text));
    if (!key) {
        throw CommandError(text + " is no key of the registry\nKeys begin with HKLM, HKCU, HKCR, "
                                  "HKU or HKCC, or with the long name of one.");
    }
    std::string const why = WhyNoKey(*key);
    if (!why.empty()) {
        throw CommandError(text + ": " + why);
    }
    return std::move(*key);
}

std::string HostText(std::string const &utf8) {
    bool lossless = true;
    return FromUtf8(utf8, lossless);
}

std::unique_ptr<CodePage> PageArgument(Request const &request) {
    auto page = OpenCodePage(request.codePage);
    if (!page) {
        throw CommandError(request.codePage == 0
                               ? "the code page in use is unknown here\nName one with --code-page."
                               : "there is no code page " + std::to_string(request.codePage));
    }
    return page;
}

} // namespace qvlink
