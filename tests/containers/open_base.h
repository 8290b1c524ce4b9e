// The primitives with what derived classes see laid open.
#pragma once

#include "UtilsBase.h"

#include <string>

template <class T> struct OpenBase : UTILS::UtilsBase<T> {
    using Base = UTILS::UtilsBase<T>;
    using Base::caseCapable;
    using Base::charSize;
    using Base::reverse;
    using Base::scratch;
};

// Knows the letters of ASCII, as the containers of text do.
struct FoldingBase : OpenBase<char> {
    int isupper(char const &value) const override { return value >= 'A' && value <= 'Z'; }
    char utoupper(char const &value) const override { return static_cast<char>(value - 32); }
};

using String = std::string;
using Bytes = std::basic_string<unsigned char>;

inline Bytes ToBytes(std::string const &text) { return {text.begin(), text.end()}; }
