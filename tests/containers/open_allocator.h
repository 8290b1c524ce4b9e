// Allocators with what derived classes see laid open.
#pragma once

#include "UtilsAllocator.h"

template <class T> struct OpenAllocator : UTILS::UtilsAllocator<T> {
    using Base = UTILS::UtilsAllocator<T>;

    OpenAllocator(unsigned long length = 0, unsigned long height = 0) : Base(length, height) {}
    explicit OpenAllocator(Base const &other) : Base(other) {}

    using Base::AllocateMatrix;
    using Base::AllocateMemory;
    using Base::allocationScheme;
    using Base::blockHeight;
    using Base::blockLength;
    using Base::CheckAllocationScheme;
    using Base::Copy;
    using Base::FreeMatrix;
    using Base::FreeMemory;
    using Base::isMatrix;
    using Base::loopIndex;
    using Base::memoryBlock;
    using Base::memoryMatrix;
};
