// Any bytes as a PE file.
#include "model.h"
#include "readers/pe_reader.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    qvlink::MemorySource source(std::string_view(reinterpret_cast<const char *>(data), size));
    qvlink::Program const program = qvlink::ReadPe(source);
    bool const told = !program.malformed.empty();
    if (told != ((program.flags & qvlink::FLAG_MALFORMED) != 0)) {
        std::abort();
    }
    for (auto const *names : {&program.needed, &program.delayed}) {
        for (std::string const &name : *names) {
            if (name.empty() || name.size() > qvlink::LONGEST_NEEDED_NAME) {
                std::abort();
            }
        }
    }
    return 0;
}
