#include "base_model.h"

#include <algorithm>

namespace model {
namespace {

// The number that an element counts as.
int Value(Kind const &kind, char element, int caseMode) {
    int const value = static_cast<unsigned char>(element);
    int const number = kind.isText && value > 127 ? value - 256 : value;
    if (caseMode == 1 || !kind.knowsLetters || (number >= 'A' && number <= 'Z'))
        return number;
    return number - 32 < -128 ? number - 32 + 256 : number - 32;
}

bool Same(Kind const &kind, char a, char b, int caseMode) {
    return Value(kind, a, caseMode) == Value(kind, b, caseMode);
}

} // namespace

std::string Span::Reach(Kind const &kind) const {
    if (!kind.isText)
        return Own();
    std::string const all = buffer + '\0';
    return all.substr(0, all.find('\0', size) + 1);
}

Hit Search(Kind const &kind, std::string const &pattern, Span const &text, int caseMode,
           unsigned long occurrence) {
    Hit hit;
    if (text.size < pattern.size())
        return hit;
    std::string const readable = text.Reach(kind);
    unsigned long seen = 0;
    for (unsigned long at = 0; !pattern.empty() && at < text.size;) {
        std::string const rest = readable.substr(at);
        auto const differs =
            std::mismatch(pattern.begin(), pattern.end(), rest.begin(), rest.end(),
                          [&](char p, char t) { return Same(kind, p, t, caseMode); });
        if (differs.first != pattern.end()) {
            // Nothing of it: the next element. A part of it: the element that differed.
            at += std::max(1ul, static_cast<unsigned long>(differs.first - pattern.begin()));
        } else if (seen == occurrence) {
            hit.found = true;
            hit.index = at;
            return hit;
        } else {
            ++seen;
            hit.previous = at;
            at += static_cast<unsigned long>(pattern.size()) + 1;
        }
    }
    if (seen < occurrence)
        hit.previous = 0;
    hit.index = notFound;
    return hit;
}

Piece Parse(Kind const &kind, Span const &text, std::string const &separator, unsigned long piece,
            int caseMode, bool keepFront, bool wantsOffset, bool noWhole) {
    Piece told;
    if (text.size == 0 || separator.empty())
        return told;
    Hit const hit = Search(kind, separator, text, caseMode, piece);
    unsigned long const previous = hit.previous.value_or(0);
    std::string const own = text.Own();
    std::size_t const begin = keepFront || previous == 0 ? 0 : previous + separator.size();
    if (hit.found) {
        told.text = own.substr(begin, hit.index - begin);
        if (wantsOffset)
            told.offset = hit.index;
    } else if (previous != 0) {
        told.text = begin < own.size() ? own.substr(begin) : std::string();
    } else if (wantsOffset && !noWhole) {
        told.text = own;
    } else {
        return told;
    }
    told.found = true;
    return told;
}

int Compare(Kind const &kind, Span const &a, Span const &b, int caseMode, int matchStyle) {
    bool const aIsPattern = a.size <= b.size;
    if (matchStyle == 1 &&
        Search(kind, (aIsPattern ? a : b).Own(), aIsPattern ? b : a, caseMode, 0).found)
        return 0;
    std::string const left = a.Reach(kind);
    std::string const right = b.Reach(kind);
    for (unsigned long i = 0; i < std::max(a.size, b.size); ++i) {
        if (i >= left.size() || i >= right.size())
            return a.size < b.size ? -1 : 1;
        int const x = Value(kind, left[i], caseMode);
        int const y = Value(kind, right[i], caseMode);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}

} // namespace model
