// Any bytes as the loader's cache.
#include "readers/loader_cache.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    qvlink::MemorySource source(std::string_view(reinterpret_cast<const char *>(data), size));
    for (auto const &[name, libraries] : qvlink::ReadLoaderCache(source)) {
        if (libraries.empty() || name.size() > size) {
            std::abort();
        }
    }
    return 0;
}
