// Search, parse and compare told plainly, step by step, as a measure for the real ones.
#pragma once

#include <optional>
#include <string>

namespace model {

// How elements are read: as text with a terminator and signed values, or as bytes; and
// whether letters are known when blind to case.
struct Kind {
    bool isText;
    bool knowsLetters;
};

// A range of a longer buffer: what lies behind its end may still be read as text.
struct Span {
    std::string buffer; // a NUL stands behind it
    unsigned long size;

    // The range alone, and with what text goes on with, terminator and all.
    std::string Own() const { return buffer.substr(0, size); }
    std::string Reach(Kind const &kind) const;
};

constexpr unsigned long notFound = 0xEFFFFFFF;

struct Hit {
    bool found = false;
    unsigned long index = 0;
    std::optional<unsigned long> previous; // what was written to it last
};
Hit Search(Kind const &kind, std::string const &pattern, Span const &text, int caseMode,
           unsigned long occurrence);

struct Piece {
    bool found = false;
    std::string text;
    std::optional<unsigned long> offset;
};
Piece Parse(Kind const &kind, Span const &text, std::string const &separator, unsigned long piece,
            int caseMode, bool keepFront, bool wantsOffset, bool noWhole);

int Compare(Kind const &kind, Span const &a, Span const &b, int caseMode, int matchStyle);

} // namespace model
