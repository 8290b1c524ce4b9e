// The one pass of UtilsBase<T>::search, apart from how elements match.
#pragma once

#include <array>
#include <climits>
#include <cstring>
#include <type_traits>

namespace UTILS {

// What searches give when they find no position.
constexpr unsigned long NOT_FOUND_INDEX = 0xEFFFFFFF;

// A range as begin and length; one that ends before it begins is empty.
template <typename T> struct Range {
    Range(T const *first, T const *end)
        : begin(first), size(end > first ? static_cast<unsigned long>(end - first) : 0) {}
    T const *begin;
    unsigned long size;
};

// -1, 0 or 1. Text compares by signed values.
template <typename T> int Order(T const &a, T const &b) {
    using Value = std::conditional_t<std::is_same_v<T, char>, signed char, T>;
    auto const left = static_cast<Value>(a);
    auto const right = static_cast<Value>(b);
    return left < right ? -1 : right < left ? 1 : 0;
}

// How many elements at the front of two runs are known to be equal byte by byte: whole blocks.
template <typename T> unsigned long EqualBytes(T const *a, T const *b, unsigned long count) {
    unsigned long equal = 0;
    if constexpr (!std::is_class_v<T>) {
        constexpr unsigned long block = 64;
        while (count - equal >= block &&
               std::memcmp(a + equal, b + equal, block * sizeof(T)) == 0) {
            equal += block;
        }
    }
    return equal;
}

// Elements that are equal as they stand.
template <typename T> class ExactMatcher {
public:
    explicit ExactMatcher(Range<T> const &sought) : pattern(sought) {}

    // Where the pattern's first element stands in the text from `t` on, or its size.
    unsigned long Seek(Range<T> const &text, unsigned long t) const {
        if constexpr (sizeof(T) == 1) {
            if (text.begin[t] == *pattern.begin) {
                return t;
            }
            void const *const found =
                std::memchr(text.begin + t, static_cast<unsigned char>(*pattern.begin),
                            static_cast<std::size_t>(text.size - t));
            return found ? static_cast<unsigned long>(static_cast<T const *>(found) - text.begin)
                         : text.size;
        } else {
            while (t < text.size && !(text.begin[t] == *pattern.begin)) {
                ++t;
            }
            return t;
        }
    }
    bool Same(T const &element, unsigned long p) const { return element == pattern.begin[p]; }

    Range<T> pattern;
};

// Elements that are equal when folded. Bytes of a long text are folded by a table.
template <typename T, typename Fold> class FoldingMatcher {
public:
    FoldingMatcher(Range<T> const &sought, unsigned long textSize, Fold const &folding)
        : pattern(sought), fold(folding), hasTable(sizeof(T) == 1 && textSize > WORTH_A_TABLE) {
        if constexpr (sizeof(T) == 1) {
            for (unsigned value = 0; hasTable && value <= UCHAR_MAX; ++value) {
                table[value] = fold(static_cast<T>(value));
            }
        }
    }

    unsigned long Seek(Range<T> const &text, unsigned long t) const {
        T const first = Folded(*pattern.begin);
        while (t < text.size && Folded(text.begin[t]) != first) {
            ++t;
        }
        return t;
    }
    bool Same(T const &element, unsigned long p) const {
        return element == pattern.begin[p] || Folded(element) == Folded(pattern.begin[p]);
    }

    Range<T> pattern;

private:
    static constexpr unsigned long WORTH_A_TABLE = 512;

    T Folded(T const &value) const {
        if constexpr (sizeof(T) == 1) {
            if (hasTable) {
                return table[static_cast<unsigned char>(value)];
            }
        }
        return fold(value);
    }

    Fold const &fold;
    bool hasTable;
    std::array<T, sizeof(T) == 1 ? UCHAR_MAX + 1 : 1> table;
};

// Elements that say themselves what is equal to them.
template <typename T> class ElementMatcher {
public:
    explicit ElementMatcher(Range<T> const &sought) : pattern(sought) {}

    unsigned long Seek(Range<T> const &text, unsigned long t) const {
        while (t < text.size && !Same(text.begin[t], 0)) {
            ++t;
        }
        return t;
    }
    bool Same(T const &element, unsigned long p) const {
        return element.Compare(pattern.begin[p]) == 0;
    }

    Range<T> pattern;
};

// Whether text may be read at `t`: a match may run on past the end of char text, which its
// terminator ends.
template <typename T> bool MayRead(Range<T> const &text, unsigned long t) {
    if constexpr (std::is_same_v<T, char>) {
        return t <= text.size || text.begin[t - 1] != 0;
    } else {
        return t < text.size;
    }
}

// See UtilsBase<T>::search.
template <typename T, typename Matcher> int Find(Matcher const &matcher, Range<T> const &text,
                                                 unsigned long &index, unsigned long occurrence,
                                                 unsigned long *previous) {
    unsigned long const length = matcher.pattern.size;
    unsigned long count = 0;
    unsigned long t = 0;
    while (length != 0 && t < text.size && (t = matcher.Seek(text, t)) < text.size) {
        unsigned long p = 1;
        while (p < length && MayRead(text, t + p) && matcher.Same(text.begin[t + p], p)) {
            ++p;
        }
        if (p < length) {
            t += p; // goes on at the element that differs, not behind where the match began
            continue;
        }
        index = t;
        if (count == occurrence) {
            return 1;
        }
        ++count;
        if (previous) {
            *previous = t;
        }
        t += length + 1; // the element after a match is skipped
    }
    if (count < occurrence && previous) {
        *previous = 0;
    }
    index = NOT_FOUND_INDEX;
    return 0;
}

} // namespace UTILS
