// Memory that services allocate and callers give back with LocalFree.
#pragma once

#include <cstddef>

namespace platform {

// Throws std::bad_alloc without memory.
void *AllocateLocal(std::size_t size);
// Frees what callers never gave back, before the library is unloaded.
void ReleaseLocalMemory();

} // namespace platform
