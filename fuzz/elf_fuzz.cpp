// Any bytes as an ELF file.
#include "model.h"
#include "readers/elf_reader.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    qvlink::Program const program =
        qvlink::ReadElfImage(std::string_view(reinterpret_cast<const char *>(data), size));
    bool const told = !program.malformed.empty();
    if (told != ((program.flags & qvlink::FLAG_MALFORMED) != 0)) {
        std::abort();
    }
    for (std::string const &name : program.needed) {
        if (name.empty() || name.size() > qvlink::LONGEST_NEEDED_NAME) {
            std::abort();
        }
    }
    return 0;
}
