// Searches, pieces, comparisons and edits of text and bytes on plain strings: what the string
// classes are compared with.
#pragma once

#include <optional>
#include <string>

namespace text_model {

// Text ends in a terminator that may be read, bytes don't.
enum class Kind { Text, Bytes };

constexpr unsigned long notFound = 0xEFFFFFFF;

struct Hit {
    bool found;
    unsigned long index;
    unsigned long previous; // of the occurrence before
};

// One pass forward: goes on at the element that differed, and skips the one after a match.
Hit Search(Kind kind, std::string const &pattern, std::string const &text, int caseMode,
           unsigned long occurrence);

struct Pieces {
    Kind kind = Kind::Text;
    int caseMode = 1;
    bool keepFront = false;
    unsigned long *foundOffset = nullptr;
    bool noWhole = false;

    // Piece number `number`, or none.
    std::optional<std::string> Parse(std::string const &text, std::string const &separator,
                                     unsigned long number) const;
};

// -1, 0 or 1.
int Compare(Kind kind, std::string const &a, std::string const &b, int caseMode, int matchStyle);

std::string Inserted(std::string const &text, std::string const &data, unsigned long position);
std::string Overwritten(std::string text, std::string const &data, unsigned long position);
std::string Without(std::string const &text, unsigned long count, unsigned long position);
std::string UpToNul(std::string const &text);

} // namespace text_model
