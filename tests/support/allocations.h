// Watches what a test program with the library linked in allocates (operator new,
// malloc, calloc, realloc), and makes allocations fail. What the system's own libraries
// allocate for themselves isn't seen. For programs of one thread.
#pragma once

#include <cstddef>
#include <cstdint>

// Counts the allocations made while the object lives, one object at a time; the chosen
// ones fail.
class AllocationWatch {
public:
    enum class Fail { None, One, Onwards }; // that with the given number; that and all later

    explicit AllocationWatch(Fail fail = Fail::None, std::uint64_t number = 0); // from 1
    ~AllocationWatch();
    AllocationWatch(AllocationWatch const &) = delete;
    AllocationWatch &operator=(AllocationWatch const &) = delete;

    std::uint64_t Count() const;   // allocations asked for
    bool Failed() const;           // whether the one that was to fail came
    std::size_t Largest() const;   // bytes of the largest one
    std::size_t PeakBytes() const; // most bytes held at once, of those made under the watch

    // Blocks made under any watch and not freed yet, whenever.
    static std::size_t LiveBlocks();
};
