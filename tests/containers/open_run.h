// Runs with what derived classes see laid open.
#pragma once

#include "UtilsVector.h"

#include <string>

template <class T> struct OpenRun : UTILS::MemObject<T> {
    using Base = UTILS::MemObject<T>;

    OpenRun(unsigned long size = 1) : Base(size) {}
    OpenRun(std::basic_string<T> const &text) { // OpenRun("") is an empty run
        if (!text.empty())
            this->Append(text.data(), static_cast<unsigned long>(text.size()));
    }

    std::basic_string<T> Text() const { return {this->Retrieve(), this->RetrieveSize()}; }
    unsigned long BlockLength() const { return this->storage->GetLength(); }
    // Whether the block has exactly the room that the run needs.
    bool IsExact() const { return BlockLength() == this->dataSize + this->charSize; }
    // Whether text ends in a terminator behind its size.
    bool IsTerminated() const {
        return this->charSize == 0 ||
               (this->dataSize < BlockLength() && this->Retrieve()[this->dataSize] == T());
    }

    using Base::dataSize;
    using Base::growFlag;
    using Base::initialSize;
    using Base::NullTerminate;
    using Base::storage;
};

using TextRun = OpenRun<char>;
using ByteRun = OpenRun<unsigned char>;

inline std::basic_string<unsigned char> AsBytes(std::string const &text) {
    return {text.begin(), text.end()};
}
