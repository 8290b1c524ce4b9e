// From the host's error numbers to the codes that Windows has for the same failure.
#pragma once

#include "platform/winapi.h"

#include <new>
#include <string>

namespace platform {

// What was being done: a host error means different things to different calls.
enum class Operation { Open, Attributes, Delete, Move, Transfer, Seek };

// The code for a host error in an operation. ENOENT is told as a missing file; FailedOn
// tells a missing folder from it.
DWORD CodeOf(int hostError, Operation operation);

// The code for a host error in an operation on a path of the host.
DWORD FailedOn(std::string const &hostPath, int hostError, Operation operation);

// Sets the last error and returns FALSE.
BOOL Fail(DWORD code);

// Does the work of a service. A service doesn't throw: without memory it fails with
// ERROR_NOT_ENOUGH_MEMORY and `failure` as its result.
template <class Result, class Work> Result OutOfMemoryAs(Result failure, Work work) {
    try {
        return work();
    } catch (std::bad_alloc const &) {
        Fail(ERROR_NOT_ENOUGH_MEMORY);
        return failure;
    }
}

} // namespace platform
