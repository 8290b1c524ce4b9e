// Bodies of UtilsBase<T>.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

#include "../UtilsBase.h"
#include "RangeSearch.h"

namespace UTILS {

template <typename T> UtilsBase<T>::UtilsBase() { Init(); }

template <typename T> UtilsBase<T>::~UtilsBase() = default;

template <typename T> void UtilsBase<T>::Init() {
    caseCapable = std::is_same_v<T, char> || std::is_same_v<T, unsigned short> ? 1 : 0;
    charSize = caseCapable ? static_cast<unsigned long>(sizeof(T)) : 0;
}

template <typename T> const char *UtilsBase<T>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename T> int UtilsBase<T>::isupper(T const &) const { return 0; }
template <typename T> int UtilsBase<T>::islower(T const &) const { return 0; }
template <typename T> int UtilsBase<T>::iswupper(T const &) const { return 0; }
template <typename T> int UtilsBase<T>::iswlower(T const &) const { return 0; }
template <typename T> T UtilsBase<T>::utoupper(T const &value) const { return value; }
template <typename T> T UtilsBase<T>::utolower(T const &value) const { return value; }
template <typename T> T UtilsBase<T>::uwtoupper(T const &value) const { return value; }
template <typename T> T UtilsBase<T>::uwtolower(T const &value) const { return value; }

template <typename T> unsigned long UtilsBase<T>::GetCharSize() const { return charSize; }

template <typename T> int UtilsBase<T>::IsTypeSafeForCase() const { return IsCaseType(); }

template <typename T> void UtilsBase<T>::UBaseCopy(UtilsBase const &other) {
    if (this != &other) {
        scratch = other.scratch;
        caseCapable = other.caseCapable;
        charSize = other.charSize;
    }
}

template <typename T> int UtilsBase<T>::IsCaseType() const {
    return std::is_same_v<T, unsigned char> || std::is_same_v<T, unsigned short> ||
           caseCapable == 1;
}

// Takes 32 from whatever isn't upper case, digits and all: only a letter's two cases meet,
// and the order that this gives is kept.
template <typename T> T UtilsBase<T>::toupper(T const &value) const {
    if (!IsCaseType()) {
        return value;
    }
    if (charSize <= 1) {
        return isupper(value) ? value : utoupper(value);
    }
    return iswupper(value) ? value : uwtoupper(value);
}

template <typename T>
int UtilsBase<T>::CompareElements(T const &a, T const &b, int caseMode) const {
    if constexpr (std::is_class_v<T>) {
        return a.Compare(b);
    } else if (a == b) {
        return 0;
    } else {
        return caseMode == 0 ? Order(toupper(a), toupper(b)) : Order(a, b);
    }
}

template <typename T>
int UtilsBase<T>::search(T const *patternBegin, T const *patternEnd, T const *textBegin,
                         T const *textEnd, unsigned long &index, int caseMode,
                         unsigned long occurrence, unsigned long *previous) const {
    Range<T> const pattern(patternBegin, patternEnd);
    Range<T> const text(textBegin, textEnd);
    if (text.size < pattern.size) {
        index = 0;
        return 0;
    }
    if (caseMode != 0 && caseMode != 1) {
        ThrowInvalidArgument(caseMode, SOURCE, __LINE__);
    }
    if constexpr (std::is_class_v<T>) {
        return Find(ElementMatcher<T>(pattern), text, index, occurrence, previous);
    } else if (caseMode == 1) {
        return Find(ExactMatcher<T>(pattern), text, index, occurrence, previous);
    } else {
        auto const fold = [this](T const &value) { return toupper(value); };
        return Find(FoldingMatcher<T, decltype(fold)>(pattern, text.size, fold), text, index,
                    occurrence, previous);
    }
}

template <typename T> bool UtilsBase<T>::FindPiece(T const *textBegin, T const *textEnd,
                                                   T const *separatorBegin, T const *separatorEnd,
                                                   unsigned long piece, int caseMode, int keepFront,
                                                   unsigned long *foundOffset, int noWhole,
                                                   unsigned long &begin, unsigned long &end) const {
    Range<T> const text(textBegin, textEnd);
    Range<T> const separator(separatorBegin, separatorEnd);
    if (text.size == 0 || separator.size == 0) {
        return false;
    }
    unsigned long found = 0;
    unsigned long prev = 0;
    begin = 0;
    end = text.size;
    if (search(separatorBegin, separatorEnd, textBegin, textEnd, found, caseMode, piece, &prev)) {
        end = found;
        if (foundOffset) {
            *foundOffset = found;
        }
    } else if (prev == 0) {
        return foundOffset && !noWhole; // the text is one piece
    }
    // A separator at the very front is no previous one: prev is 0 for it, too.
    if (!keepFront && prev != 0) {
        begin = (std::min)(prev + separator.size, end);
    }
    return true;
}

template <typename T> int UtilsBase<T>::parse(T const *textBegin, T const *textEnd, T *out,
                                              T const *separatorBegin, T const *separatorEnd,
                                              unsigned long piece, int caseMode, int keepFront,
                                              unsigned long *foundOffset, int noWhole) const {
    unsigned long begin = 0;
    unsigned long end = 0;
    if (!FindPiece(textBegin, textEnd, separatorBegin, separatorEnd, piece, caseMode, keepFront,
                   foundOffset, noWhole, begin, end)) {
        return 0;
    }
    T *const last = std::copy(textBegin + begin, textBegin + end, out);
    if (caseCapable) {
        *last = T();
    }
    return 1;
}

// How many elements of a run may be read, up to `limit`: past its size, text goes on as far
// as its terminator.
template <typename T>
unsigned long UtilsBase<T>::Reach(T const *run, unsigned long size, unsigned long limit) const {
    if constexpr (!std::is_class_v<T>) {
        bool ended = !caseCapable;
        while (size < limit && !ended) {
            ended = run[size++] == T();
        }
    }
    return size;
}

template <typename T> int UtilsBase<T>::compare(T const *a, T const *b, int caseMode,
                                                int matchStyle, unsigned long sizeA,
                                                unsigned long sizeB) const {
    if (!a || !b) {
        return a ? 1 : b ? -1 : 0;
    }
    sizeA = sizeA ? sizeA : GetSizeOfData(a, nullptr);
    sizeB = sizeB ? sizeB : GetSizeOfData(b, nullptr);
    unsigned long const larger = (std::max)(sizeA, sizeB);
    if (matchStyle == 1) {
        unsigned long index = 0;
        if (sizeA <= sizeB ? search(a, a + sizeA, b, b + sizeB, index, caseMode, 0, nullptr)
                           : search(b, b + sizeB, a, a + sizeA, index, caseMode, 0, nullptr)) {
            return 0;
        }
    }
    unsigned long const common = (std::min)(Reach(a, sizeA, larger), Reach(b, sizeB, larger));
    int const result = datacmp(a, b, common, caseMode);
    if (result != 0 || common == larger) {
        return result;
    }
    return sizeA < sizeB ? -1 : 1;
}

template <typename T>
int UtilsBase<T>::datacmp(T const *a, T const *b, unsigned long count, int caseMode) const {
    if (!a || !b) {
        return a ? 1 : b ? -1 : 0;
    }
    for (unsigned long i = EqualBytes(a, b, count); i < count; ++i) {
        if (int const order = CompareElements(a[i], b[i], caseMode)) {
            return order < 0 ? -1 : 1;
        }
    }
    return 0;
}

template <typename T>
unsigned long UtilsBase<T>::GetSizeOfData(T const *begin, T const *end) const {
    if (end) {
        return Range<T>(begin, end).size;
    }
    if constexpr (std::is_same_v<T, char>) {
        return begin ? static_cast<unsigned long>(std::strlen(begin)) : 0;
    } else if (!begin || !caseCapable) {
        return begin ? 1 : 0;
    } else {
        return Reach(begin, 0, ~0UL) - 1;
    }
}

template <typename T> void UtilsBase<T>::NullTerminate(T *position) {
    if (caseCapable) {
        T const terminator = T();
        scratch.CopyMem(position, &terminator, 1);
    }
}

template <typename T> void UtilsBase<T>::reverse(T *begin, T const *end) {
    unsigned long const length = GetSizeOfData(begin, end);
    std::unique_ptr<T[]> const reversed(scratch.AllocateMemory(nullptr, length + charSize));
    std::reverse_copy(begin, begin + length, reversed.get());
    scratch.CopyMem(begin, reversed.get(), length);
    NullTerminate(begin + length);
}

template <typename T> void UtilsBase<T>::selection_sort(T *begin, T *end) {
    for (T *position = begin; position < end; ++position) {
        std::swap(*position, *std::min_element(position, end));
    }
}

// Keys of maps are neither searched nor compared.
template <> int UtilsBase<int>::search(int const *, int const *, int const *, int const *,
                                       unsigned long &, int, unsigned long,
                                       unsigned long *) const = delete;
template <> int UtilsBase<int>::parse(int const *, int const *, int *, int const *, int const *,
                                      unsigned long, int, int, unsigned long *, int) const = delete;
template <> bool UtilsBase<int>::FindPiece(int const *, int const *, int const *, int const *,
                                           unsigned long, int, int, unsigned long *, int,
                                           unsigned long &, unsigned long &) const = delete;
template <> int UtilsBase<int>::compare(int const *, int const *, int, int, unsigned long,
                                        unsigned long) const = delete;
template <>
int UtilsBase<int>::datacmp(int const *, int const *, unsigned long, int) const = delete;
template <> void UtilsBase<int>::selection_sort(int *, int *) = delete;
template <> void UtilsBase<int>::reverse(int *, int const *) = delete;
template <> int UtilsBase<int>::toupper(int const &) const = delete;
template <> int UtilsBase<int>::CompareElements(int const &, int const &, int) const = delete;

extern template class UtilsBase<char>;
extern template class UtilsBase<unsigned char>;
extern template class UtilsBase<int>;

} // namespace UTILS
