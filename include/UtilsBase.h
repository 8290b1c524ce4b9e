// UtilsBase<T>: what all of the family need of a range of elements: search, split, compare,
// reverse, sort, and the hooks by which a derived class teaches them letters.
//
// A range is a pair of pointers, begin and end, with end one past the last element. Ranges
// are trusted and must not change during a call. `caseMode` 1 means exact, 0 blind to case.
// A size of 0 is measured: to the terminator for char, one element otherwise.
//
// Elements of plain types compare by value, char by its signed value. Elements of class
// types compare through their own `int Compare(T const &) const`, with the settings of the
// element on the left.
//
// Locking: only the scratch memory has a lock. Ranges are read without any.
#pragma once

#include "templates/RangeSearch.h" // NOT_FOUND_INDEX
#include "UtilsAllocator.h"

namespace UTILS {

template <typename T> class QVLINKDB_TEMPLATE UtilsBase {
public:
    UtilsBase();
    UtilsBase(UtilsBase const &) = delete;
    UtilsBase &operator=(UtilsBase const &) = delete;

    // The hooks of case folding. This class knows no letters: nothing is upper or lower
    // case, and the conversions give the argument back.
    virtual int isupper(T const &value) const;
    virtual int islower(T const &value) const;
    virtual int iswupper(T const &value) const;
    virtual int iswlower(T const &value) const;
    virtual T utoupper(T const &value) const;
    virtual T utolower(T const &value) const;
    virtual T uwtoupper(T const &value) const;
    virtual T uwtolower(T const &value) const;
    // The name of the object's class, good for the life of the process.
    virtual const char *derived_class() const;
    virtual ~UtilsBase();

    // Finds the pattern's occurrence number `occurrence`, from 0: 1, with its position in
    // `index`, or 0 with NOT_FOUND_INDEX. A text shorter than the pattern gives 0 with `index`
    // 0. `previous`, where given, is set to the match before, or to 0 if the text ends with
    // fewer matches than asked for.
    //
    // One pass forward: after a partial match the search goes on at the element that differed
    // ("aab" isn't found in "aaab"), and the element after a match is skipped. A match in char
    // text may run over textEnd as far as the terminator. An empty pattern matches nothing.
    //
    // Throws std::invalid_argument for another `caseMode`, unless the text is too short.
    int search(T const *patternBegin, T const *patternEnd, T const *textBegin, T const *textEnd,
               unsigned long &index, int caseMode, unsigned long occurrence,
               unsigned long *previous) const;

    // Copies piece number `piece` of the text, the pieces being what lies between separators,
    // into `out`, which has room for it, and a terminator after text: 1, or 0 with `out` as it
    // was. `keepFront` takes all that lies before as well. `foundOffset`, where given, gets
    // the position of the separator behind the piece. A text without the separator is one
    // whole piece only with `foundOffset` and without `noWhole`.
    //
    // As search finds them: a separator at the very front isn't seen as one before the next
    // piece, nor is one right after another.
    int parse(T const *textBegin, T const *textEnd, T *out, T const *separatorBegin,
              T const *separatorEnd, unsigned long piece, int caseMode, int keepFront,
              unsigned long *foundOffset, int noWhole) const;

    // -1, 0 or 1. Null is equal to null and below all else. With `matchStyle` 1 a run that
    // holds the other is equal to it. Where one run ends the terminator counts; runs without
    // one are less than what goes on.
    int compare(T const *a, T const *b, int caseMode, int matchStyle, unsigned long sizeA,
                unsigned long sizeB) const;

    // The same over exactly `count` elements.
    int datacmp(T const *a, T const *b, unsigned long count, int caseMode) const;

    // Sorts with the < of T, blind to no case.
    void selection_sort(T *begin, T *end);

    // end - begin; with a null end the size up to the terminator, or 1 where there is none.
    unsigned long GetSizeOfData(T const *begin, T const *end) const;

    // Writes a terminator at `position`, for elements that have one.
    void NullTerminate(T *position);

    // Bytes of the terminator, 0 for elements without one.
    unsigned long GetCharSize() const;

    // 1 for elements that can be compared blind to case.
    int IsCaseType() const;
    int IsTypeSafeForCase() const;

    // Takes the state of another object.
    void UBaseCopy(UtilsBase const &other);

protected:
    // Where in the text piece number `piece` lies: see parse. False if there is none.
    bool FindPiece(T const *textBegin, T const *textEnd, T const *separatorBegin,
                   T const *separatorEnd, unsigned long piece, int caseMode, int keepFront,
                   unsigned long *foundOffset, int noWhole, unsigned long &begin,
                   unsigned long &end) const;
    // Reverses a range in place and writes a terminator at its end. A null end is measured.
    void reverse(T *begin, T const *end);

    UtilsAllocator<T> scratch; // owns nothing: a heap with a lock
    unsigned long caseCapable; // 1 for text: char and unsigned short
    unsigned long charSize;    // bytes of an element of text, else 0

private:
    template <typename> friend class Node;
    static constexpr const char *SOURCE = "UtilsBase";

    void Init();
    T toupper(T const &value) const;
    int CompareElements(T const &a, T const &b, int caseMode) const;
    unsigned long Reach(T const *run, unsigned long size, unsigned long limit) const;
};

} // namespace UTILS

#include "templates/UtilsBase.h"
