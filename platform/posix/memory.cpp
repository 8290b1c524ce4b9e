// Memory by the page.
#include "platform/winapi.h"

#include <cstdint>
#include <sys/mman.h>

namespace platform {
namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t granularity = 65536;              // of addresses, as Windows has it
constexpr std::size_t largePage = std::size_t{2} << 20; // what the kernel can map at once

// Stands in the page before each block, so that a block tells its own size.
struct Header {
    std::uint64_t magic;
    void *mapping;
    std::size_t mapped;
};

constexpr std::uint64_t headerMagic = 0x4b434f4c42564c51;

Header *HeaderOf(void *block) {
    return reinterpret_cast<Header *>(static_cast<char *>(block) - pageSize);
}

} // namespace
} // namespace platform

namespace win::host {

LPVOID VirtualAlloc(LPVOID address, SIZE_T size, DWORD type, DWORD protection) {
    using namespace platform;
    if (address || size == 0 || size > SIZE_MAX / 2 || type != (MEM_RESERVE | MEM_COMMIT) ||
        protection != PAGE_READWRITE) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    std::size_t const alignment = size >= largePage ? largePage : granularity;
    std::size_t const mapped = size + alignment + pageSize;
    void *const mapping =
        mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    auto const start = reinterpret_cast<std::uintptr_t>(mapping);
    std::uintptr_t const block = (start + pageSize + alignment - 1) / alignment * alignment;
    void *const result = static_cast<char *>(mapping) + (block - start);
    // A walk of the graph touches memory at random: with large pages it doesn't pay for
    // looking up a small page at each step.
    if (size >= largePage)
        madvise(result, size / largePage * largePage, MADV_HUGEPAGE);
    *HeaderOf(result) = {headerMagic, mapping, mapped};
    return result;
}

BOOL VirtualFree(LPVOID address, SIZE_T size, DWORD type) {
    using namespace platform;
    if (!address || size != 0 || type != MEM_RELEASE ||
        reinterpret_cast<std::uintptr_t>(address) % granularity != 0 ||
        HeaderOf(address)->magic != headerMagic) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    Header const header = *HeaderOf(address);
    munmap(header.mapping, header.mapped);
    return TRUE;
}

} // namespace win::host
