// A protected list made from a system as it stands.
#pragma once

#include <string>
#include <vector>

#include "list_text.h"

namespace qvlink {

struct CaptureRequest {
    lists::Kind kind = lists::Kind::files;
    // A folder of the host: a Wine prefix, the top of a Windows disk, or a Windows folder.
    // The keys of a disk aren't read on Windows. Empty: this machine on Windows, elsewhere
    // the prefix in use.
    std::string from;
    // Patterns for whole lines: * stands for any text, ? for one character, and the case
    // of ASCII letters makes no difference. What matches is left out with all below it.
    std::vector<std::string> without;
};

struct Capture {
    std::string text;
    // What couldn't be read, or has no place in a list, each with the reason.
    std::vector<std::string> skipped;
};

// Reads, and changes nothing. Symbolic links to folders aren't followed; a key that is a
// link is listed with what its target holds. Throws std::runtime_error, which says what is
// wrong and what to do, if there is nothing to capture from.
Capture CaptureList(CaptureRequest const &request);

} // namespace qvlink
