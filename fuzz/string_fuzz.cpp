// Any bytes as operations on a UtilsString, whose every step a model on plain strings follows.
#include "string_program.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string const difference = RunStringProgram(data, size);
    if (!difference.empty()) {
        std::fprintf(stderr, "%s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
