// What a call throws, told by its text.
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

// The text of the exception of this class that a call throws, or a word on what it did
// instead.
template <class Fault, class Call> std::string ThrownText(Call const &call) {
    try {
        call();
    } catch (Fault const &fault) {
        return fault.what();
    } catch (...) {
        return "threw something else";
    }
    return "didn't throw";
}

// Whether a text is message, detail and source file of a fault with some line behind them.
inline testing::AssertionResult Tells(std::string const &text, std::string const &message,
                                      std::string const &detail, std::string const &source) {
    std::string const front = message + " - " + detail + "; File:  " + source + "; Line:  ";
    std::string const line = text.size() > front.size() ? text.substr(front.size()) : std::string();
    if (text.compare(0, front.size(), front) == 0 && !line.empty() && line[0] != '0' &&
        line.find_first_not_of("0123456789") == std::string::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "\"" << text << "\" instead of \"" << front << "N\"";
}

inline std::string const invalidArgument = "Inavlid Argument Passed";
inline std::string const zeroSize = "Command Line Parameter Is Incorrect";
inline std::string const wrongCall = "The Function Call Is Incorrect Or Cannot Be Called As Such";
inline std::string const outOfRange = "Out Of Range Error";
inline std::string const notConstructed =
    "Cannot Allocate Memory Internally Without Constructor Initialization";

// Whether a call throws std::bad_alloc with this message and detail, as allocators do.
template <class Call> testing::AssertionResult
AllocatorRefuses(Call const &call, std::string const &message, std::string const &detail) {
    return Tells(ThrownText<std::bad_alloc>(call), message, detail, "UtilsAllocator");
}

// Whether a call throws std::out_of_range for this detail.
template <class Call> testing::AssertionResult
IsOutOfRange(Call const &call, std::string const &detail, std::string const &source) {
    return Tells(ThrownText<std::out_of_range>(call), outOfRange, detail, source);
}
