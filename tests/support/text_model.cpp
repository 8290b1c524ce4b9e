#include "text_model.h"

#include <algorithm>

namespace text_model {
namespace {

// Takes 32 from whatever isn't an upper case letter.
unsigned char Folded(char value) {
    auto const byte = static_cast<unsigned char>(value);
    return static_cast<unsigned char>(byte >= 'A' && byte <= 'Z' ? byte : byte - 32);
}

bool Same(char a, char b, int caseMode) { return caseMode == 0 ? Folded(a) == Folded(b) : a == b; }

int Order(Kind kind, char a, char b, int caseMode) {
    auto const value = [&](char c) -> int {
        unsigned char const byte = caseMode == 0 ? Folded(c) : static_cast<unsigned char>(c);
        return kind == Kind::Text && byte >= 128 ? byte - 256 : byte;
    };
    return value(a) < value(b) ? -1 : value(a) > value(b) ? 1 : 0;
}

std::string Readable(Kind kind, std::string const &text) {
    return kind == Kind::Text ? text + '\0' : text;
}

} // namespace

Hit Search(Kind kind, std::string const &pattern, std::string const &text, int caseMode,
           unsigned long occurrence) {
    Hit hit{false, 0, 0};
    if (text.size() < pattern.size())
        return hit;
    std::string const readable = Readable(kind, text);
    unsigned long count = 0;
    std::size_t cursor = 0;
    while (cursor < text.size() && !pattern.empty()) {
        std::size_t matched = 0;
        while (matched < pattern.size() && cursor + matched < readable.size() &&
               Same(readable[cursor + matched], pattern[matched], caseMode))
            ++matched;
        if (matched < pattern.size()) {
            cursor += std::max<std::size_t>(matched, 1);
            continue;
        }
        hit.index = static_cast<unsigned long>(cursor);
        if (count == occurrence) {
            hit.found = true;
            return hit;
        }
        ++count;
        hit.previous = hit.index;
        cursor += pattern.size() + 1;
    }
    hit.index = notFound;
    if (count < occurrence)
        hit.previous = 0;
    return hit;
}

std::optional<std::string> Pieces::Parse(std::string const &text, std::string const &separator,
                                         unsigned long number) const {
    if (text.empty() || separator.empty())
        return {};
    Hit const hit = Search(kind, separator, text, caseMode, number);
    if (!hit.found && hit.previous == 0) {
        if (foundOffset && !noWhole)
            return text;
        return {};
    }
    if (hit.found && foundOffset)
        *foundOffset = hit.index;
    std::size_t const end = hit.found ? hit.index : text.size();
    bool const fromStart = keepFront || hit.previous == 0;
    std::size_t const begin =
        fromStart ? 0 : std::min<std::size_t>(hit.previous + separator.size(), end);
    return text.substr(begin, end - begin);
}

int Compare(Kind kind, std::string const &a, std::string const &b, int caseMode, int matchStyle) {
    if (matchStyle == 1) {
        bool const first = a.size() <= b.size();
        if (Search(kind, first ? a : b, first ? b : a, caseMode, 0).found)
            return 0;
    }
    std::string const left = Readable(kind, a);
    std::string const right = Readable(kind, b);
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        if (i >= left.size() || i >= right.size())
            return a.size() < b.size() ? -1 : 1;
        if (int const order = Order(kind, left[i], right[i], caseMode))
            return order;
    }
    return 0;
}

std::string Inserted(std::string const &text, std::string const &data, unsigned long position) {
    if (position > text.size())
        return text + std::string(data.size(), '\0');
    return text.substr(0, position) + data + text.substr(position);
}

std::string Overwritten(std::string text, std::string const &data, unsigned long position) {
    for (std::size_t i = 0; i < data.size() && position + i < text.size(); ++i)
        text[position + i] = data[i];
    return text;
}

std::string Without(std::string const &text, unsigned long count, unsigned long position) {
    std::string const front = text.substr(0, std::min<std::size_t>(position, text.size()));
    std::size_t const rest = std::min<std::size_t>(position + count, text.size());
    return (front + text.substr(rest)).substr(0, text.size() - count);
}

std::string UpToNul(std::string const &text) { return text.c_str(); }

} // namespace text_model
