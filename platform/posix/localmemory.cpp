#include "platform/posix/localmemory.h"

#include "platform/winapi.h"

#include <mutex>
#include <new>

namespace platform {
namespace {

// Stands before each block, in the list of those that callers have.
struct alignas(std::max_align_t) Header {
    Header *next;
};

std::mutex blocksMutex;
Header *firstBlock = nullptr;

} // namespace

void *AllocateLocal(std::size_t size) {
    auto *const header = static_cast<Header *>(::operator new(sizeof(Header) + size));
    std::lock_guard<std::mutex> const lock(blocksMutex);
    header->next = firstBlock;
    firstBlock = header;
    return header + 1;
}

void ReleaseLocalMemory() {
    std::lock_guard<std::mutex> const lock(blocksMutex);
    while (Header *const block = firstBlock) {
        firstBlock = block->next;
        ::operator delete(block);
    }
}

} // namespace platform

namespace win::host {

// What isn't in the list isn't touched.
HLOCAL LocalFree(HLOCAL memory) {
    using namespace platform;
    if (!memory)
        return nullptr;
    std::lock_guard<std::mutex> const lock(blocksMutex);
    for (Header **place = &firstBlock; *place; place = &(*place)->next) {
        Header *const block = *place;
        if (block + 1 != memory)
            continue;
        *place = block->next;
        ::operator delete(block);
        return nullptr;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return memory;
}

} // namespace win::host
