// UtilsAllocator<T>: a block or a matrix of T with its own lock and with the knowledge of
// who owns the memory. All containers of the family keep their elements in one of these.
//
// Ownership (the allocation scheme): an allocator built with sizes owns its memory
// (scheme 1) and frees it. One built without holds nothing (scheme 0); it becomes a view
// of outside memory through SetMemoryPointer, frees nothing, and refuses to resize or fill.
//
// Every block has exactly the size asked for; there is no spare capacity.
//
// Faults are thrown as std::bad_alloc (an AllocationError, whose what() tells the fault)
// and std::out_of_range. After a fault the object is as it was before the call.
//
// Locking: each heap call and each copy loop runs under the object's own lock, never more
// than that. A sequence of calls, or one object used by several threads, is for the
// caller to serialise.
#pragma once

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "CSyncObject.h"
#include "linkdb_export.h"
#include "platform/wintypes.h"

namespace UTILS {

// A fault of an allocator, caught as std::bad_alloc; what() gives the composed text.
class QVLINKDB_API AllocationError : public std::bad_alloc {
public:
    explicit AllocationError(std::string const &text);
    AllocationError(AllocationError const &other) noexcept = default;
    AllocationError &operator=(AllocationError const &other) noexcept = default;
    ~AllocationError() override;
    const char *what() const noexcept override;

private:
    std::runtime_error m_text; // shared by copies, so that copying can't fail
};

// Throw what the templates throw, with the text that FormatThrowText composes.
[[noreturn]] QVLINKDB_API void ThrowAllocationError(const char *message, const char *detail,
                                                    const char *file, unsigned long line);
[[noreturn]] QVLINKDB_API void ThrowAllocationError(const char *message, unsigned long value,
                                                    const char *file, unsigned long line);
[[noreturn]] QVLINKDB_API void ThrowOutOfRange(unsigned long index, unsigned long limit,
                                               const char *file, unsigned long line);
[[noreturn]] QVLINKDB_API void ThrowInvalidArgument(long value, const char *file,
                                                    unsigned long line);

// Their messages.
namespace messages {
constexpr const char *INVALID_ARGUMENT = "Inavlid Argument Passed"; // spelled so
constexpr const char *ZERO_SIZE = "Command Line Parameter Is Incorrect";
constexpr const char *WRONG_CALL = "The Function Call Is Incorrect Or Cannot Be Called As Such";
} // namespace messages

// Holds a lock for as long as it lives.
class ScopedLock {
public:
    explicit ScopedLock(CCriticalSection &lock) : m_lock(lock) { m_lock.Lock(); }
    ~ScopedLock() { m_lock.UnLock(); }
    ScopedLock(ScopedLock const &) = delete;
    ScopedLock &operator=(ScopedLock const &) = delete;

private:
    CCriticalSection &m_lock;
};

template <typename T> class QVLINKDB_TEMPLATE UtilsAllocator {
public:
    // With `height` 0 a block of `length` elements, or nothing for 0; otherwise a matrix of
    // `height` rows of `length` elements, where a zero `length` is a fault. Elements of class
    // types are constructed, others are not initialised.
    UtilsAllocator(unsigned long length = 0, unsigned long height = 0);
    // Copies as operator= does. For elements of class types only.
    UtilsAllocator(UtilsAllocator const &other);

    // The name of the object's class, good for the life of the process.
    virtual const char *derived_class() const;
    virtual ~UtilsAllocator();

    // Copies what `other` owns. A view is copied as a second view of the same memory.
    UtilsAllocator &operator=(UtilsAllocator const &other);

    // The object's own memory.

    // Resizes the block to `n` elements and keeps what fits; what is new isn't initialised.
    // The same length keeps the block where it is. Not for views, matrices and 0.
    void ReAllocateMemory(unsigned long n);
    void urealloc(unsigned long n);
    // The same for the matrix. Not for views, blocks and zero sizes.
    void ReAllocateMatrix(unsigned long length, unsigned long height);
    // Copies `n` elements into the block, or as many as it has. A matrix is left alone; a view
    // is refused.
    void CopyMem(T const *source, unsigned long n);
    // Fills the block with zero bytes, live objects too: for elements that are plain data. A
    // matrix is left alone; a view is refused.
    void Zero();
    // Makes an object that owns nothing a view of `pointer`; its length stays 0. The caller
    // keeps the memory alive. Refused when the object owns memory.
    void SetMemoryPointer(T *pointer);

    T *GetMemoryBlock() const;
    T *ugetmem() const;
    operator T *() const;
    unsigned long GetLength() const;
    unsigned long GetHeight() const;
    int AllocationScheme() const;

    // Element `index`; an index from the length on is out of range.
    T &operator[](unsigned long index);
    T const &operator[](unsigned long index) const;
    template <typename U = T, std::enable_if_t<std::is_class_v<U>, int> = 0>
    U &operator[](unsigned int index) {
        return (*this)[static_cast<unsigned long>(index)];
    }

    // A heap with a lock, for memory of the caller's: these leave the object's own alone.

    // A new block of `n` elements, which the caller frees with FreeMemory; `ignored` has no
    // effect. `n` 0 is a fault.
    T *AllocateMemory(T *ignored, unsigned long n);
    // Null is a fault.
    void FreeMemory(T *pointer);
    // A new matrix, which the caller frees with FreeMatrix. A zero size is a fault.
    T **AllocateMatrix(T **ignored, unsigned long length, unsigned long height);
    // Null and a zero `height` are faults.
    void FreeMatrix(T **pointer, unsigned long height);
    // Moves a block into a new one of `newLength` elements and frees it, or returns it as it
    // is if the lengths are equal. Zero lengths are faults. After a fault it is as it was.
    T *ReAllocateMemory(T *pointer, unsigned long oldLength, unsigned long newLength);
    T **ReAllocateMatrix(T **pointer, unsigned long oldLength, unsigned long newLength,
                         unsigned long oldHeight, unsigned long newHeight);
    // Copy element by element, upwards; an element of a class type that is its own source is
    // skipped. A null pointer copies nothing.
    void CopyMem(T *destination, T const *source, unsigned long n);
    void CopyMatrix(T **destination, T *const *source, unsigned long length, unsigned long height);
    // Fills `n` elements with zero bytes.
    void ZeroMem(T *pointer, unsigned long n);

protected:
    // Take new memory as the object's own; they don't free what it had.
    void AllocateMemory(unsigned long n);
    void AllocateMatrix(unsigned long length, unsigned long height);
    // Free what the object owns; with `reset` it holds nothing afterwards.
    void FreeMemory(int reset);
    void FreeMatrix(int reset);
    // Throws for an object that owns no memory.
    void CheckAllocationScheme() const;
    void Copy(UtilsAllocator const &other);

    CCriticalSection syncLock;  // guards each heap call and each copy loop
    unsigned long blockLength;  // elements of the block, or of a row of the matrix
    unsigned long blockHeight;  // rows; 0 for a block
    unsigned long loopIndex;    // counter of the copy loops
    T *memoryBlock = nullptr;   // the block
    T **memoryMatrix = nullptr; // the table of rows
    int isMatrix;               // 1: holds a matrix
    int allocationScheme;       // 1: owns its memory; 0: holds nothing or a view

private:
    static constexpr const char *SOURCE = "UtilsAllocator";

    void Init();
    void MemorySet(T *pointer, int value, std::size_t bytes);
    void Free();
    void CopyBlock(UtilsAllocator const &other);
    void CopyOwnedMatrix(UtilsAllocator const &other);
    void CopyElements(T *destination, T const *source, unsigned long n);
    void FreeRows(T **table, unsigned long height);
};

} // namespace UTILS

#include "templates/UtilsAllocator.h"
